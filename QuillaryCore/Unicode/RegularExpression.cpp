#include "QuillaryCore/Unicode/RegularExpression.h"

#include "QuillaryCore/Unicode/Icu.h"
#include "QuillaryCore/Unicode/PatternClasses.h"

#include <QDeadlineTimer>

#include <unicode/regex.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// Memory for backtracking. A note of a million units needs some tens of bytes for each.
constexpr int32_t mostStackBytes = 64 * 1024 * 1024;

/// Watches the clock on behalf of one search. ICU's own limit counts steps, which take as long as they take.
class SearchWatch {
public:
    explicit SearchWatch(std::chrono::milliseconds limit) : m_deadline(limit) {}

    void install(icu::RegexMatcher& matcher, UErrorCode& status) {
        matcher.setMatchCallback(
            [](const void* watch, int32_t) -> UBool { return !self(watch).m_deadline.hasExpired(); }, this, status);
        matcher.setFindProgressCallback(
            [](const void* watch, int64_t position) -> UBool { return self(watch).mayGoOn(position); }, this, status);
    }

    bool hasExpired() const { return m_deadline.hasExpired(); }

    /// Where the engine was last about to try.
    qsizetype position() const { return m_position; }

private:
    static SearchWatch& self(const void* watch) { return *static_cast<SearchWatch*>(const_cast<void*>(watch)); }

    bool mayGoOn(int64_t position) {
        constexpr quint32 callsBetweenLooks = 16;
        m_position = static_cast<qsizetype>(position);
        return ++m_calls % callsBetweenLooks != 0 || !m_deadline.hasExpired();
    }

    QDeadlineTimer m_deadline;
    qsizetype m_position = 0;
    quint32 m_calls = 0;
};

qsizetype nextLine(QStringView text, qsizetype position) {
    const auto* const end = std::find(text.begin() + position, text.end(), u'\n');
    return std::min<qsizetype>(end - text.begin() + 1, text.size());
}

/// Without repetitions, groups, references and whole clusters a pattern costs as many steps a place as it has letters,
/// and to watch them would cost more than they do.
bool mayTakeLong(QStringView pattern) {
    return std::any_of(pattern.begin(), pattern.end(), [](QChar unit) { return u"*+?{(123456789kX"_s.contains(unit); });
}

quint8 classesOf(char32_t codePoint) {
    static const std::span<const quint8, 0x10000> basicPlane = basicPlanePatternClasses();
    return codePoint < basicPlane.size() ? basicPlane[codePoint] : patternClasses(codePoint);
}

} // namespace

struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
    /// Whether trying at a place may cost more than a few steps.
    bool mayTakeLong = true;
};

struct RegularExpression::Match::Source {
    icu::RegexMatcher& matcher;
};

int RegularExpression::Match::groupCount() const {
    return m_source.matcher.groupCount();
}

std::optional<TextRange> RegularExpression::Match::group(int number) const {
    UErrorCode status = U_ZERO_ERROR;
    const auto start = static_cast<qsizetype>(m_source.matcher.start64(number, status));
    const auto end = static_cast<qsizetype>(m_source.matcher.end64(number, status));
    return start < 0 ? std::nullopt : std::optional(TextRange{start, end - start});
}

std::optional<RegularExpression> RegularExpression::make(QStringView pattern, bool caseSensitive) {
    const uint32_t flags = UREGEX_MULTILINE | (caseSensitive ? 0U : uint32_t{UREGEX_CASE_INSENSITIVE});
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    auto compiled = std::make_shared<Compiled>();
    compiled->pattern.reset(icu::RegexPattern::compile(icu_support::readOnlyAlias(pattern), flags, where, status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    compiled->mayTakeLong = mayTakeLong(pattern);
    return RegularExpression(std::move(compiled));
}

void RegularExpression::forEach(QStringView text, std::chrono::milliseconds timeLimit,
                                const std::function<bool(const Match&)>& accept) const {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(m_compiled->pattern->matcher(status));
    icu_support::require(status, "make a matcher");
    icu_support::TextAlias alias(text);
    SearchWatch watch(timeLimit);
    matcher->reset(alias.get());
    matcher->setStackLimit(mostStackBytes, status);
    if (m_compiled->mayTakeLong) {
        watch.install(*matcher, status);
    }
    icu_support::require(status, "search a text");
    const Match::Source source{*matcher};
    qsizetype from = 0;
    bool finds = matcher->find(status);
    for (;;) {
        if (status == U_REGEX_STACK_OVERFLOW) {
            from = nextLine(text, std::max(from, watch.position()));
            if (from == text.size() || watch.hasExpired()) {
                return;
            }
            status = U_ZERO_ERROR;
            finds = matcher->find(from, status);
            continue;
        }
        if (U_FAILURE(status) || !finds || !accept(Match(source)) || watch.hasExpired()) {
            return;
        }
        from = static_cast<qsizetype>(matcher->end64(status));
        finds = matcher->find(status);
    }
}

bool isWordBoundary(QStringView text, qsizetype position) {
    const char16_t* const units = icu_support::units(text);
    const auto length = text.size();
    bool isWordAhead = false;
    if (position < length) {
        UChar32 c = 0;
        qsizetype next = position;
        U16_NEXT(units, next, length, c);
        const quint8 classes = classesOf(static_cast<char32_t>(c));
        if ((classes & patternIgnoredAtBoundary) != 0) {
            return false;
        }
        isWordAhead = (classes & patternWord) != 0;
    }
    while (position > 0) {
        UChar32 c = 0;
        U16_PREV(units, 0, position, c);
        const quint8 classes = classesOf(static_cast<char32_t>(c));
        if ((classes & patternIgnoredAtBoundary) == 0) {
            return isWordAhead != ((classes & patternWord) != 0);
        }
    }
    return isWordAhead;
}

} // namespace quillary
