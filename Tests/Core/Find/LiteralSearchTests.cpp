#include "QuillaryCore/Find/LiteralSearch.h"

#include "QuillaryCore/Find/FoldedText.h"

#include "Tests/Core/Find/PatternReference.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

std::vector<SearchMatch> literalMatches(const QString& query, SearchOptions options, const QString& text) {
    std::vector<SearchMatch> matches;
    const auto search = LiteralSearch::make(query, options.caseSensitive, options.wholeWord);
    EXPECT_TRUE(search);
    search->forEach(text, [&](TextRange range) {
        matches.push_back({range});
        return true;
    });
    return matches;
}

/// All code points with a case, and what they fold to.
QList<char32_t> casedCodePoints() {
    QList<char32_t> result;
    for (char32_t c = 1; c < 0x110000; ++c) {
        if (u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_CASE_SENSITIVE) != 0) {
            result.append(c);
        }
    }
    return result;
}

QString textOf(char32_t codePoint) {
    return QString::fromUcs4(&codePoint, 1);
}

} // namespace

TEST(LiteralSearch, LeavesWhatOnlyThePatternKnowsToThePattern) {
    EXPECT_FALSE(LiteralSearch::make({}, true, false));
    EXPECT_FALSE(LiteralSearch::make(u"a"_s % QChar(0xD800), true, false));
    EXPECT_FALSE(LiteralSearch::make(QString(QChar(0xDC00)), false, false));
    EXPECT_TRUE(LiteralSearch::make(u"\U0001F44D"_s, false, false));
}

TEST(LiteralSearch, EndsWhenEnoughIsFound) {
    int calls = 0;
    LiteralSearch::make(u"a"_s, false, false)
        ->forEach(u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", [&](TextRange) { return ++calls < 3; });
    EXPECT_EQ(calls, 3);
}

// Each letter with a case, alone and behind another one, is sought in all that it may be folded with.
TEST(LiteralSearch, SeesTheCaseOfEveryLetterAsThePatternDoes) {
    const QList<char32_t> letters = casedCodePoints();
    ASSERT_GT(letters.size(), 2'500);
    for (const char32_t letter : letters) {
        const auto c = static_cast<UChar32>(letter);
        icu::UnicodeSet relatives(c, c);
        relatives.closeOver(USET_CASE_INSENSITIVE);
        QString text = textOf(letter) % u'-' % case_folding::fold(textOf(letter)) % u'-' % u"x"_s % textOf(letter);
        for (int32_t i = 0; i < relatives.getRangeCount(); ++i) {
            for (UChar32 relative = relatives.getRangeStart(i); relative <= relatives.getRangeEnd(i); ++relative) {
                const QString spelled = textOf(static_cast<char32_t>(relative));
                text += u' ' % spelled % u"x" % spelled % u'y' % case_folding::fold(spelled) % u'y';
            }
        }
        for (const QString& query : QStringList{textOf(letter), u"x"_s % textOf(letter), textOf(letter) % u"y"_s}) {
            const auto expected = referenceMatches(query, {}, text);
            ASSERT_TRUE(expected);
            EXPECT_EQ(literalMatches(query, {}, text), *expected)
                << std::hex << static_cast<unsigned>(letter) << " " << query.toStdString() << " in "
                << text.toStdString();
        }
    }
}

TEST(LiteralSearch, FindsWhatStandsForSeveralLettersWhereverTheQueryHasThem) {
    QHash<QString, QStringList> letters;
    for (char32_t c = 1; c < 0x10000; ++c) {
        if (const QString folded = case_folding::fold(textOf(c)); folded.size() > 1) {
            letters[folded] << textOf(c);
        }
    }
    for (const QString& folding : case_folding::longFoldings()) {
        QString text;
        for (const QString& letter : letters.value(folding)) {
            text += letter % u"a-a" % letter % u'b' % letter % u"ab";
        }
        text += folding % u"a-" % folding;
        for (const QString& query : QStringList{folding, u"a"_s % folding, folding % u"ab"_s, u"a"_s % folding % u"b"_s,
                                                folding.left(1), folding.mid(1), u"a"_s % folding.left(1)}) {
            const auto expected = referenceMatches(query, {}, text);
            ASSERT_TRUE(expected);
            EXPECT_EQ(literalMatches(query, {}, text), *expected)
                << query.toStdString() << " in " << text.toStdString();
        }
    }
}

TEST(LiteralSearch, FindsAtEveryPlaceOfATextOfEveryLength) {
    for (qsizetype length = 1; length < 80; ++length) {
        for (qsizetype place = 0; place < length; ++place) {
            QString text(length, u'-');
            text.replace(place, 1, u"Nota"_s);
            for (const bool caseSensitive : {false, true}) {
                const SearchOptions options{.caseSensitive = caseSensitive, .wholeWord = true};
                EXPECT_EQ(literalMatches(u"Nota"_s, options, text), (std::vector<SearchMatch>{{{place, 4}}}));
            }
        }
    }
}

TEST(LiteralSearch, FindsOverlappingRepetitionsAsThePatternDoes) {
    const QStringList pieces{u"a"_s, u"b"_s, u"aa"_s, u"ab"_s, u"ba"_s, u"aab"_s, u" "_s};
    for (int code = 0; code < 7 * 7 * 7 * 7; ++code) {
        QString unit;
        for (int rest = code, i = 0; i < 4; ++i, rest /= 7) {
            unit += pieces[rest % 7];
        }
        const QString text = unit.repeated(2) % u"a"_s % unit;
        for (const QString& query : QStringList{unit, unit.left(3), unit % u"a"_s % unit}) {
            for (const bool whole : {false, true}) {
                const SearchOptions options{.caseSensitive = true, .wholeWord = whole};
                const auto expected = referenceMatches(query, options, text);
                ASSERT_TRUE(expected);
                ASSERT_EQ(literalMatches(query, options, text), *expected) << query.toStdString();
                ASSERT_EQ(literalMatches(query, {.wholeWord = whole}, text), *expected) << query.toStdString();
            }
        }
    }
}

// A text that shows the anchor everywhere, and an occurrence behind all of it.
TEST(LiteralSearch, GoesOnByReadingWhereTheAnchorTellsNothing) {
    const QString query = QString(300, u'a') % u"b"_s % QString(300, u'a');
    const QString text = QString(40'000, u'a') % u"b"_s % QString(40'000, u'a') % u" \u00DF"_s % query;
    for (const bool caseSensitive : {false, true}) {
        const SearchOptions options{.caseSensitive = caseSensitive};
        const auto expected = referenceMatches(query, options, text);
        ASSERT_TRUE(expected);
        EXPECT_EQ(expected->size(), 2U);
        EXPECT_EQ(literalMatches(query, options, text), *expected);
    }
}

TEST(CaseFolding, GivesTheLettersThatFoldToAUnit) {
    const auto sorted = [](auto units) {
        QString text = QString::fromUtf16(units.data(), units.size());
        std::sort(text.begin(), text.end());
        return text;
    };
    EXPECT_EQ(sorted(case_folding::unitsThatFoldTo(u's')), u"Ss\u017F"_s);
    EXPECT_EQ(sorted(case_folding::unitsThatFoldTo(u'k')), u"Kk\u212A"_s);
    EXPECT_EQ(sorted(case_folding::unitsThatFoldTo(u'-')), u"-"_s);
    EXPECT_TRUE(case_folding::unitsThatFoldTo(u'S').isEmpty());
    EXPECT_TRUE(case_folding::unitsThatFoldTo(0xD83D).isEmpty());
    EXPECT_EQ(case_folding::longFoldings().size(), 104U);
}

// What the anchors count on: no letter outside the basic plane folds to one within it.
TEST(CaseFolding, StaysInThePlaneOfTheLetter) {
    for (char32_t c = 0x10000; c < 0x110000; ++c) {
        const QString folded = case_folding::fold(textOf(c));
        ASSERT_EQ(folded.size(), 2) << std::hex << static_cast<unsigned>(c);
        ASSERT_TRUE(folded[0].isHighSurrogate());
    }
}

} // namespace quillary
