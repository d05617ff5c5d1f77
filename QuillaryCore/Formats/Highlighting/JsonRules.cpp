#include "QuillaryCore/Formats/Highlighting/SharedScanners.h"

namespace quillary::highlighting {

namespace {

constexpr Classes jsonQuote = languageClass(0);
constexpr Classes jsonBackslash = languageClass(1);
constexpr Classes jsonSlash = languageClass(2);
constexpr Classes jsonStar = languageClass(3);

constexpr ClassTable jsonClasses = makeClassTable({
    {"\"", jsonQuote},
    {"\\", jsonBackslash},
    {"/", jsonSlash},
    {"*", jsonStar},
});

/// `"(?:[^"\\\n]|\\.)*"(?=\s*:)`
void scanJsonKeys(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(jsonQuote, text.begin()); p < text.end(); p = text.next(jsonQuote, p)) {
        const qsizetype begin = p;
        const QuotedEnd end = readQuoted<jsonQuote, jsonBackslash, false>(text, begin + 1);
        p = end.position;
        if (!end.isClosed) {
            continue;
        }
        if (text.holds(text.runEnd(space, end.position), u':')) {
            pass.add(kind, begin, end.position);
        } else {
            // The quote that closed a value may open a match.
            --p;
        }
    }
}

/// `-?\b\d+(?:\.\d+)?(?:[eE][+-]?\d+)?\b`
void scanJsonNumbers(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    qsizetype searched = text.begin();
    for (qsizetype p = text.next(wordStart, searched); p < text.end(); p = text.next(wordStart, p)) {
        const qsizetype end = text.is(p, digit) ? decimalEnd(text, p) : -1;
        if (end > 0) {
            pass.add(kind, p > searched && text.unit(p - 1) == u'-' ? p - 1 : p, end);
            searched = end;
        }
        p = std::max(end, p + 1);
    }
}

bool isJsonConstant(QStringView text) {
    return text == u"true" || text == u"false" || text == u"null";
}

void scanJsonConstants(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanWords(text, kind, pass, isJsonConstant);
}

constexpr std::array jsonRuleArray = {
    Rule{SyntaxTokenKind::comment, jsonSlash, scanLineComments<jsonSlash>},
    Rule{SyntaxTokenKind::comment, jsonSlash, scanBlockComments<jsonSlash, jsonStar>},
    Rule{SyntaxTokenKind::attribute, jsonQuote, scanJsonKeys},
    Rule{SyntaxTokenKind::string, jsonQuote, scanQuoted<jsonQuote, jsonBackslash, false>},
    Rule{SyntaxTokenKind::constant, wordStart, scanJsonConstants},
    Rule{SyntaxTokenKind::number, digit, scanJsonNumbers},
};

} // namespace

RuleList jsonRules() {
    return {jsonClasses, jsonRuleArray};
}

} // namespace quillary::highlighting
