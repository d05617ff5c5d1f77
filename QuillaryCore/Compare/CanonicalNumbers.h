#pragma once

#include "QuillaryCore/SeededHash.h"

#include <QString>
#include <QStringView>

#include <deque>
#include <vector>

namespace quillary {

/// Gives texts numbers from 0 on: the same number to texts that are canonically equivalent, so that lists of them can
/// be compared by numbers alone.
class CanonicalNumbers {
public:
    static constexpr qint32 none = -1;

    /// `expected` is how many texts will be added at most. `areComposed` promises that all texts, also those that are
    /// looked for, are in Normalization Form C, where equivalent texts are the same units.
    CanonicalNumbers(qsizetype expected, bool areComposed);

    /// The text's number, a new one if no equivalent text has one. The text must outlive this.
    qint32 add(QStringView text);

    /// The text's number; none if no equivalent text was added. `guess`, a number or none, costs nothing if it is
    /// right: lists that are compared tend to agree.
    qint32 find(QStringView text, qint32 guess = none) const;

    /// How many numbers there are.
    qint32 count() const { return static_cast<qint32>(m_texts.size()); }

private:
    struct Slot {
        quint32 hash = 0;
        qint32 number = none;
    };

    std::size_t slotOf(QStringView form, quint64 hash) const;

    SeededHash m_hash;
    bool m_areComposed;
    /// Of a size that is a power of two, and never more than half full.
    std::vector<Slot> m_slots;
    /// By number, in Normalization Form C.
    std::vector<QStringView> m_texts;
    /// What some of the former look into; a deque, since its elements stay where they are.
    std::deque<QString> m_forms;
};

} // namespace quillary
