#include "QuillaryCore/Unicode/RegularExpression.h"

#include "QuillaryCore/Unicode/Icu.h"
#include "QuillaryCore/Unicode/PatternClasses.h"

#include <unicode/regex.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <semaphore>
#include <thread>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// Memory for backtracking. A note of a million units needs some tens of bytes for each.
constexpr int32_t mostStackBytes = 64 * 1024 * 1024;

/// Watches the clock on behalf of one search. ICU's own limit counts steps, which take as long as they take.
class SearchWatch {
    using Clock = std::chrono::steady_clock;

public:
    explicit SearchWatch(std::chrono::milliseconds limit) : m_start(Clock::now()), m_deadline(m_start + limit) {}

    void install(icu::RegexMatcher& matcher, UErrorCode& status) {
        matcher.setMatchCallback([](const void* watch, int32_t) -> UBool { return !self(watch).hasExpired(); }, this,
                                 status);
        matcher.setFindProgressCallback(
            [](const void* watch, int64_t position) -> UBool { return self(watch).mayGoOn(position); }, this, status);
    }

    bool hasExpired() const { return Clock::now() >= m_deadline; }

    /// Where the engine was last about to try.
    qsizetype position() const { return m_position; }

private:
    static SearchWatch& self(const void* watch) { return *static_cast<SearchWatch*>(const_cast<void*>(watch)); }

    /// A try at one place may take a nanosecond or read the whole text, so the clock is looked at as often as the last
    /// tries ask for.
    bool mayGoOn(int64_t position) {
        constexpr quint32 mostCallsBetweenLooks = 16;
        constexpr std::chrono::microseconds longTime{200};
        m_position = static_cast<qsizetype>(position);
        if (++m_calls < m_callsBetweenLooks) {
            return true;
        }
        m_calls = 0;
        const Clock::time_point now = Clock::now();
        m_callsBetweenLooks =
            now - m_lastLook > longTime ? 1 : std::min(m_callsBetweenLooks * 2, mostCallsBetweenLooks);
        m_lastLook = now;
        return now < m_deadline;
    }

    Clock::time_point m_start;
    Clock::time_point m_deadline;
    Clock::time_point m_lastLook = m_start;
    qsizetype m_position = 0;
    quint32 m_calls = 0;
    quint32 m_callsBetweenLooks = 1;
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

/// ICU counts its steps where it keeps a way back. A reference to a group, however long, is compared in one step, and
/// what is looked ahead to is read in one, so that a look at the clock may come after minutes.
bool mayStall(QStringView pattern) {
    for (qsizetype i = 0; i + 1 < pattern.size(); ++i) {
        const QStringView rest = pattern.sliced(i + 1);
        if (pattern[i] == u'\\') {
            if ((rest[0] >= u'1' && rest[0] <= u'9') || rest[0] == u'k') {
                return true;
            }
            ++i;
        } else if (pattern[i] == u'(' && rest.size() > 1 && rest[0] == u'?' && u"=!><"_s.contains(rest[1])) {
            return true;
        }
    }
    return false;
}

/// What a search that may stall shares with whoever waits for it.
struct Wait {
    std::mutex mutex;
    std::condition_variable ends;
    bool isDone = false;
    bool isAbandoned = false;
};

/// Searches that were abandoned and have not come to their next look yet. More than this many never run.
std::counting_semaphore<2>& stalledSearches() {
    static std::counting_semaphore<2> seats(2);
    return seats;
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
    bool mayStall = false;

    void search(QStringView text, std::chrono::milliseconds timeLimit, const Accept& accept) const;
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
    compiled->mayStall = mayStall(pattern);
    return RegularExpression(std::move(compiled));
}

void RegularExpression::forEach(QStringView text, std::chrono::milliseconds timeLimit, const Accept& accept) const {
    if (!m_compiled->mayStall) {
        m_compiled->search(text, timeLimit, accept);
        return;
    }
    // The search has a thread and a text of its own, and is left alone when its time is over: it ends at its next look.
    const auto deadline = std::chrono::steady_clock::now() + timeLimit;
    if (!stalledSearches().try_acquire_until(deadline)) {
        return;
    }
    const auto wait = std::make_shared<Wait>();
    std::thread([compiled = m_compiled, own = text.toString(), timeLimit, wait, &accept] {
        compiled->search(own, timeLimit, [&](const Match& match) {
            const std::scoped_lock lock(wait->mutex);
            return !wait->isAbandoned && accept(match);
        });
        stalledSearches().release();
        const std::scoped_lock lock(wait->mutex);
        wait->isDone = true;
        wait->ends.notify_all();
    }).detach();
    std::unique_lock lock(wait->mutex);
    wait->ends.wait_until(lock, deadline, [&] { return wait->isDone; });
    wait->isAbandoned = true;
}

void RegularExpression::Compiled::search(QStringView text, std::chrono::milliseconds timeLimit,
                                         const Accept& accept) const {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(status));
    icu_support::require(status, "make a matcher");
    icu_support::TextAlias alias(text);
    SearchWatch watch(timeLimit);
    matcher->reset(alias.get());
    matcher->setStackLimit(mostStackBytes, status);
    if (mayTakeLong) {
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
