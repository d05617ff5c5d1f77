#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>

#include <random>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// The boundaries as ICU finds them in one pass, without any of our shortcuts.
std::vector<qsizetype> boundariesByIcu(const QString& text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    // The iterator refers to the string that it is given.
    const icu::UnicodeString string(text.utf16(), static_cast<int32_t>(text.size()));
    iterator->setText(string);
    std::vector<qsizetype> boundaries;
    for (int32_t at = iterator->first(); at != icu::BreakIterator::DONE; at = iterator->next()) {
        boundaries.push_back(at);
    }
    return boundaries;
}

void expectBoundaries(const QString& text, const std::vector<qsizetype>& boundaries) {
    SCOPED_TRACE(text.toUtf8().toPercentEncoding().toStdString());
    std::vector<qsizetype> walked{0};
    for (ClusterWalker walker(text); !walker.atEnd();) {
        walker.next();
        walked.push_back(walker.position());
    }
    ASSERT_EQ(walked, boundaries);
    ASSERT_EQ(clusterCount(text), static_cast<qsizetype>(boundaries.size()) - 1);
    for (qsizetype offset = 0; offset <= text.size(); ++offset) {
        const auto above = std::upper_bound(boundaries.begin(), boundaries.end(), offset);
        const auto from = std::lower_bound(boundaries.begin(), boundaries.end(), offset);
        ASSERT_EQ(nextClusterBoundary(text, offset), above == boundaries.end() ? text.size() : *above) << offset;
        ASSERT_EQ(previousClusterBoundary(text, offset), from == boundaries.begin() ? 0 : *(from - 1)) << offset;
        ASSERT_EQ(isClusterBoundary(text, offset), from != boundaries.end() && *from == offset) << offset;
    }
    for (std::size_t clusters = 0; clusters < boundaries.size(); ++clusters) {
        ASSERT_EQ(clusterPrefix(text, static_cast<qsizetype>(clusters)).size(), boundaries[clusters]);
    }
}

} // namespace

TEST(GraphemeClusters, OfKnownTexts) {
    const struct {
        QString text;
        std::vector<qsizetype> boundaries;
    } cases[] = {
        {u"abc"_s, {0, 1, 2, 3}},
        {u"a\r\nb"_s, {0, 1, 3, 4}},
        {u"\n\r"_s, {0, 1, 2}},
        {u"\r\r\n\n"_s, {0, 1, 3, 4}},
        {u"e\u0301x"_s, {0, 2, 3}},
        {u"\r\u0301"_s, {0, 1, 2}},
        {u"\u00E9\u00E8"_s, {0, 1, 2}},
        {u"\u00AD\u0301"_s, {0, 1, 2}},
        {u"\U0001F600\U0001F600"_s, {0, 2, 4}},
        {u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s, {0, 8}},
        {u"\u00A9\u200D\u00AE"_s, {0, 3}},
        {u"\U0001F1EE\U0001F1F9\U0001F1EB"_s, {0, 4, 6}},
        {u"\U0001F44D\U0001F3FDx"_s, {0, 4, 5}},
        {u"1\uFE0F\u20E3"_s, {0, 3}},
        {u"\u1112\u1161\u11AB\uD55C"_s, {0, 3, 4}},
        {u"\u0915\u093F"_s, {0, 2}},
        {u"\u0600a"_s, {0, 2}},
    };

    for (const auto& each : cases) {
        expectBoundaries(each.text, each.boundaries);
    }
}

TEST(GraphemeClusters, OfLoneSurrogatesAreTheirOwn) {
    expectBoundaries(QString(QChar(0xD83D)) + u'a' + QChar(0xDC80), {0, 1, 2, 3});
    EXPECT_EQ(clusterCount(QString(QString(QChar(0xDC80)) + QChar(0xD83D))), 2);
}

TEST(GraphemeClusters, NoneInAnEmptyText) {
    EXPECT_EQ(clusterCount({}), 0);
    EXPECT_EQ(nextClusterBoundary({}, 0), 0);
    EXPECT_EQ(previousClusterBoundary({}, 0), 0);
    EXPECT_TRUE(isClusterBoundary({}, 0));
    EXPECT_TRUE(clusterPrefix({}, 5).isEmpty());
}

TEST(GraphemeClusters, AnOffsetOutsideGivesTheNearestEnd) {
    EXPECT_EQ(nextClusterBoundary(u"ab", -3), 0);
    EXPECT_EQ(nextClusterBoundary(u"ab", 9), 2);
    EXPECT_EQ(previousClusterBoundary(u"ab", 9), 2);
    EXPECT_EQ(previousClusterBoundary(u"ab", -1), 0);
    EXPECT_FALSE(isClusterBoundary(u"ab", -1));
    EXPECT_FALSE(isClusterBoundary(u"ab", 3));
}

TEST(GraphemeClusters, CountingStopsOneBeyondTheLimit) {
    EXPECT_EQ(clusterCount(u"abcd", 4), 4);
    EXPECT_EQ(clusterCount(u"abcd", 3), 4);
    EXPECT_EQ(clusterCount(u"abcd", 1), 2);
    EXPECT_EQ(clusterCount(u"abcd", 0), 1);
}

TEST(GraphemeClusters, APrefixNeverSplitsACluster) {
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    EXPECT_EQ(clusterPrefix(QString(family + u'x'), 1), family);
    EXPECT_EQ(clusterPrefix(u"a\r\nb", 2), u"a\r\n");
    EXPECT_EQ(clusterPrefix(u"ab", 7), u"ab");
}

TEST(GraphemeClusters, AWalkMayBeginAtAnyBoundary) {
    ClusterWalker walker(u"xe\u0301\r\n", 1);
    EXPECT_EQ(walker.next(), u"e\u0301");
    EXPECT_EQ(walker.next(), u"\r\n");
    EXPECT_TRUE(walker.atEnd());
    EXPECT_TRUE(walker.next().isEmpty());
}

TEST(GraphemeClusters, TwoWalksAtOnceDoNotDisturbEachOther) {
    ClusterWalker first(u"e\u0301e\u0301");
    ClusterWalker second(u"\U0001F600\U0001F601");
    EXPECT_EQ(first.next(), u"e\u0301");
    EXPECT_EQ(second.next(), u"\U0001F600");
    EXPECT_EQ(first.next(), u"e\u0301");
    EXPECT_EQ(second.next(), u"\U0001F601");
}

TEST(GraphemeClusters, AWalkOverAMillionRegionalIndicatorsIsLinear) {
    const QString flags = u"\U0001F1EE"_s.repeated(1'000'000);
    EXPECT_EQ(clusterCount(flags), 500'000);
}

TEST(GraphemeClusters, OfRandomTextsAreThoseOfIcu) {
    // Each break property has members here, those below U+0300 where the shortcuts live above all.
    const std::u32string alphabet = U"a\r\n\u00AD\u00A9\u02FF\u0300\u0301\u0600\u0903\u0915\u093F\u094D\u1100\u1161"
                                    U"\u11A8\uAC00\uAC01\u200B\u200D\u2028\u3042\uFE0F\U0001F1E6\U0001F1E7\U0001F3FB"
                                    U"\U0001F468\U000E0020";
    std::mt19937 random(1);
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size());
    for (int round = 0; round < 3000; ++round) {
        QString text;
        for (std::size_t i = 0; i < 12; ++i) {
            const std::size_t at = letter(random);
            text += at == alphabet.size() ? QString(QChar(0xD800)) : QString::fromUcs4(&alphabet[at], 1);
        }
        expectBoundaries(text, boundariesByIcu(text));
    }
}

} // namespace quillary
