#include "QuillaryCore/Notes/NoteSortOrder.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QList>
#include <QMap>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

Moment at(qint64 seconds) {
    return Moment(std::chrono::seconds(seconds));
}

NoteSortKey titled(const QString& title) {
    return {title, {}, {}};
}

/// A note of which only the title is known.
struct Note {
    Moment created() const { return distantPast; }

    Moment modified() const { return distantPast; }

    QString title() const { return text; }

    QString text;
};

QList<std::shared_ptr<Note>> notesWithTitles(const QStringList& titles) {
    QList<std::shared_ptr<Note>> notes;
    for (const QString& title : titles) {
        notes.append(std::make_shared<Note>(Note{title}));
    }
    return notes;
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
    const std::vector<NoteSortKey> keys{{u"a"_s, at(5), distantPast}, {u"b"_s, distantPast, at(-9'000'000'000)}};
    EXPECT_THAT(sortedPositions(keys, NoteSortOrder::modified, u"it"_s), testing::ElementsAre(1, 0));
    EXPECT_THAT(sortedPositions(keys, NoteSortOrder::created, u"it"_s), testing::ElementsAre(0, 1));
}

TEST(NoteSortOrder, SortsTitlesByLocaleAndNumbers) {
    const QList<std::shared_ptr<Note>> notes =
        notesWithTitles({u"a 10"_s, u"B"_s, u"a 2"_s, u"\u00E8"_s, u"e"_s, u"f"_s, u"A"_s});
    QStringList titles;
    for (const auto& note : sorted(notes, NoteSortOrder::title)) {
        titles.append(note->title());
    }
    EXPECT_EQ(titles, QStringList({u"A"_s, u"a 2"_s, u"a 10"_s, u"B"_s, u"e"_s, u"\u00E8"_s, u"f"_s}));
}

TEST(NoteSortOrder, NotesThatTieInEverythingKeepTheirOrder) {
    QStringList titles;
    for (int i = 0; i < 100; ++i) {
        titles.append(i % 3 == 0 ? u"b"_s : u"a"_s);
    }
    const QList<std::shared_ptr<Note>> notes = notesWithTitles(titles);
    for (const NoteSortOrder order : allNoteSortOrders) {
        const QList<std::shared_ptr<Note>> result = sorted(notes, order);
        ASSERT_EQ(result.size(), notes.size());
        for (qsizetype i = 1; i < result.size(); ++i) {
            ASSERT_LE(result[i - 1]->title(), result[i]->title());
            ASSERT_TRUE(result[i - 1]->title() != result[i]->title() ||
                        notes.indexOf(result[i - 1]) < notes.indexOf(result[i]));
        }
    }
}

TEST(NoteSortOrder, AsksOnceForATitleAndOnlyWhereDatesAreEqual) {
    QMap<qsizetype, int> asked;
    const auto title = [&asked](qsizetype position) {
        ++asked[position];
        return QString::number(position * 37 % 50);
    };
    const std::vector dates{at(3), at(1), at(2), at(1), at(4), at(1)};
    EXPECT_THAT(sortedPositions(dates, title, u"it"_s), testing::ElementsAre(4, 0, 2, 3, 5, 1));
    EXPECT_EQ(asked, (QMap<qsizetype, int>{{1, 1}, {3, 1}, {5, 1}}));
}

TEST(NoteSortOrder, AsksForTitlesInTheOrderOfTheNotes) {
    std::vector<qsizetype> asked;
    const auto title = [&asked](qsizetype position) {
        asked.push_back(position);
        return QString::number(position);
    };
    EXPECT_THAT(sortedPositions({at(1), at(2), at(1), at(2)}, title, u"it"_s), testing::ElementsAre(1, 3, 0, 2));
    EXPECT_THAT(asked, testing::ElementsAre(0, 1, 2, 3));
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
    EXPECT_TRUE(sortedPositions(std::vector<NoteSortKey>(), NoteSortOrder::title, u"it"_s).empty());
}

} // namespace quillary
