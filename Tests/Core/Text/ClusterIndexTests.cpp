#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"
#include "QuillaryCore/Unicode/ClusterRestart.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include "Tests/Core/Text/HostileText.h"

#include <gmock/gmock.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

std::vector<qsizetype> boundariesOf(const QString& text) {
    std::vector<qsizetype> boundaries{0};
    for (ClusterWalker walker(text); !walker.atEnd();) {
        walker.next();
        boundaries.push_back(walker.position());
    }
    return boundaries;
}

/// Walks the storage from cluster to cluster, forwards and then backwards.
void expectBoundaries(const TextStorage& storage, const std::vector<qsizetype>& boundaries) {
    std::vector<qsizetype> forward{0};
    while (forward.back() < storage.length()) {
        forward.push_back(storage.nextCluster(forward.back()));
    }
    EXPECT_TRUE(forward == boundaries);
    std::vector<qsizetype> backward{storage.length()};
    while (backward.back() > 0) {
        backward.push_back(storage.previousCluster(backward.back()));
    }
    std::reverse(backward.begin(), backward.end());
    EXPECT_TRUE(backward == boundaries);
}

struct ClusterCase {
    const char* name;
    QString text;
};

class EndlessRuns : public testing::TestWithParam<ClusterCase> {};

TEST_P(EndlessRuns, DivideAsTheWholeTextDoes) {
    const QString& text = GetParam().text;
    TextStorage storage(u"!"_s + text);
    storage.replace({0, 1}, u"");
    ASSERT_TRUE(storage.equals(text));
    expectBoundaries(storage, boundariesOf(text));
}

TEST_P(EndlessRuns, DivideAsTheWholeTextDoesFromAnyUnit) {
    const QString& text = GetParam().text;
    const std::vector<qsizetype> boundaries = boundariesOf(text);
    TextStorage storage(text, 1024);
    for (qsizetype offset = text.size(); offset > 0; offset -= 777) {
        const auto behind = std::upper_bound(boundaries.begin(), boundaries.end(), offset);
        ASSERT_EQ(storage.clusterBoundaryAtOrBefore(offset), *(behind - 1)) << offset;
        ASSERT_EQ(storage.nextCluster(offset), behind == boundaries.end() ? text.size() : *behind) << offset;
    }
}

TEST_P(EndlessRuns, FollowAnEditBeforeAndWithinThem) {
    QString text = GetParam().text.left(8'000);
    TextStorage storage(text, 1024);
    for (const qsizetype place : {4'000, 5, 7'990, 0}) {
        storage.previousCluster(storage.length());
        storage.replace({place, 0}, u"\U0001F1EE");
        text.insert(place, u"\U0001F1EE"_s);
        expectBoundaries(storage, boundariesOf(text));
        storage.replace({place, 1}, u"x");
        text.replace(place, 1, u"x"_s);
        expectBoundaries(storage, boundariesOf(text));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, EndlessRuns,
    testing::Values(ClusterCase{"Flags", u"\U0001F1EE\U0001F1F9"_s.repeated(20'000)},
                    ClusterCase{"OddFlags", u"a\U0001F1EE"_s + u"\U0001F1F9"_s.repeated(40'000)},
                    ClusterCase{"OneLetterUnderAccents", u"e"_s + u"\u0301"_s.repeated(100'000)},
                    ClusterCase{"LettersUnderAccents", QString(u"e"_s + u"\u0301"_s.repeated(5'000)).repeated(20)},
                    ClusterCase{"OneFamily", u"\U0001F469\u200D"_s.repeated(30'000)},
                    ClusterCase{"Families", u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s.repeated(20'000)},
                    ClusterCase{"Hearts", u"\u2764\uFE0F"_s.repeated(30'000)},
                    ClusterCase{"SkinTones", u"\U0001F44D\U0001F3FD"_s.repeated(20'000)},
                    ClusterCase{"Conjuncts", u"\u0915\u094D"_s.repeated(30'000)},
                    ClusterCase{"Prepended", u"\u0600"_s.repeated(40'000)},
                    ClusterCase{"Jamo", u"\u1100"_s.repeated(40'000)},
                    ClusterCase{"Syllables", u"\uAC01"_s.repeated(40'000)},
                    ClusterCase{"Ideographs", u"\u4E2D"_s.repeated(40'000)},
                    ClusterCase{"CarriageReturns", u"\r"_s.repeated(40'000)}),
    [](const auto& text) { return std::string(text.param.name); });

TEST(ClusterIndex, TakesTheNearestBoundaryOnBothSides) {
    const TextStorage storage(u"a\r\nb\U0001F468\u200D\U0001F469c"_s);
    const std::vector<qsizetype> before = {0, 1, 1, 3, 4, 4, 4, 4, 4, 9, 10};
    const std::vector<qsizetype> after = {0, 1, 3, 3, 4, 9, 9, 9, 9, 9, 10};
    for (qsizetype offset = 0; offset <= storage.length(); ++offset) {
        EXPECT_EQ(storage.clusterBoundaryAtOrBefore(offset), before[static_cast<std::size_t>(offset)]) << offset;
        EXPECT_EQ(storage.clusterBoundaryAtOrAfter(offset), after[static_cast<std::size_t>(offset)]) << offset;
    }
    EXPECT_EQ(storage.nextCluster(10), 10);
    EXPECT_EQ(storage.previousCluster(0), 0);
}

TEST(ClusterIndex, KnowsNoClusterInAnEmptyText) {
    const TextStorage storage;
    EXPECT_EQ(storage.nextCluster(0), 0);
    EXPECT_EQ(storage.previousCluster(0), 0);
    EXPECT_EQ(storage.clusterBoundaryAtOrBefore(0), 0);
    EXPECT_EQ(storage.clusterBoundaryAtOrAfter(0), 0);
}

TEST(ClusterIndex, LooksBehindTheEndOfItsFirstWindow) {
    // The mark that makes the cluster go on lies where a first look would end, or is cut in two by it.
    for (qsizetype marks = 50; marks < 80; ++marks) {
        const QString text = u"\u4E2De"_s + u"\u0301"_s.repeated(marks) + u"\U0001F3FD\U0001F3FD"_s + u"\u4E2D"_s;
        const TextStorage storage(text);
        EXPECT_EQ(storage.nextCluster(1), text.size() - 1);
    }
}

TEST(ClusterIndex, ForgetsAClusterThatAnEditAtItsEndMakesLonger) {
    const QString heap = u"e"_s + u"\u0301"_s.repeated(1000);
    TextStorage storage(heap + u"\u4E2D"_s);
    ASSERT_EQ(storage.nextCluster(0), heap.size());
    storage.replace({heap.size(), 0}, u"\u0308");
    EXPECT_EQ(storage.nextCluster(0), heap.size() + 1);
}

TEST(ClusterIndex, ForgetsAClusterThatTheSecondHalfOfAPairMakesLonger) {
    const QString heap = u"e"_s + u"\u0301"_s.repeated(1000);
    TextStorage storage(heap + u"\U0001F3FD"_s);
    UndoManager history(storage);
    history.replace({heap.size() + 1, 1}, u"x", EditKind::other, {});
    ASSERT_EQ(storage.nextCluster(0), heap.size());
    history.undo();
    EXPECT_EQ(storage.nextCluster(0), heap.size() + 2);
}

TEST(ClusterRestart, IsABoundaryWhateverStandsBefore) {
    HostileText random(7);
    int restarts = 0;
    for (int i = 0; i < 20'000; ++i) {
        const QList<uint> points = QString(random.text(6) + u"x"_s + random.text(6)).toUcs4();
        const qsizetype at = random.number(points.size() - 1);
        if (at == 0 || !isClusterRestart(points[at - 1], points[at])) {
            continue;
        }
        ++restarts;
        // QString::fromUcs4 would take a leading U+FEFF for a mark and drop it.
        QString before;
        QString behind;
        for (qsizetype point = 0; point < points.size(); ++point) {
            (point < at ? before : behind).append(QChar::fromUcs4(points[point]));
        }
        std::vector<qsizetype> expected = boundariesOf(before);
        for (const qsizetype boundary : boundariesOf(behind)) {
            if (boundary > 0) {
                expected.push_back(before.size() + boundary);
            }
        }
        EXPECT_EQ(boundariesOf(before + behind), expected) << before.toUtf8().toPercentEncoding().toStdString() << " | "
                                                           << behind.toUtf8().toPercentEncoding().toStdString();
    }
    EXPECT_GT(restarts, 5'000);
}

TEST(ClusterRestart, LiesBetweenOrdinaryNeighbours) {
    struct Case {
        char32_t before;
        char32_t after;
        bool restart;
    };

    const Case cases[] = {
        {U'a', U'b', true},
        {U'\r', U'\n', false},
        {U'\n', U'\r', true},
        {U'a', U'\u0301', false},
        {U'\u0301', U'a', true},
        {U'\n', U'\u0301', true},
        {U'\u4E2D', U'\u4E2D', true},
        {U'\uAC00', U'\uAC00', true},
        {U'\u1100', U'\u1161', false},
        {U'\u0600', U'1', false},
        {U'\u200D', U'\u2764', false},
        {U'\u200D', U'a', true},
        {U'\uFE0F', U'\u2764', true},
        {U'\U0001F1EE', U'\U0001F1F9', false},
        {U'a', U'\U0001F1F9', true},
        {U'\U0001F1EE', U'a', true},
        {U'\u094D', U'\u0915', false},
        {U'\u0915', U'\u0915', true},
        {U'a', U'\u0903', false},
        {U'\U0001F44D', U'\U0001F3FD', false},
    };
    for (const auto& [before, after, restart] : cases) {
        EXPECT_EQ(isClusterRestart(before, after), restart)
            << static_cast<int>(before) << ' ' << static_cast<int>(after);
    }
}

} // namespace

} // namespace quillary
