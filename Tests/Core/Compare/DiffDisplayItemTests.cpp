#include "QuillaryCore/Compare/DiffDisplayItem.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <random>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

using Kind = DiffRow::Kind;

/// Kinds from a text: "." is unchanged, "~" changed, "-" removed, "+" added.
std::vector<Kind> kinds(QStringView text) {
    std::vector<Kind> result;
    for (const QChar each : text) {
        result.push_back(each == u'.'   ? Kind::unchanged
                         : each == u'~' ? Kind::changed
                         : each == u'-' ? Kind::removed
                                        : Kind::added);
    }
    return result;
}

QStringList told(const std::vector<DiffDisplayItem>& items) {
    QStringList result;
    for (const DiffDisplayItem& item : items) {
        result.append(item.kind() == DiffDisplayItem::Kind::row ? item.id()
                                                                : item.id() + u':' + QString::number(item.count()));
    }
    return result;
}

QStringList items(QStringView text, qsizetype context = DiffDisplayItem::shownContext,
                  const QSet<qsizetype>& expanded = {}) {
    return told(DiffDisplayItem::items(kinds(text), context, expanded));
}

QStringList rows(int from, int to) {
    QStringList result;
    for (; from <= to; ++from) {
        result.append(u'r' + QString::number(from));
    }
    return result;
}

/// By flags, one for each row, as plainly as can be.
QStringList byFlags(const std::vector<Kind>& list, qsizetype context, const QSet<qsizetype>& expanded) {
    const qsizetype n = static_cast<qsizetype>(list.size());
    std::vector<bool> stays(list.size(), false);
    bool isChanged = false;
    for (qsizetype c = 0; c < n; ++c) {
        if (list[static_cast<std::size_t>(c)] != Kind::unchanged) {
            isChanged = true;
            for (qsizetype i = std::max<qsizetype>(c - context, 0); i <= std::min(c + context, n - 1); ++i) {
                stays[static_cast<std::size_t>(i)] = true;
            }
        }
    }
    QStringList result;
    for (qsizetype i = 0; i < n;) {
        qsizetype end = i;
        while (end < n && !stays[static_cast<std::size_t>(end)]) {
            ++end;
        }
        if (isChanged && end - i >= 4 && !expanded.contains(i)) {
            result.append(u"c%1:%2"_s.arg(i).arg(end - i));
        } else {
            end = std::max(end, i + 1);
            result += rows(static_cast<int>(i), static_cast<int>(end) - 1);
        }
        i = end;
    }
    return result;
}

} // namespace

TEST(DiffDisplayItem, NothingFoldsWithoutAChange) {
    EXPECT_EQ(items(u""), QStringList());
    EXPECT_EQ(items(u"................"), rows(0, 15));
}

TEST(DiffDisplayItem, FewerThanFourRowsBeyondTheContextStay) {
    EXPECT_EQ(items(u"....~....."), rows(0, 9));
}

TEST(DiffDisplayItem, FourRowsBeyondTheContextFoldAndThreeStay) {
    EXPECT_EQ(items(u"~......."), rows(0, 7).mid(0, 4) + QStringList{u"c4:4"_s});
    EXPECT_EQ(items(u"~......"), rows(0, 6));
}

TEST(DiffDisplayItem, ContextsThatTouchLeaveNoFoldBetweenThem) {
    EXPECT_EQ(items(u"~......+"), rows(0, 7));
    // With three more the fold would be too small, with four it is there.
    EXPECT_EQ(items(u"~.........+"), rows(0, 10));
    EXPECT_EQ(items(u"~..........+"), rows(0, 3) + QStringList{u"c4:4"_s} + rows(8, 11));
}

TEST(DiffDisplayItem, FoldsAtTheStartAndAtTheEnd) {
    EXPECT_EQ(items(u"........-........"), QStringList{u"c0:5"_s} + rows(5, 11) + QStringList{u"c12:5"_s});
}

TEST(DiffDisplayItem, AnExpandedFoldShowsItsRowsAndNoOtherChanges) {
    EXPECT_EQ(items(u"........-........", 3, {0}), rows(0, 11) + QStringList{u"c12:5"_s});
    EXPECT_EQ(items(u"........-........", 3, {12}), QStringList{u"c0:5"_s} + rows(5, 16));
    // Another row's id opens nothing.
    EXPECT_EQ(items(u"........-........", 3, {1}), items(u"........-........"));
}

TEST(DiffDisplayItem, TheContextIsAsGiven) {
    EXPECT_EQ(items(u"....~....", 0), (QStringList{u"c0:4"_s, u"r4"_s, u"c5:4"_s}));
    EXPECT_EQ(items(u"....~....", std::numeric_limits<qsizetype>::max()), rows(0, 8));
}

TEST(DiffDisplayItem, AllRowsAreRows) {
    EXPECT_EQ(told(DiffDisplayItem::allRows(3)), rows(0, 2));
    EXPECT_TRUE(DiffDisplayItem::allRows(0).empty());
}

TEST(DiffDisplayItem, IdsTellTheKindAndTheRow) {
    EXPECT_EQ(DiffDisplayItem::row(12).id(), u"r12"_s);
    EXPECT_EQ(DiffDisplayItem::collapsed(12, 5).id(), u"c12"_s);
    EXPECT_EQ(DiffDisplayItem::collapsed(12, 5).count(), 5);
    EXPECT_FALSE(DiffDisplayItem::row(12) == DiffDisplayItem::collapsed(12, 1));
}

TEST(DiffDisplayItem, AgreesWithFlagsForEachRow) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::vector<Kind> list(random() % 60);
        for (Kind& kind : list) {
            kind = random() % 12 == 0 ? static_cast<Kind>(1 + random() % 3) : Kind::unchanged;
        }
        const qsizetype context = static_cast<qsizetype>(random() % 5);
        QSet<qsizetype> expanded;
        for (std::size_t i = random() % 6; i > 0; --i) {
            expanded.insert(static_cast<qsizetype>(random() % 60));
        }
        ASSERT_EQ(told(DiffDisplayItem::items(list, context, expanded)), byFlags(list, context, expanded));
    }
}
