#include "QuillaryCore/Formats/Highlighting/TextColouring.h"

#include "QuillaryCore/Formats/Highlighting/Rule.h"

namespace quillary::highlighting {

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
        const RuleList rules = rulesWithin(element);
        EmbeddedContents contents(html, element);
        while (const std::optional<TextRange> content = contents.next()) {
            apply(rules, *content, scratch, pass);
            pass.occupy(*content);
        }
    }
    apply(htmlRules(), html, pass);
}

} // namespace

QList<SyntaxToken> tokensOfText(QStringView text, SyntaxLanguage language, std::optional<EmbeddedElement> open,
                                qsizetype offset) {
    const TextRange whole{0, text.size()};
    Pass pass(text.size());
    ClassifiedText classified(text);
    if (hasEmbeddedElements(language)) {
        classified.classify(htmlRules().classes, whole);
        ClassifiedText scratch(text);
        if (language == SyntaxLanguage::php) {
            const RuleList rules = phpRules();
            PhpRegions regions(classified);
            while (const std::optional<TextRange> region = regions.next()) {
                apply(rules, *region, scratch, pass);
                pass.occupy(*region);
            }
        }
        highlightHtml(classified, open, scratch, pass);
    } else {
        apply(rulesOf(language), whole, classified, pass);
    }
    return pass.tokens(offset);
}

} // namespace quillary::highlighting
