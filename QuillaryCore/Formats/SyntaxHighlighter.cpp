#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "QuillaryCore/Formats/Highlighting/EmbeddedRegions.h"
#include "QuillaryCore/Formats/Highlighting/Rule.h"

namespace quillary {

using namespace highlighting;

namespace {

RuleList rulesWithin(EmbeddedElement element) {
    return element == EmbeddedElement::script ? javaScriptRules() : cssRules();
}

/// Colours a text classified as HTML; `scratch` is for what is embedded in it.
void highlightHtml(const ClassifiedText& html, std::optional<EmbeddedElement> open, ClassifiedText& scratch,
                   Pass& pass) {
    if (open) {
        const TextRange stretch{html.begin(), closingTagStart(html, *open) - html.begin()};
        apply(rulesWithin(*open), stretch, scratch, pass);
        pass.occupy(stretch);
    }
    for (const EmbeddedElement element : {EmbeddedElement::script, EmbeddedElement::style}) {
        EmbeddedContents contents(html, element);
        while (const std::optional<TextRange> content = contents.next()) {
            apply(rulesWithin(element), *content, scratch, pass);
            pass.occupy(*content);
        }
    }
    apply(htmlRules(), html, pass);
}

/// The tokens of a whole text, moved by `offset`.
QList<SyntaxToken> wholeTokens(QStringView text, SyntaxLanguage language, std::optional<EmbeddedElement> open,
                               qsizetype offset) {
    const TextRange whole{0, text.size()};
    Pass pass(text.size());
    ClassifiedText classified(text);
    if (language == SyntaxLanguage::html || language == SyntaxLanguage::php) {
        classified.classify(htmlRules().classes, whole);
        ClassifiedText scratch(text);
        if (language == SyntaxLanguage::php) {
            PhpRegions regions(classified);
            while (const std::optional<TextRange> region = regions.next()) {
                apply(phpRules(), *region, scratch, pass);
                pass.occupy(*region);
            }
        }
        highlightHtml(classified, open, scratch, pass);
    } else {
        apply(rulesOf(language), whole, classified, pass);
    }
    return pass.tokens(offset);
}

} // namespace

QList<SyntaxToken> SyntaxHighlighter::tokens(QStringView text, SyntaxLanguage language,
                                             std::optional<TextRange> range) {
    const TextRange window = range.value_or(TextRange{0, text.size()});
    if (window.location < 0 || window.length < 1 || window.length > maxLength ||
        window.length > text.size() - window.location) {
        return {};
    }
    const bool mayBeOpen = language == SyntaxLanguage::html || language == SyntaxLanguage::php;
    return wholeTokens(text.sliced(window.location, window.length), language,
                       mayBeOpen ? elementOpenBefore(text, window.location) : std::nullopt, window.location);
}

} // namespace quillary
