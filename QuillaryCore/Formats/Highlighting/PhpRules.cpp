#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"
#include "QuillaryCore/Formats/Highlighting/KeywordSet.h"
#include "QuillaryCore/Formats/Highlighting/SharedScanners.h"

namespace quillary::highlighting {

namespace {

constexpr Classes phpDoubleQuote = languageClass(0);
constexpr Classes phpSingleQuote = languageClass(1);
constexpr Classes phpBackslash = languageClass(2);
/// A slash or a number sign.
constexpr Classes phpCommentStart = languageClass(3);
constexpr Classes phpStar = languageClass(4);
constexpr Classes phpDollar = languageClass(5);
constexpr Classes phpParenthesis = languageClass(6);
/// A less-than sign or a question mark.
constexpr Classes phpMark = languageClass(7);

constexpr ClassTable phpClasses = makeClassTable({
    {"\"", phpDoubleQuote},
    {"'", phpSingleQuote},
    {"\\", phpBackslash},
    {"/#", phpCommentStart},
    {"*", phpStar},
    {"$", phpDollar},
    {"(", phpParenthesis},
    {"<?", phpMark},
});

constexpr std::u16string_view phpKeywordList[] = {
    u"abstract",  u"and",        u"array",     u"as",           u"break",        u"callable",  u"case",
    u"catch",     u"class",      u"clone",     u"const",        u"continue",     u"declare",   u"default",
    u"do",        u"echo",       u"else",      u"elseif",       u"empty",        u"enum",      u"extends",
    u"final",     u"finally",    u"fn",        u"for",          u"foreach",      u"function",  u"global",
    u"if",        u"implements", u"include",   u"include_once", u"instanceof",   u"interface", u"isset",
    u"list",      u"match",      u"namespace", u"new",          u"or",           u"print",     u"private",
    u"protected", u"public",     u"readonly",  u"require",      u"require_once", u"return",    u"static",
    u"switch",    u"throw",      u"trait",     u"try",          u"unset",        u"use",       u"var",
    u"while",     u"xor",        u"yield",
};
constexpr KeywordSet phpKeywords{phpKeywordList};

/// A word in lowercase ASCII, if it can be: by full case folding, as the patterns ignore case.
class FoldedWord {
public:
    explicit FoldedWord(QStringView text) {
        if (text.size() > KeywordSet::longestWord) {
            return;
        }
        for (const char16_t* unit = text.utf16(); unit != text.utf16() + text.size(); ++unit) {
            if (*unit < 0x80 && m_length < m_letters.size()) [[likely]] {
                m_letters[m_length++] = asciiLowercase(*unit);
                continue;
            }
            const std::u16string_view folded = foldedToAscii(*unit);
            if (folded.empty() || m_length + folded.size() > m_letters.size()) {
                m_length = 0;
                return;
            }
            for (const char16_t letter : folded) {
                m_letters[m_length++] = letter;
            }
        }
    }

    QStringView view() const { return {m_letters.data(), static_cast<qsizetype>(m_length)}; }

private:
    std::array<char16_t, KeywordSet::longestWord> m_letters;
    std::size_t m_length = 0;
};

bool isPhpConstant(QStringView word) {
    // No folding makes a word longer than the longest of these from one of more units.
    constexpr qsizetype longest = 5;
    if (word.size() > longest) {
        return false;
    }
    const char16_t first = asciiLowercase(word.utf16()[0]);
    if (first < 0x80 && first != u't' && first != u'f' && first != u'n') {
        return false;
    }
    const FoldedWord folded(word);
    const QStringView text = folded.view();
    return text == u"true" || text == u"false" || text == u"null";
}

/// The end of `<\?(?:php|=)?|\?>` at a mark, or the mark's own position.
qsizetype phpTagEnd(const ClassifiedText& text, qsizetype mark) {
    if (text.unit(mark) == u'?') {
        return text.holds(mark + 1, u'>') ? mark + 2 : mark;
    }
    if (!text.holds(mark + 1, u'?')) {
        return mark;
    }
    const qsizetype end = mark + 2;
    return text.holds(end, u'=') ? end + 1 : end + foldedPrefixLength(text.rest(end), u"php");
}

/// `<\?(?:php|=)?|\?>`
void scanPhpTags(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(phpMark, text.begin()); p < text.end(); p = text.next(phpMark, p)) {
        const qsizetype end = phpTagEnd(text, p);
        if (end > p) {
            pass.add(kind, p, end);
        }
        p = std::max(end, p + 1);
    }
}

/// `//[^\n]*?(?=\?>|$)|#(?!\[)[^\n]*?(?=\?>|$)`: `$` holds before any line terminator, so these end at the first.
void scanPhpLineComments(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(phpCommentStart, text.begin()); p < text.end(); p = text.next(phpCommentStart, p)) {
        const qsizetype opening = text.holds(p, u"//") ? 2 : text.holds(p, u'#') && !text.holds(p + 1, u'[') ? 1 : 0;
        if (opening == 0) {
            ++p;
            continue;
        }
        qsizetype end = text.next(lineTerminator | phpMark, p + opening);
        while (end < text.end() && !text.is(end, lineTerminator) && !text.holds(end, u"?>")) {
            end = text.next(lineTerminator | phpMark, end + 1);
        }
        pass.add(kind, p, end);
        p = end;
    }
}

/// `\$[A-Za-z_]\w*`
void scanPhpVariables(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(phpDollar, text.begin()); p < text.end(); p = text.next(phpDollar, p)) {
        const qsizetype name = p + 1;
        if (name < text.end() && (isAsciiLetter(text.unit(name)) || text.unit(name) == u'_')) {
            const qsizetype end = text.runEnd(word, name);
            pass.add(kind, p, end);
            p = end;
        } else {
            p = name;
        }
    }
}

void scanPhpKeywords(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanWords(text, kind, pass, [](QStringView each) { return phpKeywords.contains(FoldedWord(each).view()); });
}

void scanPhpConstants(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanWords(text, kind, pass, isPhpConstant);
}

constexpr std::array phpRuleArray = {
    Rule{SyntaxTokenKind::tag, phpMark, scanPhpTags},
    Rule{SyntaxTokenKind::comment, phpCommentStart, scanPhpLineComments},
    Rule{SyntaxTokenKind::comment, phpCommentStart, scanBlockComments<phpCommentStart, phpStar>},
    Rule{SyntaxTokenKind::string, phpDoubleQuote, scanQuoted<phpDoubleQuote, phpBackslash, true>},
    Rule{SyntaxTokenKind::string, phpSingleQuote, scanQuoted<phpSingleQuote, phpBackslash, true>},
    Rule{SyntaxTokenKind::variable, phpDollar, scanPhpVariables},
    Rule{SyntaxTokenKind::keyword, wordStart, scanPhpKeywords},
    Rule{SyntaxTokenKind::constant, wordStart, scanPhpConstants},
    Rule{SyntaxTokenKind::number, digit, scanNumbers},
    Rule{SyntaxTokenKind::function, phpParenthesis, scanCalls<phpDollar, phpParenthesis>},
};

} // namespace

RuleList phpRules() {
    return {phpClasses, phpRuleArray};
}

} // namespace quillary::highlighting
