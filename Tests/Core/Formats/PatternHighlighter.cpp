#include "Tests/Core/Formats/PatternHighlighter.h"

#include <unicode/regex.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace quillary::reference {

using enum SyntaxTokenKind;

namespace {

std::vector<PatternRule> cssPatterns() {
    return {
        {comment, uR"(/\*[\s\S]*?(?:\*/|\z))"},
        {string, uR"("(?:[^"\\\n]|\\.)*")"},
        {string, uR"('(?:[^'\\\n]|\\.)*')"},
        {keyword, uR"(@[\w-]+)"},
        {keyword, uR"(!important\b)"},
        {attribute, uR"((?:^|[{;\s])([\w-]+)\s*:(?=[^;{}]*[;}]))", 1},
        {number, uR"(#[0-9a-fA-F]{3,8}\b(?![^{};]*\{))"},
        {number, uR"((?<![\w#.-])-?\d*\.?\d+(?:px|em|rem|vh|vw|vmin|vmax|ms|s|deg|fr|pt|ch|%)?)"},
        {function, uR"(([\w-]+)(?=\())", 1},
        {tag, uR"([.#][A-Za-z_][\w-]*(?=[^{};]*\{))"},
        {keyword, uR"(::?[A-Za-z-]+(?=[^{};]*\{))"},
        {tag, uR"(\b[a-z][\w-]*(?=[^{};]*\{))"},
    };
}

std::vector<PatternRule> javaScriptPatterns() {
    return {
        {comment, uR"(//[^\n]*)"},
        {comment, uR"(/\*[\s\S]*?(?:\*/|\z))"},
        {string, uR"(`(?:[^`\\]|\\.)*`)"},
        {string, uR"("(?:[^"\\\n]|\\.)*")"},
        {string, uR"('(?:[^'\\\n]|\\.)*')"},
        {keyword, uR"(\b(?:async|await|break|case|catch|class|const|continue|debugger|default|delete|do|else|export|)"
                  uR"(extends|finally|for|from|function|if|import|in|instanceof|let|new|of|return|static|super|switch|)"
                  uR"(this|throw|try|typeof|var|void|while|with|yield)\b)"},
        {constant, uR"(\b(?:true|false|null|undefined|NaN|Infinity)\b)"},
        {number, uR"(\b(?:0[xX][\da-fA-F]+|\d+(?:\.\d+)?(?:[eE][+-]?\d+)?)\b)"},
        {function, uR"(\b([A-Za-z_$][\w$]*)(?=\s*\())", 1},
    };
}

std::vector<PatternRule> jsonPatterns() {
    return {
        {comment, uR"(//[^\n]*)"},
        {comment, uR"(/\*[\s\S]*?(?:\*/|\z))"},
        {attribute, uR"("(?:[^"\\\n]|\\.)*"(?=\s*:))"},
        {string, uR"("(?:[^"\\\n]|\\.)*")"},
        {constant, uR"(\b(?:true|false|null)\b)"},
        {number, uR"(-?\b\d+(?:\.\d+)?(?:[eE][+-]?\d+)?\b)"},
    };
}

std::vector<PatternRule> phpPatterns() {
    return {
        {tag, uR"(<\?(?:php|=)?|\?>)", 0, true},
        {comment, uR"(//[^\n]*?(?=\?>|$)|#(?!\[)[^\n]*?(?=\?>|$))"},
        {comment, uR"(/\*[\s\S]*?(?:\*/|\z))"},
        {string, uR"("(?:[^"\\]|\\.)*")"},
        {string, uR"('(?:[^'\\]|\\.)*')"},
        {variable, uR"(\$[A-Za-z_]\w*)"},
        {keyword,
         uR"(\b(?:abstract|and|array|as|break|callable|case|catch|class|clone|const|continue|declare|default|do|echo|)"
         uR"(else|elseif|empty|enum|extends|final|finally|fn|for|foreach|function|global|if|implements|include|)"
         uR"(include_once|instanceof|interface|isset|list|match|namespace|new|or|print|private|protected|public|)"
         uR"(readonly|require|require_once|return|static|switch|throw|trait|try|unset|use|var|while|xor|yield)\b)",
         0, true},
        {constant, uR"(\b(?:true|false|null)\b)", 0, true},
        {number, uR"(\b(?:0[xX][\da-fA-F]+|\d+(?:\.\d+)?(?:[eE][+-]?\d+)?)\b)"},
        {function, uR"(\b([A-Za-z_$][\w$]*)(?=\s*\())", 1},
    };
}

std::vector<PatternRule> htmlPatterns() {
    return {
        {comment, uR"(<!--[\s\S]*?(?:-->|\z))"},
        {keyword, uR"(<!DOCTYPE[^>]*>)", 0, true},
        {string, uR"(=\s*("[^"]*"|'[^']*'))", 1},
        {tag, uR"(</?[A-Za-z][\w:-]*)"},
        {tag, uR"(/?>)"},
        {attribute, uR"((?<=\s)([A-Za-z_:@][\w:.-]*)(?=\s*=))", 1},
        {constant, uR"(&[#\w]+;)"},
    };
}

void require(UErrorCode status, const char* action) {
    if (U_FAILURE(status)) {
        std::fprintf(stderr, "%s: %s\n", action, u_errorName(status));
        std::abort();
    }
}

/// The state of one run.
class ReferencePass {
public:
    explicit ReferencePass(QStringView text) : m_text(text), m_occupied(static_cast<std::size_t>(text.size())) {}

    void apply(SyntaxLanguage language, TextRange range) {
        if (range.length < 1) {
            return;
        }
        const std::vector<PatternRule>& rules = patternRules(language);
        for (std::size_t i = 0; i < rules.size(); ++i) {
            for (const TextRange& match : compiledRules(language)[i].matches(m_text, range, rules[i].group)) {
                if (isFree(match)) {
                    m_tokens.append({rules[i].kind, match});
                    occupy(match);
                }
            }
        }
    }

    void occupy(TextRange range) { std::fill_n(m_occupied.begin() + range.location, range.length, true); }

    QList<SyntaxToken> sortedTokens() {
        std::ranges::stable_sort(m_tokens, {}, [](const SyntaxToken& each) { return each.range.location; });
        return m_tokens;
    }

private:
    bool isFree(TextRange range) const {
        const auto begin = m_occupied.begin() + range.location;
        return std::find(begin, begin + range.length, true) == begin + range.length;
    }

    QStringView m_text;
    std::vector<bool> m_occupied;
    QList<SyntaxToken> m_tokens;
};

enum class Open { none, script, style };

void highlightHtml(ReferencePass& pass, QStringView text, Open open) {
    const TextRange whole{0, text.size()};
    if (open != Open::none) {
        const std::vector<TextRange> closes =
            (open == Open::script ? scriptClosePattern() : styleClosePattern()).matches(text, whole, 0);
        const TextRange stretch{0, closes.empty() ? text.size() : closes.front().location};
        pass.apply(open == Open::script ? SyntaxLanguage::javascript : SyntaxLanguage::css, stretch);
        pass.occupy(stretch);
    }
    for (const TextRange& content : scriptBlockPattern().matches(text, whole, 1)) {
        pass.apply(SyntaxLanguage::javascript, content);
        pass.occupy(content);
    }
    for (const TextRange& content : styleBlockPattern().matches(text, whole, 1)) {
        pass.apply(SyntaxLanguage::css, content);
        pass.occupy(content);
    }
    pass.apply(SyntaxLanguage::html, whole);
}

QList<SyntaxToken> wholeTokens(QStringView text, SyntaxLanguage language, Open open) {
    ReferencePass pass(text);
    const TextRange whole{0, text.size()};
    switch (language) {
    case SyntaxLanguage::css:
    case SyntaxLanguage::javascript:
    case SyntaxLanguage::json:
        pass.apply(language, whole);
        break;
    case SyntaxLanguage::php:
        for (const TextRange& region : phpRegionPattern().matches(text, whole, 0)) {
            pass.apply(SyntaxLanguage::php, region);
            pass.occupy(region);
        }
        [[fallthrough]];
    case SyntaxLanguage::html:
        highlightHtml(pass, text, open);
        break;
    }
    return pass.sortedTokens();
}

qsizetype lastLocation(const std::u16string& literal, QStringView text) {
    const std::vector<TextRange> found = Pattern(literal, false, true).matches(text, {0, text.size()}, 0);
    return found.empty() ? -1 : found.back().location;
}

Open openBefore(QStringView before) {
    if (lastLocation(u"<script", before) > lastLocation(u"</script", before)) {
        return Open::script;
    }
    return lastLocation(u"<style", before) > lastLocation(u"</style", before) ? Open::style : Open::none;
}

std::vector<Pattern> compiled(const std::vector<PatternRule>& rules) {
    std::vector<Pattern> result;
    result.reserve(rules.size());
    for (const PatternRule& rule : rules) {
        result.emplace_back(rule.pattern, true, rule.ignoresCase);
    }
    return result;
}

} // namespace

const std::vector<PatternRule>& patternRules(SyntaxLanguage language) {
    static const std::vector<PatternRule> lists[] = {cssPatterns(), javaScriptPatterns(), phpPatterns(), htmlPatterns(),
                                                     jsonPatterns()};
    return lists[static_cast<std::size_t>(language)];
}

const std::vector<Pattern>& compiledRules(SyntaxLanguage language) {
    static const std::vector<Pattern> lists[] = {
        compiled(patternRules(SyntaxLanguage::css)), compiled(patternRules(SyntaxLanguage::javascript)),
        compiled(patternRules(SyntaxLanguage::php)), compiled(patternRules(SyntaxLanguage::html)),
        compiled(patternRules(SyntaxLanguage::json))};
    return lists[static_cast<std::size_t>(language)];
}

const Pattern& phpRegionPattern() {
    static const Pattern pattern(uR"(<\?(?:php|=)?[\s\S]*?(?:\?>|\z))", false, false);
    return pattern;
}

const Pattern& scriptBlockPattern() {
    static const Pattern pattern(uR"(<script\b[^>]*>([\s\S]*?)</script>)", false, true);
    return pattern;
}

const Pattern& styleBlockPattern() {
    static const Pattern pattern(uR"(<style\b[^>]*>([\s\S]*?)</style>)", false, true);
    return pattern;
}

const Pattern& scriptClosePattern() {
    static const Pattern pattern(uR"(</script\s*>)", false, true);
    return pattern;
}

const Pattern& styleClosePattern() {
    static const Pattern pattern(uR"(</style\s*>)", false, true);
    return pattern;
}

struct Pattern::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
    std::unique_ptr<icu::RegexMatcher> matcher;
};

bool Pattern::overflowed = false;

Pattern::Pattern(const std::u16string& pattern, bool matchesAtLineEnds, bool ignoresCase)
    : m_compiled(std::make_unique<Compiled>()) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError error;
    uint32_t flags = 0;
    if (matchesAtLineEnds) {
        flags |= UREGEX_MULTILINE;
    }
    if (ignoresCase) {
        flags |= UREGEX_CASE_INSENSITIVE;
    }
    m_compiled->pattern.reset(icu::RegexPattern::compile(icu::UnicodeString(pattern.c_str()), flags, error, status));
    require(status, "compiling a pattern");
    m_compiled->matcher.reset(m_compiled->pattern->matcher(status));
    require(status, "making a matcher");
    m_compiled->matcher->setStackLimit(0, status);
    require(status, "lifting the limit of the stack");
}

Pattern::Pattern(Pattern&&) noexcept = default;
Pattern::~Pattern() = default;

std::vector<TextRange> Pattern::matches(QStringView text, TextRange range, int group) const {
    std::vector<TextRange> result;
    icu::RegexMatcher& matcher = *m_compiled->matcher;
    const icu::UnicodeString input(false, text.isEmpty() ? u"" : text.utf16(), static_cast<int32_t>(text.size()));
    UErrorCode status = U_ZERO_ERROR;
    matcher.reset(input);
    matcher.region(range.location, range.end(), status);
    while (matcher.find(status)) {
        const int64_t begin = matcher.start64(group, status);
        const int64_t end = matcher.end64(group, status);
        if (begin >= 0 && end > begin) {
            result.push_back({static_cast<qsizetype>(begin), static_cast<qsizetype>(end - begin)});
        }
    }
    if (status == U_REGEX_STACK_OVERFLOW) {
        overflowed = true;
    } else {
        require(status, "matching");
    }
    return result;
}

QList<SyntaxToken> tokens(QStringView text, SyntaxLanguage language, std::optional<TextRange> range) {
    constexpr qsizetype longest = 300'000;
    const TextRange window = range.value_or(TextRange{0, text.size()});
    if (window.location < 0 || window.length < 1 || window.length > longest ||
        window.length > text.size() - window.location) {
        return {};
    }
    if (window.length == text.size()) {
        return wholeTokens(text, language, Open::none);
    }
    const bool mayBeOpen = language == SyntaxLanguage::html || language == SyntaxLanguage::php;
    QList<SyntaxToken> result = wholeTokens(text.sliced(window.location, window.length), language,
                                            mayBeOpen ? openBefore(text.first(window.location)) : Open::none);
    for (SyntaxToken& token : result) {
        token.range.location += window.location;
    }
    return result;
}

} // namespace quillary::reference
