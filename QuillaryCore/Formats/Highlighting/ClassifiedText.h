#pragma once

#include "QuillaryCore/Formats/Highlighting/CharacterClasses.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QStringView>
#include <QtEndian>

#include <bit>
#include <cstring>
#include <vector>

namespace quillary::highlighting {

/// A range of a text as the rules of one language see it: each unit with its classes. The rules see nothing outside the
/// range: before it and behind it there is no word, and behind it comes `textEnd`. Both units of a surrogate pair have
/// the classes of their code point.
class ClassifiedText {
public:
    /// A range of nothing yet; it makes room for any range of the text, which must outlive it.
    explicit ClassifiedText(QStringView text);

    /// Looks at a range of the text from now on, with a language's classes.
    void classify(const ClassTable& table, TextRange range);

    qsizetype begin() const { return m_begin; }

    qsizetype end() const { return m_end; }

    /// Whether any unit of the range is of one of these classes.
    bool contains(Classes classes) const { return (m_present & classes) != 0; }

    /// Whether the unit at a position is of one of these classes; at the end only `boundary` and `textEnd` may be.
    bool is(qsizetype position, Classes classes) const { return (m_classes[at(position)] & classes) != 0; }

    /// The unit at a position before the end.
    char16_t unit(qsizetype position) const { return m_units[position]; }

    /// Whether a unit stands at a position, which may be the end.
    bool holds(qsizetype position, char16_t expected) const {
        return position < m_end && m_units[position] == expected;
    }

    /// Whether these ASCII units stand at a position, which may be the end.
    bool holds(qsizetype position, std::u16string_view expected) const {
        return static_cast<qsizetype>(expected.size()) <= m_end - position &&
               std::u16string_view(m_units + position, expected.size()) == expected;
    }

    /// What stands from a position, which may be the end, to the end.
    QStringView rest(qsizetype position) const { return {m_units + position, m_end - position}; }

    /// The first position at or behind `from` whose unit is of one of these classes, or the end.
    qsizetype next(Classes classes, qsizetype from) const {
        if (is(from, classes | textEnd)) {
            return from;
        }
        const quint64 lanes = static_cast<quint64>(classes | textEnd) * 0x0001'0001'0001'0001U;
        for (const Classes* place = m_classes.data() + from;; place += 4) {
            quint64 four;
            std::memcpy(&four, place, sizeof four);
            if (const quint64 found = qFromLittleEndian(four) & lanes; found != 0) {
                return place - m_classes.data() + std::countr_zero(found) / 16;
            }
        }
    }

    /// The end of the longest run of these classes that begins at `from`; `from` if there is none.
    qsizetype runEnd(Classes classes, qsizetype from) const {
        while (is(from, classes)) {
            ++from;
        }
        return from;
    }

    /// The start of the longest run of these classes that ends at `from` and does not begin before `limit`.
    qsizetype runStart(Classes classes, qsizetype from, qsizetype limit) const {
        while (from > limit && is(from - 1, classes)) {
            --from;
        }
        return from;
    }

private:
    static std::size_t at(qsizetype position) { return static_cast<std::size_t>(position); }

    const char16_t* m_units;
    std::vector<Classes> m_classes;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    Classes m_present = 0;
};

} // namespace quillary::highlighting
