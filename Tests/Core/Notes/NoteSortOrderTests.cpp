#include "QuillaryCore/Notes/NoteSortOrder.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

Moment at(qint64 seconds) {
    return Moment(std::chrono::seconds(seconds));
}

NoteSortKey titled(const QString& title) {
    return {title, {}, {}};
}

} // namespace

TEST(NoteSortOrder, HasItsNamesInOrder) {
    const struct {
        NoteSortOrder order;
        QString rawValue;
        QString displayName;
    } rows[] = {
        {NoteSortOrder::created, u"created"_s, u"Data di creazione"_s},
        {NoteSortOrder::modified, u"modified"_s, u"Ultima modifica"_s},
        {NoteSortOrder::title, u"title"_s, u"Titolo"_s},
        {NoteSortOrder::manual, u"manual"_s, u"Manuale (trascinando)"_s},
    };

    ASSERT_EQ(std::size(rows), allNoteSortOrders.size());
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(allNoteSortOrders[i], rows[i].order);
        EXPECT_EQ(rawValue(rows[i].order), rows[i].rawValue);
        EXPECT_EQ(displayName(rows[i].order), rows[i].displayName);
        EXPECT_EQ(noteSortOrderFromRawValue(rows[i].rawValue), rows[i].order);
    }
    EXPECT_EQ(noteSortOrderFromRawValue(u"Title"), std::nullopt);
    EXPECT_EQ(noteSortOrderFromRawValue(u""), std::nullopt);
}

TEST(NoteSortOrder, TheLaterDateGoesFirst) {
    const NoteSortKey older{u"a"_s, at(1), at(20)};
    const NoteSortKey newer{u"b"_s, at(2), at(10)};
    for (const NoteSortOrder order : {NoteSortOrder::created, NoteSortOrder::manual}) {
        EXPECT_TRUE(areInIncreasingOrder(order, newer, older));
        EXPECT_FALSE(areInIncreasingOrder(order, older, newer));
    }
    EXPECT_TRUE(areInIncreasingOrder(NoteSortOrder::modified, older, newer));
    EXPECT_FALSE(areInIncreasingOrder(NoteSortOrder::modified, newer, older));
    EXPECT_TRUE(areInIncreasingOrder(NoteSortOrder::title, older, newer));
    EXPECT_FALSE(areInIncreasingOrder(NoteSortOrder::title, newer, older));
}

TEST(NoteSortOrder, EqualDatesFallThroughToTheTitle) {
    const NoteSortKey second{u"Nota 2"_s, at(1), at(1)};
    const NoteSortKey tenth{u"Nota 10"_s, at(1), at(1)};
    for (const NoteSortOrder order : allNoteSortOrders) {
        EXPECT_TRUE(areInIncreasingOrder(order, second, tenth));
        EXPECT_FALSE(areInIncreasingOrder(order, tenth, second));
        EXPECT_FALSE(areInIncreasingOrder(order, second, second));
    }
}

TEST(NoteSortOrder, DatesAreComparedToTheLastDigit) {
    const NoteSortKey earlier{u"a"_s, at(1), at(1)};
    const NoteSortKey later{u"b"_s, at(1) + std::chrono::nanoseconds(1), at(1) + std::chrono::nanoseconds(1)};
    EXPECT_TRUE(areInIncreasingOrder(NoteSortOrder::created, later, earlier));
    EXPECT_TRUE(areInIncreasingOrder(NoteSortOrder::modified, later, earlier));
}

TEST(NoteSortOrder, AnUnknownDateGoesLast) {
    const QList<NoteSortKey> keys{{u"a"_s, at(5), distantPast}, {u"b"_s, distantPast, at(-9'000'000'000)}};
    const auto itself = [](const NoteSortKey& key) { return key; };
    EXPECT_EQ(sorted(keys, itself, NoteSortOrder::modified), (QList{keys[1], keys[0]}));
    EXPECT_EQ(sorted(keys, itself, NoteSortOrder::created), (QList{keys[0], keys[1]}));
}

TEST(NoteSortOrder, SortsTitlesByLocaleAndNumbers) {
    const QStringList titles{u"a 10"_s, u"B"_s, u"a 2"_s, u"\u00E8"_s, u"e"_s, u"f"_s, u"A"_s};
    EXPECT_EQ(sorted(titles, titled, NoteSortOrder::title),
              QStringList({u"A"_s, u"a 2"_s, u"a 10"_s, u"B"_s, u"e"_s, u"\u00E8"_s, u"f"_s}));
}

TEST(NoteSortOrder, ItemsThatTieInEverythingKeepTheirOrder) {
    struct Item {
        QString title;
        int number;
    };

    std::vector<Item> items;
    items.reserve(100);
    for (int i = 0; i < 100; ++i) {
        items.push_back({i % 3 == 0 ? u"b"_s : u"a"_s, i});
    }
    for (const NoteSortOrder order : allNoteSortOrders) {
        const auto result = sorted(
            items, [](const Item& item) { return titled(item.title); }, order);
        ASSERT_EQ(result.size(), items.size());
        for (std::size_t i = 1; i < result.size(); ++i) {
            ASSERT_LE(result[i - 1].title, result[i].title);
            ASSERT_TRUE(result[i - 1].title != result[i].title || result[i - 1].number < result[i].number);
        }
    }
}

TEST(NoteSortOrder, AsksForEachKeyOnce) {
    QStringList titles;
    for (int i = 0; i < 50; ++i) {
        titles.append(QString::number(i * 37 % 50));
    }
    int asked = 0;
    sorted(
        titles,
        [&](const QString& title) {
            ++asked;
            return titled(title);
        },
        NoteSortOrder::title);
    EXPECT_EQ(asked, 50);
}

TEST(NoteSortOrder, SortsAsItCompares) {
    std::vector<NoteSortKey> keys;
    keys.reserve(300);
    for (int i = 0; i < 300; ++i) {
        keys.push_back({u"Nota %1"_s.arg(i * 7 % 90), at(i * 11 % 13), at(i * 5 % 17)});
    }
    // Titles that differ in nothing but the last step of the comparison, or only far behind their start, or in length.
    for (const QString& title : {u"Nota a\u0001b"_s, u"Nota ab"_s, u"Nota 02"_s, u"Nota 2"_s, u"Nota"_s, u""_s,
                                 u"Nota perch\u00E9"_s, u"Nota perche\u0301"_s, u"Nota perche"_s, u"nota ab"_s,
                                 QString(QString(300, u'x') + u"2"), QString(QString(300, u'x') + u"10")}) {
        keys.push_back({title, at(1), at(1)});
        keys.push_back({title, at(1), at(1)});
    }
    for (const QString& locale : {u"it"_s, u"sv"_s}) {
        for (const NoteSortOrder order : allNoteSortOrders) {
            const std::vector<qsizetype> positions = sortedPositions(keys, order, locale);
            for (std::size_t i = 1; i < positions.size(); ++i) {
                ASSERT_FALSE(areInIncreasingOrder(order, keys[static_cast<std::size_t>(positions[i])],
                                                  keys[static_cast<std::size_t>(positions[i - 1])], locale));
            }
        }
    }
}

TEST(NoteSortOrder, TheLocaleDecidesAboutTitles) {
    const std::vector keys{titled(u"\u00E4"_s), titled(u"z"_s)};
    EXPECT_THAT(sortedPositions(keys, NoteSortOrder::title, u"it"_s), testing::ElementsAre(0, 1));
    EXPECT_THAT(sortedPositions(keys, NoteSortOrder::title, u"sv"_s), testing::ElementsAre(1, 0));
}

TEST(NoteSortOrder, NothingSortsToNothing) {
    EXPECT_TRUE(sorted(QStringList(), titled, NoteSortOrder::title).isEmpty());
}

} // namespace quillary
