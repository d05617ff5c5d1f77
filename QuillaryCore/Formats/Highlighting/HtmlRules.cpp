#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"
#include "QuillaryCore/Formats/Highlighting/HtmlClasses.h"
#include "QuillaryCore/Formats/Highlighting/Rule.h"

namespace quillary::highlighting {

namespace {

/// `<!--[\s\S]*?(?:-->|\z)`
void scanHtmlComments(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlLess, text.begin()); p < text.end(); p = text.next(htmlLess, p)) {
        if (!text.holds(p, u"<!--")) {
            ++p;
            continue;
        }
        qsizetype close = text.next(htmlHyphen, p + 4);
        while (close < text.end() && !text.holds(close, u"-->")) {
            close = text.next(htmlHyphen, close + 1);
        }
        const qsizetype end = close < text.end() ? close + 3 : close;
        pass.add(kind, p, end);
        p = end;
    }
}

/// `<!DOCTYPE[^>]*>`. No unit beyond ASCII folds to any of its letters.
void scanHtmlDoctypes(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    constexpr std::u16string_view opening = u"<!doctype";
    for (qsizetype p = text.next(htmlLess, text.begin()); p < text.end(); p = text.next(htmlLess, p)) {
        if (!text.holds(p + 1, u'!') || foldedPrefixLength(text.rest(p), opening) == 0) {
            ++p;
            continue;
        }
        const qsizetype close = text.next(htmlGreater, p + static_cast<qsizetype>(opening.size()));
        if (close == text.end()) {
            return;
        }
        pass.add(kind, p, close + 1);
        p = close + 1;
    }
}

/// `=\s*("[^"]*"|'[^']*')`, the quoted value
void scanHtmlValues(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlEquals, text.begin()); p < text.end(); p = text.next(htmlEquals, p)) {
        const qsizetype open = text.runEnd(space, p + 1);
        const Classes quotes = text.holds(open, u'"') ? htmlDoubleQuote : text.holds(open, u'\'') ? htmlSingleQuote : 0;
        p = open;
        if (quotes == 0) {
            continue;
        }
        const qsizetype close = text.next(quotes, open + 1);
        if (close < text.end()) {
            pass.add(kind, open, close + 1);
            p = close + 1;
        }
    }
}

/// `</?[A-Za-z][\w:-]*`
void scanHtmlTags(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlLess, text.begin()); p < text.end(); p = text.next(htmlLess, p)) {
        const qsizetype name = text.holds(p + 1, u'/') ? p + 2 : p + 1;
        if (name < text.end() && isAsciiLetter(text.unit(name))) {
            const qsizetype end = text.runEnd(word | htmlColon | htmlHyphen, name);
            pass.add(kind, p, end);
            p = end;
        } else {
            ++p;
        }
    }
}

/// `/?>`
void scanHtmlTagEnds(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlGreater, text.begin()); p < text.end(); p = text.next(htmlGreater, p + 1)) {
        pass.add(kind, p > text.begin() && text.unit(p - 1) == u'/' ? p - 1 : p, p + 1);
    }
}

/// `(?<=\s)([A-Za-z_:@][\w:.-]*)(?=\s*=)`
void scanHtmlAttributes(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlEquals, text.begin()); p < text.end(); p = text.next(htmlEquals, p + 1)) {
        const qsizetype end = text.runStart(space, p, text.begin());
        qsizetype begin = text.runStart(word | htmlColon | htmlPeriod | htmlHyphen, end, text.begin());
        if (begin > text.begin() && text.unit(begin - 1) == u'@') {
            --begin;
        }
        if (begin == end || begin == text.begin() || !text.is(begin - 1, space)) {
            continue;
        }
        const char16_t first = text.unit(begin);
        if (isAsciiLetter(first) || first == u'_' || first == u':' || first == u'@') {
            pass.add(kind, begin, end);
        }
    }
}

/// `&[#\w]+;`
void scanHtmlEntities(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(htmlAmpersand, text.begin()); p < text.end(); p = text.next(htmlAmpersand, p)) {
        const qsizetype name = p + 1;
        qsizetype end = name;
        while (text.is(end, word) || text.holds(end, u'#')) {
            ++end;
        }
        if (end > name && text.holds(end, u';')) {
            ++end;
            pass.add(kind, p, end);
        }
        p = end;
    }
}

constexpr std::array htmlRuleArray = {
    Rule{SyntaxTokenKind::comment, htmlHyphen, scanHtmlComments},
    Rule{SyntaxTokenKind::keyword, wordStart, scanHtmlDoctypes},
    Rule{SyntaxTokenKind::string, htmlEquals, scanHtmlValues},
    Rule{SyntaxTokenKind::tag, wordStart, scanHtmlTags},
    Rule{SyntaxTokenKind::tag, htmlGreater, scanHtmlTagEnds},
    Rule{SyntaxTokenKind::attribute, htmlEquals, scanHtmlAttributes},
    Rule{SyntaxTokenKind::constant, htmlAmpersand, scanHtmlEntities},
};

} // namespace

RuleList htmlRules() {
    return {htmlClasses, htmlRuleArray};
}

} // namespace quillary::highlighting
