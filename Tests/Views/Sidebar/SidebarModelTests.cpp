#include "Quillary/Sidebar/SidebarModel.h"

#include "../NotesFolder.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

QStringList titles(const SidebarModel& model) {
    QStringList titles;
    for (int row = 0; row < model.rowCount(); ++row) {
        titles.append(model.index(row).data().toString());
    }
    return titles;
}

NotesFolder folderOfThree(NoteSortOrder order = NoteSortOrder::title) {
    return NotesFolder({{u"a.md"_s, u"alfa"_s}, {u"b.txt"_s, u"beta"_s}, {u"Lavoro/c.md"_s, u"gamma"_s}}, order);
}

/// A model under the eyes of a tester that ends the test where its signals lie.
struct WatchedModel {
    explicit WatchedModel(NotesStore& store) : model(store) {}

    SidebarModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy reset{&model, &QAbstractItemModel::modelReset};
    QSignalSpy updated{&model, &SidebarModel::updated};
};

} // namespace

TEST(SidebarModel, ShowsFoldersAboveTheHeadingOfTheOtherNotes) {
    NotesFolder folder = folderOfThree();
    const SidebarModel model(folder.store());
    EXPECT_EQ(titles(model), QStringList({u"Lavoro"_s, u"c"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(model.row(0).count, 1);
    EXPECT_TRUE(model.row(1).indented);
    EXPECT_EQ(model.row(2).kind(), SidebarRow::Kind::groupHeader);
    EXPECT_FALSE(model.row(3).indented);
}

TEST(SidebarModel, AFolderWithoutNotesHasItsHeader) {
    NotesFolder folder = folderOfThree();
    QDir().mkpath(folder.path(u"Vuota"_s));
    folder.store().refreshFromDisk();
    const SidebarModel model(folder.store());
    EXPECT_EQ(titles(model), QStringList({u"Lavoro"_s, u"c"_s, u"Vuota"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(model.row(2).count, 0);
}

TEST(SidebarModel, AClosedFolderHidesItsNotesAndKeepsItsCount) {
    NotesFolder folder = folderOfThree();
    WatchedModel watched(folder.store());
    folder.store().toggleCollapsed(u"Lavoro"_s);
    watched.model.update();
    EXPECT_EQ(titles(watched.model), QStringList({u"Lavoro"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(watched.model.row(0).count, 1);
    EXPECT_TRUE(watched.model.row(0).isCollapsed);
    EXPECT_EQ(watched.removed.size(), 1);
    EXPECT_EQ(watched.inserted.size(), 0);
    ASSERT_EQ(watched.changed.size(), 1);
    EXPECT_EQ(watched.changed.at(0).at(0).toModelIndex().row(), 0);
}

TEST(SidebarModel, ASearchIsOneListWithoutHeaders) {
    NotesFolder folder = folderOfThree();
    SidebarModel model(folder.store());
    ASSERT_TRUE(QTest::qWaitFor([&] { return folder.note(u"c"_s)->document() != nullptr; }));
    EXPECT_FALSE(model.isSearching());
    folder.store().setSearchQuery(u"GAM"_s);
    model.update();
    EXPECT_TRUE(model.isSearching());
    EXPECT_EQ(titles(model), QStringList({u"c"_s}));
    EXPECT_FALSE(model.row(0).indented);
    folder.store().setSearchQuery(u" \t "_s);
    model.update();
    EXPECT_FALSE(model.isSearching());
    EXPECT_EQ(model.rowCount(), 5);
}

TEST(SidebarModel, ASearchTakesInTextsAsTheyArrive) {
    NotesFolder folder = folderOfThree();
    SidebarModel model(folder.store());
    folder.store().setSearchQuery(u"gamma"_s);
    model.update();
    EXPECT_TRUE(QTest::qWaitFor([&] { return titles(model) == QStringList(u"c"_s); }));
}

TEST(SidebarModel, TakesABurstOfChangesInTogether) {
    NotesFolder folder({{u"alfa.md"_s, {}}, {u"beta.md"_s, {}}});
    WatchedModel watched(folder.store());
    for (const QString& query : {u"a"_s, u"al"_s, u"alf"_s}) {
        folder.store().setSearchQuery(query);
    }
    EXPECT_TRUE(watched.model.isPending());
    ASSERT_TRUE(watched.updated.wait());
    EXPECT_EQ(watched.removed.size(), 1);
    EXPECT_EQ(watched.inserted.size(), 0);
    EXPECT_EQ(titles(watched.model), QStringList({u"alfa"_s}));
    EXPECT_FALSE(watched.model.isPending());
}

TEST(SidebarModel, TellsOfTheRowsThatComeAndOfNoOthers) {
    NotesFolder folder({{u"a.md"_s, {}}, {u"b.md"_s, {}}, {u"d.md"_s, {}}, {u"e.md"_s, {}}});
    WatchedModel watched(folder.store());
    folder.write(u"c.md"_s, {});
    folder.store().refreshFromDisk();
    watched.model.update();
    EXPECT_EQ(titles(watched.model), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
    EXPECT_EQ(watched.removed.size() + watched.moved.size() + watched.reset.size(), 0);
    ASSERT_EQ(watched.inserted.size(), 1);
    EXPECT_EQ(watched.inserted.at(0).at(1).toInt(), 2);
    EXPECT_EQ(watched.inserted.at(0).at(2).toInt(), 2);

    watched.inserted.clear();
    watched.model.update();
    EXPECT_EQ(watched.inserted.size() + watched.removed.size(), 0);
}

TEST(SidebarModel, ANoteThatChangesItsPlaceMoves) {
    NotesFolder folder({{u"a.md"_s, {}}, {u"b.md"_s, {}}, {u"c.md"_s, {}}, {u"d.md"_s, {}}});
    WatchedModel watched(folder.store());
    const QPersistentModelIndex index = watched.model.index(watched.model.rowOfNote(folder.note(u"d"_s)->id()));
    folder.store().place({folder.note(u"d"_s)}, std::nullopt, folder.note(u"a"_s));
    watched.model.update();
    EXPECT_EQ(titles(watched.model), QStringList({u"d"_s, u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(watched.moved.size(), 1);
    EXPECT_EQ(watched.inserted.size() + watched.removed.size() + watched.reset.size(), 0);
    EXPECT_EQ(index.row(), 0);
}

TEST(SidebarModel, HeadingsOfOneTextThatAreNoNeighboursAreTwoRows) {
    NotesFolder folder({{u"a.md"_s, {}}, {u"b.md"_s, {}}, {u"c.md"_s, {}}}, NoteSortOrder::modified);
    WatchedModel watched(folder.store());
    // The date changes behind the back of the order.
    folder.store().notes().at(1)->setModified(now() - std::chrono::days(2));
    watched.model.update();
    ASSERT_EQ(watched.model.rowCount(), 6);
    EXPECT_EQ(watched.model.row(0).title(), u"Oggi"_s);
    EXPECT_EQ(watched.model.row(4).title(), u"Oggi"_s);
    EXPECT_NE(watched.model.row(0).key, watched.model.row(4).key);
}

TEST(SidebarModel, ANewSnippetRepaintsItsRowAlone) {
    NotesFolder folder = folderOfThree();
    WatchedModel watched(folder.store());
    folder.note(u"b"_s)->setSnippet(u"un altro inizio"_s);
    ASSERT_EQ(watched.changed.size(), 1);
    EXPECT_EQ(watched.changed.at(0).at(0).toModelIndex().row(), 4);
    EXPECT_EQ(watched.changed.at(0).at(1).toModelIndex().row(), 4);
    EXPECT_EQ(SidebarModel::excerpt(*folder.note(u"b"_s)), u"un altro inizio"_s);
}

TEST(SidebarModel, FindsRowsByNoteAndByKey) {
    NotesFolder folder = folderOfThree();
    SidebarModel model(folder.store());
    const NoteItemPtr note = folder.note(u"c"_s);
    EXPECT_EQ(model.rowOfNote(note->id()), 1);
    EXPECT_EQ(model.rowOf(SidebarRow::Key::note(*note)), 1);
    EXPECT_EQ(model.rowOf(SidebarRow::Key::folder(u"Lavoro"_s)), 0);
    EXPECT_EQ(model.rowOf(SidebarRow::Key::group(u"Note"_s)), 2);
    EXPECT_EQ(model.rowOf(SidebarRow::Key::folder(u"Note"_s)), -1);
    folder.store().toggleCollapsed(u"Lavoro"_s);
    model.update();
    EXPECT_EQ(model.rowOfNote(note->id()), -1);
    EXPECT_EQ(model.rowOf(SidebarRow::Key::group(u"Note"_s)), 1);
}

TEST(SidebarModel, AnEmptyNoteSaysSoOnceItsTextIsKnown) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, {}}});
    const NoteItemPtr empty = folder.note(u"b"_s);
    EXPECT_EQ(SidebarModel::excerpt(*empty), empty->document() ? u"Vuota"_s : QString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return empty->document() != nullptr; }));
    EXPECT_EQ(SidebarModel::excerpt(*empty), u"Vuota"_s);
    EXPECT_EQ(SidebarModel::excerpt(*folder.note(u"a"_s)), u"alfa"_s);
}

TEST(SidebarModel, AnotherSortOrderShowsOtherDates) {
    NotesFolder folder = folderOfThree();
    WatchedModel watched(folder.store());
    const NoteItemPtr note = folder.note(u"a"_s);
    note->setModified(note->created() - std::chrono::days(400));
    const QString modified = watched.model.dateText(*note);
    watched.changed.clear();
    folder.settings().setSortOrder(NoteSortOrder::created);
    EXPECT_NE(watched.model.dateText(*note), modified);
    EXPECT_GE(watched.changed.size(), 1);
}

TEST(SidebarModel, NamesThatAreNoTextOrHaveLineFeedsAreOneReadableLine) {
    NotesFolder folder({{u"uno\ndue.md"_s, {}}});
    const FilePath strange = folder.store().fileStore().directory().appending(u"x\xdce8.md");
    std::FILE* const made = std::fopen(strange.bytes().constData(), "w");
    ASSERT_NE(made, nullptr);
    std::fclose(made);
    folder.store().refreshFromDisk();
    const SidebarModel model(folder.store());
    EXPECT_EQ(titles(model), QStringList({u"uno due"_s, u"x\ufffd"_s}));
    // Qt's own clearing of the folder can't reach such a name.
    std::remove(strange.bytes().constData());
}

TEST(SidebarModel, SaysToAReaderWhatARowIs) {
    NotesFolder folder = folderOfThree();
    const SidebarModel model(folder.store());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !folder.note(u"a"_s)->snippet().isEmpty(); }));
    EXPECT_EQ(model.index(0).data(Qt::AccessibleTextRole).toString(), u"Lavoro, 1 nota"_s);
    EXPECT_EQ(model.index(0).data(Qt::AccessibleDescriptionRole).toString(), u"Cartella"_s);
    EXPECT_EQ(model.index(2).data(Qt::AccessibleTextRole).toString(), u"Note"_s);
    EXPECT_EQ(model.index(3).data(Qt::AccessibleTextRole).toString(), u"a, "_s + model.dateText(*folder.note(u"a"_s)));
    EXPECT_EQ(model.index(3).data(Qt::AccessibleDescriptionRole).toString(), u"Markdown, alfa"_s);
    folder.store().setColor(FolderColor::teal, u"Lavoro"_s);
    EXPECT_EQ(model.index(0).data(Qt::AccessibleDescriptionRole).toString(), u"Cartella, Verde acqua"_s);
}
