#include "QuillaryCore/Formats/Highlighting/Rule.h"

namespace quillary::highlighting {

RuleList rulesOf(SyntaxLanguage language) {
    switch (language) {
    case SyntaxLanguage::css:
        return cssRules();
    case SyntaxLanguage::javascript:
        return javaScriptRules();
    case SyntaxLanguage::php:
        return phpRules();
    case SyntaxLanguage::html:
        return htmlRules();
    case SyntaxLanguage::json:
        return jsonRules();
    }
    Q_UNREACHABLE();
}

void apply(const RuleList& list, const ClassifiedText& text, Pass& pass) {
    for (const Rule& rule : list.rules) {
        if (text.contains(rule.needs)) {
            rule.scan(text, rule.kind, pass);
        }
    }
}

void apply(const RuleList& list, TextRange range, ClassifiedText& scratch, Pass& pass) {
    if (range.length < 1) {
        return;
    }
    scratch.classify(list.classes, range);
    apply(list, scratch, pass);
}

} // namespace quillary::highlighting
