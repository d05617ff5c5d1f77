#include "QuillaryCore/Formats/Highlighting/ClassifiedText.h"

#include "QuillaryCore/Unicode/PatternClasses.h"

namespace quillary::highlighting {

static_assert(word == patternWord && digit == patternDigit && space == patternSpace &&
              lineTerminator == patternLineTerminator);

ClassifiedText::ClassifiedText(QStringView text)
    // Four places at a time are read from any position up to the end.
    : m_units(text.utf16()), m_classes(static_cast<std::size_t>(text.size()) + 4) {}

void ClassifiedText::classify(const ClassTable& table, TextRange range) {
    const qsizetype end = range.end();
    Classes* const classes = m_classes.data();
    Classes present = 0;
    // Whether the last unit that \b does not look through was of a word.
    Classes body = 0;
    for (qsizetype i = range.location; i < end; ++i) {
        const char16_t unit = m_units[i];
        if (unit < 0x80) [[likely]] {
            body = table[classTableIndex(unit, body)];
            classes[i] = body;
            present |= body;
            continue;
        }
        const bool isPair = QChar::isHighSurrogate(unit) && i + 1 < end && QChar::isLowSurrogate(m_units[i + 1]);
        const quint8 wide =
            isPair ? patternClasses(QChar::surrogateToUcs4(unit, m_units[i + 1])) : basicPlanePatternClasses()[unit];
        const auto own = static_cast<Classes>(wide & (word | digit | space | lineTerminator));
        if ((wide & patternIgnoredAtBoundary) != 0) {
            classes[i] = own;
        } else {
            classes[i] = withEdges(own, body);
            body = own;
        }
        present |= classes[i];
        if (isPair) {
            ++i;
            classes[i] = own;
        }
    }
    classes[end] = static_cast<Classes>(textEnd | (body & word) * boundary);
    m_begin = range.location;
    m_end = end;
    m_present = present;
}

} // namespace quillary::highlighting
