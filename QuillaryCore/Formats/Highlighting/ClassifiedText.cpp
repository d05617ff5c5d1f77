#include "QuillaryCore/Formats/Highlighting/ClassifiedText.h"

#include "QuillaryCore/Unicode/PatternClasses.h"

namespace quillary::highlighting {

static_assert(word == patternWord && digit == patternDigit && space == patternSpace &&
              lineTerminator == patternLineTerminator);

ClassifiedText::ClassifiedText(QStringView text)
    // Four places at a time are read from any position up to the end.
    : m_units(text.utf16()), m_classes(static_cast<std::size_t>(text.size()) + 4) {}

void ClassifiedText::classify(const ClassTable& table, TextRange range) {
    m_begin = range.location;
    m_end = range.end();
    m_present = 0;
    // Whether the last unit that \b does not look through was of a word.
    Classes body = 0;
    for (qsizetype i = m_begin; i < m_end; ++i) {
        const char16_t unit = m_units[i];
        if (unit < table.size()) [[likely]] {
            const Classes own = table[unit];
            const auto edge = static_cast<Classes>((own ^ body) & word);
            const auto classes = static_cast<Classes>(own | edge * boundary | (own & edge) * wordStart);
            m_classes[at(i)] = classes;
            m_present |= classes;
            body = own;
            continue;
        }
        const bool isPair = QChar::isHighSurrogate(unit) && i + 1 < m_end && QChar::isLowSurrogate(m_units[i + 1]);
        const quint8 wide =
            isPair ? patternClasses(QChar::surrogateToUcs4(unit, m_units[i + 1])) : basicPlanePatternClasses()[unit];
        const auto own = static_cast<Classes>(wide & (word | digit | space | lineTerminator));
        Classes classes = own;
        if ((wide & patternIgnoredAtBoundary) == 0) {
            const auto edge = static_cast<Classes>((own ^ body) & word);
            classes |= static_cast<Classes>(edge * boundary | (own & edge) * wordStart);
            body = own;
        }
        m_classes[at(i)] = classes;
        m_present |= classes;
        if (isPair) {
            ++i;
            m_classes[at(i)] = own;
        }
    }
    m_classes[at(m_end)] = static_cast<Classes>(textEnd | (body & word) * boundary);
}

} // namespace quillary::highlighting
