#include "QuillaryCore/Find/TextSearch.h"
#include "QuillaryCore/Unicode/RegularExpression.h"

#include <QString>

#include <gtest/gtest.h>

#include <chrono>

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

// Nothing but ending is asked here; a search without a limit would take hours.
TEST(HostileSearch, EndsWithinItsTimeWithWhatItFound) {
    const QString letters = QString(300'000, u'a');

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
    };
    for (const Case& each : cases) {
        const auto expression = RegularExpression::make(each.pattern, false);
        ASSERT_TRUE(expression);
        const auto start = std::chrono::steady_clock::now();
        int found = 0;
        expression->forEach(each.text, 50ms, [&](const RegularExpression::Match&) { return ++found < 1'000; });
        EXPECT_GE(found, each.least) << each.pattern.toStdString();
        // Generous: the machine may be busy.
        EXPECT_LT(std::chrono::steady_clock::now() - start, 10s) << each.pattern.toStdString();
    }
}

TEST(HostileSearch, GivesASearchOfTheUsersASecond) {
    EXPECT_EQ(TextSearch::timeLimit, 1s);
    EXPECT_EQ(matches(u"(a+)+$"_s, asPattern, u"a\n"_s % QString(1'000'000, u'a') % u"!"_s).front().range,
              (TextRange{0, 1}));
}

TEST(HostileSearch, GoesOnInTheNextLineWhereThePatternTakesTooMuchMemory) {
    const QString line = QString(3'000'000, u'a');
    const auto found = matches(u"(a|b)*c"_s, asPattern, u"abc\n"_s % line % u"\nbac"_s);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].range, (TextRange{0, 3}));
    EXPECT_EQ(found[1].range, (TextRange{line.size() + 5, 3}));
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
