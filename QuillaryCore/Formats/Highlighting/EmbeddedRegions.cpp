#include "QuillaryCore/Formats/Highlighting/EmbeddedRegions.h"

#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"
#include "QuillaryCore/Formats/Highlighting/HtmlClasses.h"

namespace quillary::highlighting {

namespace {

/// What stands behind `</script` or `</style` at a less-than sign, or -1.
qsizetype closingTextEnd(const ClassifiedText& text, EmbeddedElement element, qsizetype less) {
    if (!text.holds(less + 1, u'/')) {
        return -1;
    }
    const qsizetype length = foldedPrefixLength(text.rest(less), closingText(element));
    return length > 0 ? less + length : -1;
}

} // namespace

std::optional<TextRange> PhpRegions::next() {
    qsizetype begin = m_text.next(htmlLess, m_position);
    while (begin < m_text.end() && !m_text.holds(begin + 1, u'?')) {
        begin = m_text.next(htmlLess, begin + 1);
    }
    if (begin == m_text.end()) {
        return std::nullopt;
    }
    // Neither "php" nor "=" holds a question mark: whether one of them follows makes no difference.
    const qsizetype content = begin + 2;
    qsizetype close = m_text.next(htmlGreater, content);
    while (close < m_text.end() && (close == content || m_text.unit(close - 1) != u'?')) {
        close = m_text.next(htmlGreater, close + 1);
    }
    m_position = close < m_text.end() ? close + 1 : close;
    return TextRange{begin, m_position - begin};
}

std::optional<TextRange> EmbeddedContents::next() {
    for (qsizetype p = m_text.next(htmlLess, m_position); p < m_text.end(); p = m_text.next(htmlLess, p + 1)) {
        const qsizetype length = foldedPrefixLength(m_text.rest(p), openingText(m_element));
        if (length == 0 || !m_text.is(p + length, boundary)) {
            continue;
        }
        const qsizetype tagEnd = m_text.next(htmlGreater, p + length);
        if (tagEnd == m_text.end()) {
            break;
        }
        const qsizetype content = tagEnd + 1;
        for (qsizetype close = m_text.next(htmlLess, content); close < m_text.end();
             close = m_text.next(htmlLess, close + 1)) {
            const qsizetype end = closingTextEnd(m_text, m_element, close);
            if (end > 0 && m_text.holds(end, u'>')) {
                m_position = end + 1;
                return TextRange{content, close - content};
            }
        }
        // Without a closing tag behind this opening one there is none behind any later one either.
        break;
    }
    m_position = m_text.end();
    return std::nullopt;
}

qsizetype closingTagStart(const ClassifiedText& text, EmbeddedElement element) {
    for (qsizetype p = text.next(htmlLess, text.begin()); p < text.end(); p = text.next(htmlLess, p + 1)) {
        const qsizetype end = closingTextEnd(text, element, p);
        if (end > 0 && text.holds(text.runEnd(space, end), u'>')) {
            return p;
        }
    }
    return text.end();
}

} // namespace quillary::highlighting
