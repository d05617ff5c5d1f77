#pragma once

#include "QuillaryCore/Formats/Highlighting/ClassifiedText.h"

#include <optional>
#include <string_view>

namespace quillary::highlighting {

/// The elements of HTML whose contents are of another language.
enum class EmbeddedElement { script, style };

/// What an element's opening and closing tags begin with, in lower case.
constexpr std::u16string_view openingText(EmbeddedElement element) {
    return element == EmbeddedElement::script ? u"<script" : u"<style";
}

constexpr std::u16string_view closingText(EmbeddedElement element) {
    return element == EmbeddedElement::script ? u"</script" : u"</style";
}

/// The PHP regions of a text classified as HTML, one after the other: `<\?(?:php|=)?[\s\S]*?(?:\?>|\z)`.
class PhpRegions {
public:
    explicit PhpRegions(const ClassifiedText& text) : m_text(text), m_position(text.begin()) {}

    std::optional<TextRange> next();

private:
    const ClassifiedText& m_text;
    qsizetype m_position;
};

/// The contents of the closed elements of a text classified as HTML, one after the other:
/// `<script\b[^>]*>([\s\S]*?)</script>` or the same with `style`, ignoring case, the captured group.
class EmbeddedContents {
public:
    EmbeddedContents(const ClassifiedText& text, EmbeddedElement element)
        : m_text(text), m_element(element), m_position(text.contains(wordStart) ? text.begin() : text.end()) {}

    std::optional<TextRange> next();

private:
    const ClassifiedText& m_text;
    EmbeddedElement m_element;
    qsizetype m_position;
};

/// Where the first closing tag begins in a text classified as HTML, or the end: `</script\s*>` or the same with
/// `style`, ignoring case.
qsizetype closingTagStart(const ClassifiedText& text, EmbeddedElement element);

} // namespace quillary::highlighting
