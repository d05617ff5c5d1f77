#include "QuillaryCore/Formats/Highlighting/KeywordSet.h"
#include "QuillaryCore/Formats/Highlighting/SharedScanners.h"

namespace quillary::highlighting {

namespace {

constexpr Classes scriptDoubleQuote = languageClass(0);
constexpr Classes scriptSingleQuote = languageClass(1);
constexpr Classes scriptBacktick = languageClass(2);
constexpr Classes scriptBackslash = languageClass(3);
constexpr Classes scriptSlash = languageClass(4);
constexpr Classes scriptStar = languageClass(5);
constexpr Classes scriptDollar = languageClass(6);
constexpr Classes scriptParenthesis = languageClass(7);

constexpr ClassTable scriptClasses = makeClassTable({
    {"\"", scriptDoubleQuote},
    {"'", scriptSingleQuote},
    {"`", scriptBacktick},
    {"\\", scriptBackslash},
    {"/", scriptSlash},
    {"*", scriptStar},
    {"$", scriptDollar},
    {"(", scriptParenthesis},
});

constexpr std::u16string_view scriptKeywordList[] = {
    u"async",    u"await",   u"break",    u"case",   u"catch",  u"class",  u"const",      u"continue",
    u"debugger", u"default", u"delete",   u"do",     u"else",   u"export", u"extends",    u"finally",
    u"for",      u"from",    u"function", u"if",     u"import", u"in",     u"instanceof", u"let",
    u"new",      u"of",      u"return",   u"static", u"super",  u"switch", u"this",       u"throw",
    u"try",      u"typeof",  u"var",      u"void",   u"while",  u"with",   u"yield",
};
constexpr KeywordSet scriptKeywords{scriptKeywordList};

bool isScriptConstant(QStringView text) {
    return text == u"true" || text == u"false" || text == u"null" || text == u"undefined" || text == u"NaN" ||
           text == u"Infinity";
}

void scanScriptKeywords(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanWords(text, kind, pass, [](QStringView each) { return scriptKeywords.contains(each); });
}

void scanScriptConstants(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanWords(text, kind, pass, isScriptConstant);
}

constexpr std::array scriptRuleArray = {
    Rule{SyntaxTokenKind::comment, scriptSlash, scanLineComments<scriptSlash>},
    Rule{SyntaxTokenKind::comment, scriptSlash, scanBlockComments<scriptSlash, scriptStar>},
    Rule{SyntaxTokenKind::string, scriptBacktick, scanQuoted<scriptBacktick, scriptBackslash, true>},
    Rule{SyntaxTokenKind::string, scriptDoubleQuote, scanQuoted<scriptDoubleQuote, scriptBackslash, false>},
    Rule{SyntaxTokenKind::string, scriptSingleQuote, scanQuoted<scriptSingleQuote, scriptBackslash, false>},
    Rule{SyntaxTokenKind::keyword, wordStart, scanScriptKeywords},
    Rule{SyntaxTokenKind::constant, wordStart, scanScriptConstants},
    Rule{SyntaxTokenKind::number, digit, scanNumbers},
    Rule{SyntaxTokenKind::function, scriptParenthesis, scanCalls<scriptDollar, scriptParenthesis>},
};

} // namespace

RuleList javaScriptRules() {
    return {scriptClasses, scriptRuleArray};
}

} // namespace quillary::highlighting
