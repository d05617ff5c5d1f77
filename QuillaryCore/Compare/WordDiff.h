#pragma once

#include "QuillaryCore/Compare/ChangedOffsets.h"
#include "QuillaryCore/Compare/DiffSegments.h"
#include "QuillaryCore/Compare/WordTokens.h"

#include <QStringView>

#include <array>
#include <optional>
#include <stop_token>
#include <vector>

namespace quillary {

/// Compares pairs of lines word by word. One serves any number of pairs and keeps its room between them.
class WordDiff {
public:
    /// How many segments each side of a pair got.
    struct Counts {
        quint32 oldCount = 0;
        quint32 newCount = 0;
    };

    /// `areComposed` promises that all lines are in Normalization Form C.
    explicit WordDiff(bool areComposed, std::stop_token stop = {})
        : m_areComposed(areComposed), m_stop(std::move(stop)) {}

    /// Appends the segments of the old line and then those of the new one to `ends`; nothing if the lines have too
    /// little in common for marks to help, so that each is one unmarked segment.
    std::optional<Counts> compare(QStringView oldLine, QStringView newLine, std::vector<DiffSegmentEnd>& ends);

private:
    static constexpr std::size_t wordBits = 64;

    struct Side {
        QStringView line;
        std::vector<WordToken> tokens;
        OffsetSet changed;

        QStringView text(std::size_t token) const {
            const qsizetype start = token == 0 ? 0 : tokens[token - 1].end;
            return line.sliced(start, tokens[token].end - start);
        }

        void bridge();
        double changedShare() const;
        quint32 appendEnds(std::vector<DiffSegmentEnd>& ends) const;
    };

    /// Equal tokens among few, with their places as bits; none in an empty slot.
    struct Slot {
        quint64 places = 0;
        quint64 key = 0;
    };

    bool haveTooLittleInCommon() const;
    void setAside(Side& columns, Side& rows);
    void markFew(Side& columns, Side& rows);
    void markMany();
    Slot& slotOf(const Side& columns, QStringView text);

    bool m_areComposed;
    std::stop_token m_stop;
    Side m_old;
    Side m_new;
    /// As many as serve the columns of the present pair.
    std::array<Slot, 2 * wordBits> m_slots;
    std::size_t m_slotMask = 0;
    /// Of each row, the columns that are equal to it and later its row of bits.
    std::vector<quint64> m_rows;
};

} // namespace quillary
