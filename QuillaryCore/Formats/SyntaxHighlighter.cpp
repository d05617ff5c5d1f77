#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "QuillaryCore/Formats/Highlighting/OpenElementSearch.h"
#include "QuillaryCore/Formats/Highlighting/Rule.h"
#include "QuillaryCore/Text/TextStorage.h"

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
        const RuleList rules = rulesWithin(element);
        EmbeddedContents contents(html, element);
        while (const std::optional<TextRange> content = contents.next()) {
            apply(rules, *content, scratch, pass);
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

bool mayBeIn(qsizetype length, TextRange window) {
    return window.location >= 0 && window.length >= 1 && window.length <= SyntaxHighlighter::maxLength &&
           window.length <= length - window.location;
}

bool hasEmbeddedElements(SyntaxLanguage language) {
    return language == SyntaxLanguage::html || language == SyntaxLanguage::php;
}

} // namespace

QList<SyntaxToken> SyntaxHighlighter::tokens(QStringView text, SyntaxLanguage language,
                                             std::optional<TextRange> range) {
    const TextRange window = range.value_or(TextRange{0, text.size()});
    if (!mayBeIn(text.size(), window)) {
        return {};
    }
    OpenElementSearch search;
    if (hasEmbeddedElements(language)) {
        search.lookAt(text.first(window.location));
    }
    return wholeTokens(text.sliced(window.location, window.length), language, search.result(), window.location);
}

QList<SyntaxToken> SyntaxHighlighter::tokens(const TextStorage& text, SyntaxLanguage language, TextRange range) {
    if (!mayBeIn(text.length(), range)) {
        return {};
    }
    OpenElementSearch search;
    if (hasEmbeddedElements(language)) {
        constexpr qsizetype pieceLength = 1 << 16;
        for (qsizetype end = range.location; end > 0 && !search.isDecided();) {
            const qsizetype begin = std::max(end - pieceLength, qsizetype(0));
            search.lookAt(text.text({begin, end - begin}));
            end = begin;
        }
    }
    return wholeTokens(text.text(range), language, search.result(), range.location);
}

} // namespace quillary
