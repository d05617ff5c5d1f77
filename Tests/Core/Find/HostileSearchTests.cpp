#include "QuillaryCore/Find/TextSearch.h"
#include "QuillaryCore/Unicode/RegularExpression.h"

#include <QString>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace quillary {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr SearchOptions asPattern{.regex = true};

std::vector<SearchMatch> matches(const QString& query, SearchOptions options, const QString& text) {
    const auto search = TextSearch::make(query, options);
    EXPECT_TRUE(search);
    return search->matches(text);
}

} // namespace

// Nothing but ending is asked here; a search without a limit would take hours, and meet the time limit of the test.
TEST(HostileSearch, EndsWithinItsTimeWithWhatItFound) {
    const QString letters = QString(300'000, u'a');
    // Enough to stall, and soon over once abandoned.
    const QString someLetters = QString(5'000, u'a');

    struct Case {
        QString pattern;
        QString text;
        int least;
    };

    const std::vector<Case> cases{
        {u"(a+)+$"_s, u"aa\n"_s % letters % u"!"_s, 1},
        {u"$+?<|"_s, QString(100'000, u'\n'), 0},
        {u"(a|)+?x"_s, letters, 0},
        {u"(?:a?)*?x"_s, letters, 0},
        {u".*x"_s, letters, 0},
        {u"[a-z]*+x"_s, letters, 0},
        {u"x|(a|aa)+b"_s, u"x"_s % letters, 1},
        // A step of these takes as long as what they look ahead to, or as the group is.
        {u"(?:(?=\\w*).)*"_s, someLetters, 0},
        {u"(?:(?>\\w*)x|\\w)+y"_s, someLetters, 0},
        {u"(?:a(?=.*))*x"_s, someLetters, 0},
        {u"(\\w*)(?:\\1)+x"_s, someLetters, 0},
        {u"(?<all>\\w*)(?:\\k<all>)+x"_s, someLetters, 0},
    };
    for (const Case& each : cases) {
        const auto expression = RegularExpression::make(each.pattern, false);
        ASSERT_TRUE(expression);
        int found = 0;
        expression->forEach(each.text, 50ms, [&](const RegularExpression::Match&) { return ++found < 1'000; });
        EXPECT_GE(found, each.least) << each.pattern.toStdString();
    }
}

TEST(HostileSearch, LeavesWhatMayStallToAThreadOfItsOwn) {
    const struct {
        QString pattern;
        bool mayStall;
    } cases[] = {
        {u"a"_s, false},        {u"(?:a+)+"_s, false}, {u"(?i)a"_s, false},        {u"\\\\1?|a"_s, false},
        {u"\\(?=?|a"_s, false}, {u"(a)\\1"_s, true},   {u"(?<n>a)\\k<n>"_s, true}, {u"a(?=a)"_s, true},
        {u"a(?!b)"_s, true},    {u"(?>a)"_s, true},    {u"(?<=a)a"_s, true},       {u"(?<!b)a"_s, true},
    };

    for (const auto& [pattern, mayStall] : cases) {
        const auto expression = RegularExpression::make(pattern, false);
        ASSERT_TRUE(expression) << pattern.toStdString();
        std::thread::id thread;
        expression->forEach(u"aaa"_s, 30s, [&](const RegularExpression::Match&) {
            thread = std::this_thread::get_id();
            return false;
        });
        ASSERT_NE(thread, std::thread::id()) << pattern.toStdString();
        EXPECT_EQ(thread != std::this_thread::get_id(), mayStall) << pattern.toStdString();
    }
}

TEST(HostileSearch, GivesASearchOfTheUsersASecond) {
    EXPECT_EQ(TextSearch::timeLimit, 1s);
    EXPECT_EQ(matches(u"(a+)+$"_s, asPattern, u"a\n"_s % QString(1'000'000, u'a') % u"!"_s).front().range,
              (TextRange{0, 1}));
}

TEST(HostileSearch, LeavesNothingBehindThatHoldsUpTheNextSearch) {
    const auto stalling = RegularExpression::make(u"(\\w*)(?:\\1)+x"_s, false);
    const QString letters(3'000, u'a');
    for (int i = 0; i < 6; ++i) {
        stalling->forEach(letters, 1ms, [](const RegularExpression::Match&) { return true; });
    }
    // As many searches as may stall have ended by then.
    const auto finding = RegularExpression::make(u"(a)\\1"_s, false);
    int found = 0;
    finding->forEach(u"aaaa"_s, 30s, [&](const RegularExpression::Match&) { return ++found > 0; });
    EXPECT_EQ(found, 2);
}

TEST(HostileSearch, GoesOnInTheNextLineWhereThePatternTakesTooMuchMemory) {
    const QString line = QString(3'000'000, u'a');
    const QString text = u"abc\n"_s % line % u"\nbac"_s;
    const auto expression = RegularExpression::make(u"(a|b)*c"_s, false);
    std::vector<TextRange> found;
    expression->forEach(text, 60s, [&](const RegularExpression::Match& match) {
        found.push_back(match.range());
        return true;
    });
    EXPECT_EQ(found, (std::vector<TextRange>{{0, 3}, {line.size() + 5, 3}}));
}

TEST(HostileSearch, FindsLiteralsInTextsThatShowThemEverywhere) {
    const QString text = QString(600'000, u'a') % u"b"_s;
    const QString query = QString(5'000, u'a') % u"b"_s;
    for (const bool caseSensitive : {false, true}) {
        for (const bool wholeWord : {false, true}) {
            const auto found = matches(query, {caseSensitive, wholeWord, false}, text);
            ASSERT_EQ(found.size(), wholeWord ? 0U : 1U);
        }
    }
    EXPECT_TRUE(matches(QString(2'000, u'a') % u"b"_s % QString(2'000, u'a'), {}, QString(600'000, u'a')).empty());
    EXPECT_EQ(matches(u"a"_s, {.wholeWord = true}, u"a"_s % QString(500'000, QChar(0x301)) % u" a"_s).size(), 1U);
}

} // namespace quillary
