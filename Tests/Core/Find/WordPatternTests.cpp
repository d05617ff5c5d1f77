#include "QuillaryCore/Find/WordPattern.h"

#include "Tests/Core/Find/PatternReference.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

std::vector<SearchMatch> wordMatches(const QString& pattern, SearchOptions options, const QString& text) {
    std::vector<SearchMatch> matches;
    const auto words = WordPattern::make(pattern, options.caseSensitive, options.wholeWord);
    EXPECT_TRUE(words) << pattern.toStdString();
    words->forEach(text, [&](TextRange range) {
        matches.push_back({range});
        return true;
    });
    return matches;
}

const QStringList patterns{u"\\w+"_s,     u"\\b\\w+"_s,       u"\\w+\\b"_s,    u"\\b\\w+\\b"_s,
                           u"\\w+ing"_s,  u"\\b\\w+ing\\b"_s, u"\\w+ing\\b"_s, u"\\b\\w+g"_s,
                           u"\\w+g\\b"_s, u"\\w+gg"_s,        u"\\w+a1_"_s,    u"\\b\\w+NG\\b"_s};

} // namespace

TEST(WordPattern, LeavesOtherFormsToTheEngine) {
    for (const QString& pattern : QStringList{{},
                                              u"\\w"_s,
                                              u"\\w*"_s,
                                              u"\\w+?"_s,
                                              u"\\w++"_s,
                                              u"\\w+ing+"_s,
                                              u"\\w+ing?"_s,
                                              u"\\w+(ing)"_s,
                                              u"a\\w+"_s,
                                              u"\\w+ ing"_s,
                                              u"\\w+\\d"_s,
                                              u"\\B\\w+"_s,
                                              u"\\w+\\B"_s,
                                              u"\\w+ing|a"_s,
                                              u"\\b"_s,
                                              u"\\w+\\u0061"_s,
                                              u"\\w+perch\u00E9"_s,
                                              u"\\w+{2}"_s,
                                              u"\\w+ing\\b\\b"_s,
                                              u"\\b\\b\\w+"_s}) {
        EXPECT_FALSE(WordPattern::make(pattern, true, false)) << pattern.toStdString();
    }
}

TEST(WordPattern, LeavesEndingsOfManySpellingsToTheEngine) {
    for (const QString& pattern :
         QStringList{u"\\w+s"_s, u"\\w+K"_s, u"\\w+ff"_s, u"\\w+fi"_s, u"\\w+st"_s, u"\\w+ss"_s}) {
        EXPECT_FALSE(WordPattern::make(pattern, false, false)) << pattern.toStdString();
        EXPECT_TRUE(WordPattern::make(pattern, true, false)) << pattern.toStdString();
    }
}

TEST(WordPattern, EndsWhenEnoughIsFound) {
    for (const QString& pattern : patterns) {
        int calls = 0;
        const QString text = u"aing agg aa1_ abing bgg bing "_s.repeated(9);
        WordPattern::make(pattern, false, false)->forEach(text, [&](TextRange) { return ++calls < 2; });
        EXPECT_EQ(calls, 2) << pattern.toStdString();
    }
}

TEST(WordPattern, FindsWhatThePatternFinds) {
    // Letters, what belongs to words without being seen at their ends, what is seen through, pairs and halves of them.
    const QStringList pieces{u"i"_s,
                             u"n"_s,
                             u"g"_s,
                             u"ing"_s,
                             u"ING"_s,
                             u"a1_"_s,
                             u"a"_s,
                             u" "_s,
                             u"-"_s,
                             u"\u0301"_s,
                             u"\u200D"_s,
                             u"\u00AD"_s,
                             u"\u0130"_s,
                             u"\u017F"_s,
                             u"\u4E00"_s,
                             u"\n"_s,
                             u"\U00010400"_s,
                             u"\U0001F44D"_s,
                             u"\u0660"_s,
                             u"\u203F"_s,
                             u"\u0903"_s,
                             u"gg"_s,
                             u"\U0001D165"_s,
                             QString(QChar(0xD801)),
                             QString(QChar(0xDC00))};
    std::uint32_t random = 7;
    const auto next = [&random](qsizetype below) {
        random = random * 1'664'525U + 1'013'904'223U;
        return static_cast<qsizetype>((random >> 8) % static_cast<std::uint32_t>(below));
    };
    for (int round = 0; round < 6'000; ++round) {
        QString text;
        for (qsizetype i = next(round % 10 == 0 ? 60 : 12); i >= 0; --i) {
            text += pieces[next(pieces.size())];
        }
        const QString& pattern = patterns[next(patterns.size())];
        const SearchOptions options{.caseSensitive = next(2) == 0, .wholeWord = next(3) == 0, .regex = true};
        const auto expected = referenceMatches(pattern, options, text);
        ASSERT_TRUE(expected);
        ASSERT_EQ(wordMatches(pattern, options, text), *expected)
            << pattern.toStdString() << " in " << text.toStdString() << options.caseSensitive << options.wholeWord;
    }
}

// Runs of a million characters that hold the ending everywhere, or boundaries that are not seen.
TEST(WordPattern, TakesNoLongerThanTheTextIs) {
    constexpr qsizetype times = 200'000;
    const QStringList texts{u"ing"_s.repeated(times), u"g"_s.repeated(times), QString(times, QChar(0x301)) % u"ing"_s,
                            (u"a\u0301"_s).repeated(times), u"ing\u200D"_s.repeated(times)};
    for (const QString& text : texts) {
        for (const QString& pattern : patterns) {
            EXPECT_LE(wordMatches(pattern, {.regex = true}, text).size(), 1U);
        }
    }
}

} // namespace quillary
