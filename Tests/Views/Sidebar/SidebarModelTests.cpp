#include "Quillary/Sidebar/SidebarModel.h"

#include "../NotesFolder.h"

#include <QSignalSpy>
#include <QTest>

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

NotesFolder folderOfFour(NoteSortOrder order = NoteSortOrder::title) {
    return NotesFolder({{u"a.md"_s, u"alfa"_s}, {u"b.txt"_s, u"beta"_s}, {u"Lavoro/c.md"_s, u"gamma"_s}}, order);
}

} // namespace

TEST(SidebarModel, ShowsFoldersAboveTheHeadingOfTheOtherNotes) {
    NotesFolder folder = folderOfFour();
    const SidebarModel model(folder.store());
    EXPECT_EQ(titles(model), QStringList({u"Lavoro"_s, u"c"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(model.index(0).data(SidebarModel::countRole).toInt(), 1);
    EXPECT_TRUE(model.index(1).data(SidebarModel::indentedRole).toBool());
    EXPECT_FALSE(model.index(3).data(SidebarModel::indentedRole).toBool());
    EXPECT_EQ(model.index(4).data(SidebarModel::badgeRole).toString(), u"TXT"_s);
}

TEST(SidebarModel, HeadingsCanNotBeSelectedAndFoldersCan) {
    NotesFolder folder = folderOfFour();
    const SidebarModel model(folder.store());
    EXPECT_TRUE(model.index(0).flags().testFlag(Qt::ItemIsSelectable));
    EXPECT_TRUE(model.index(1).flags().testFlag(Qt::ItemIsSelectable));
    EXPECT_EQ(model.index(2).flags(), Qt::NoItemFlags);
}

TEST(SidebarModel, AClosedFolderHidesItsNotesAndKeepsItsCount) {
    NotesFolder folder = folderOfFour();
    SidebarModel model(folder.store());
    folder.store().toggleCollapsed(u"Lavoro"_s);
    model.rebuild();
    EXPECT_EQ(titles(model), QStringList({u"Lavoro"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(model.index(0).data(SidebarModel::countRole).toInt(), 1);
    EXPECT_TRUE(model.index(0).data(SidebarModel::collapsedRole).toBool());
}

TEST(SidebarModel, ASearchIsOneListWithoutHeadings) {
    NotesFolder folder = folderOfFour();
    SidebarModel model(folder.store());
    ASSERT_TRUE(QTest::qWaitFor([&] { return folder.note(u"c"_s)->document() != nullptr; }));
    folder.store().setSearchQuery(u"GAM"_s);
    model.rebuild();
    EXPECT_EQ(titles(model), QStringList({u"c"_s}));
    EXPECT_FALSE(model.index(0).data(SidebarModel::indentedRole).toBool());
}

TEST(SidebarModel, TakesABurstOfChangesInTogether) {
    NotesFolder folder({{u"alfa.md"_s, {}}, {u"beta.md"_s, {}}});
    SidebarModel model(folder.store());
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    for (const QString& query : {u"a"_s, u"al"_s, u"alf"_s}) {
        folder.store().setSearchQuery(query);
    }
    ASSERT_TRUE(removed.wait());
    EXPECT_EQ(removed.size(), 1);
    EXPECT_LE(inserted.size(), 1);
    EXPECT_EQ(titles(model), QStringList({u"alfa"_s}));
}

TEST(SidebarModel, ReplacesOnlyTheStretchThatDiffers) {
    NotesFolder folder({{u"a.md"_s, {}}, {u"b.md"_s, {}}, {u"d.md"_s, {}}, {u"e.md"_s, {}}});
    SidebarModel model(folder.store());
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    folder.write(u"c.md"_s, {});
    folder.store().refreshFromDisk();
    model.rebuild();
    EXPECT_EQ(titles(model), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
    EXPECT_EQ(removed.size(), 0);
    ASSERT_EQ(inserted.size(), 1);
    EXPECT_EQ(inserted.constFirst().at(1).toInt(), 2);
    EXPECT_EQ(inserted.constFirst().at(2).toInt(), 2);

    inserted.clear();
    model.rebuild();
    EXPECT_EQ(inserted.size() + removed.size(), 0);
}

TEST(SidebarModel, ANewSnippetRepaintsItsRowAlone) {
    NotesFolder folder = folderOfFour();
    SidebarModel model(folder.store());
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    folder.note(u"b"_s)->setSnippet(u"un altro inizio"_s);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed.constFirst().constFirst().toModelIndex().row(), 4);
    EXPECT_EQ(model.index(4).data(SidebarModel::snippetRole).toString(), u"un altro inizio"_s);
}

TEST(SidebarModel, NamesThatAreNoTextOrHaveLineFeedsAreOneReadableLine) {
    NotesFolder folder({{u"uno\ndue.md"_s, {}}});
    const FilePath strange = folder.store().fileStore().directory().appending(u"x\xdce8.md");
    FILE* const made = std::fopen(strange.bytes().constData(), "w");
    ASSERT_NE(made, nullptr);
    std::fclose(made);
    folder.store().refreshFromDisk();
    const SidebarModel model(folder.store());
    EXPECT_EQ(titles(model), QStringList({u"uno due"_s, u"x\ufffd"_s}));
    // Qt's own clearing of the folder can't reach such a name.
    std::remove(strange.bytes().constData());
}

TEST(SidebarModel, SaysToAReaderWhatARowIs) {
    NotesFolder folder = folderOfFour();
    const SidebarModel model(folder.store());
    EXPECT_EQ(model.index(0).data(Qt::AccessibleTextRole).toString(), u"Lavoro, 1 nota"_s);
    const QString note = model.index(3).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(note.startsWith(u"a, "_s)) << note.toStdString();
    EXPECT_EQ(note.mid(3), model.index(3).data(SidebarModel::dateRole).toString());
}
