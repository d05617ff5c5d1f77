#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/TrashCan.h"
#include "Tests/State/Waiting.h"
#include "Tests/Support/SystemConditions.h"

#include <QDir>

namespace quillary::test {

using namespace Qt::StringLiterals;

class NotesStoreFolders : public NotesStoreTest {
protected:
    /// Folders A, B and C in this order, of which B has all that a folder can have: a colour, an order of its notes,
    /// and it is closed.
    void openThreeFolders() {
        for (const QString& folder : {u"A"_s, u"B"_s, u"C"_s}) {
            directory.makeFolder(folder);
        }
        directory.write(u"B/uno.md"_s, "1");
        directory.write(u"B/due.md"_s, "2");
        directory.write(u"libera.md"_s, "3");
        directory.write(u".quillary.json"_s, R"({"folderOrder": ["A", "B", "C"], "collapsedFolders": ["B"],)"
                                             R"("folderColors": {"B": "teal"}, "noteOrder": {"B": ["uno.md"]}})");
        openStore();
    }

    SidebarLayout storedLayout() const { return store->fileStore().loadLayout(); }
};

// Making.

TEST_F(NotesStoreFolders, ANewFolderStandsOnTopAndIsNamedInItsPlace) {
    openThreeFolders();

    EXPECT_EQ(store->createFolder(), u"Nuova cartella"_s);
    EXPECT_EQ(store->folders(), QStringList({u"Nuova cartella"_s, u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(store->renamingFolder(), u"Nuova cartella"_s);
    EXPECT_TRUE(QDir(directory.path(u"Nuova cartella"_s).text()).exists());

    EXPECT_EQ(store->createFolder(), u"Nuova cartella 2"_s);
    EXPECT_EQ(store->renamingFolder(), u"Nuova cartella 2"_s);
    EXPECT_EQ(layout(), R"({
  "collapsedFolders": [
    "B"
  ],
  "folderColors": {
    "B": "teal"
  },
  "folderOrder": [
    "Nuova cartella 2",
    "Nuova cartella",
    "A",
    "B",
    "C"
  ],
  "noteOrder": {
    "B": [
      "uno.md"
    ]
  }
}
)");
}

TEST_F(NotesStoreFolders, ANewFolderTakesTheNotesAlong) {
    directory.write(u"a.md"_s, "a");
    directory.write(u"b.md"_s, "b");
    directory.write(u"c.md"_s, "c");
    openStore();
    store->setMultiSelection({note(u"b"_s)->id(), note(u"c"_s)->id()});
    const NoteItemPtr b = note(u"b"_s);

    EXPECT_EQ(store->createFolder({b, note(u"c"_s)}), u"Nuova cartella"_s);

    EXPECT_EQ(b->folder(), u"Nuova cartella"_s);
    EXPECT_EQ(directory.contents(u"Nuova cartella/b.md"_s), "b");
    EXPECT_EQ(directory.contents(u"Nuova cartella/c.md"_s), "c");
    EXPECT_FALSE(directory.exists(u"b.md"_s));
    EXPECT_EQ(store->selectedID(), b->id());
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->renamingFolder(), u"Nuova cartella"_s);
}

TEST_F(NotesStoreFolders, AFolderThatCanNotBeMadeChangesNothing) {
    openThreeFolders();
    const FileStatus before = layoutFile();
    QFile::setPermissions(directory.path().text(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther);
    {
        const WithoutPrivileges user;
        EXPECT_EQ(store->createFolder({note(u"libera"_s)}), std::nullopt);
    }
    QFile::setPermissions(directory.path().text(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    EXPECT_EQ(failure(), u"Impossibile creare la cartella.");
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(store->renamingFolder(), std::nullopt);
    EXPECT_EQ(note(u"libera"_s)->folder(), std::nullopt);
    EXPECT_EQ(layoutFile(), before);
}

TEST_F(NotesStoreFolders, ANewFolderIsWatched) {
    openStore();
    store->createFolder();

    directory.write(u"Nuova cartella/da fuori.md"_s);

    EXPECT_TRUE(waitUntil([this] { return note(u"da fuori"_s) != nullptr; }));
}

// Renaming.

TEST_F(NotesStoreFolders, ARenamedFolderKeepsAllThatItHas) {
    openThreeFolders();
    const NoteItemPtr one = note(u"uno"_s);
    store->setSelectedID(one->id());
    store->setSelectedFolder(u"B"_s);
    store->setRenamingFolder(u"B"_s);

    store->renameFolder(u"B"_s, u" Lavoro\n"_s);

    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"Lavoro"_s, u"C"_s}));
    EXPECT_EQ(store->collapsedFolders(), QSet{u"Lavoro"_s});
    EXPECT_EQ(store->folderColors(), (QMap<QString, FolderColor>{{u"Lavoro"_s, FolderColor::teal}}));
    EXPECT_EQ(store->selectedFolder(), u"Lavoro"_s);
    EXPECT_EQ(store->renamingFolder(), std::nullopt);
    EXPECT_EQ(one->url(), directory.path(u"Lavoro/uno.md"_s));
    EXPECT_EQ(one->folder(), u"Lavoro"_s);
    EXPECT_EQ(store->selectedID(), one->id());
    EXPECT_EQ(directory.contents(u"Lavoro/uno.md"_s), "1");
    EXPECT_FALSE(directory.exists(u"B"_s));
    EXPECT_EQ(layout(), R"({
  "collapsedFolders": [
    "Lavoro"
  ],
  "folderColors": {
    "Lavoro": "teal"
  },
  "folderOrder": [
    "A",
    "Lavoro",
    "C"
  ],
  "noteOrder": {
    "Lavoro": [
      "uno.md"
    ]
  }
}
)");
}

TEST_F(NotesStoreFolders, AFolderWithATakenNameGetsAnotherOneEverywhere) {
    openThreeFolders();
    store->setSelectedFolder(u"B"_s);

    store->renameFolder(u"B"_s, u"A"_s);

    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"A 2"_s, u"C"_s}));
    EXPECT_EQ(store->collapsedFolders(), QSet{u"A 2"_s});
    EXPECT_EQ(store->selectedFolder(), u"A 2"_s);
    EXPECT_EQ(note(u"uno"_s)->folder(), u"A 2"_s);
    EXPECT_EQ(storedLayout().folderOrder, QStringList({u"A"_s, u"A 2"_s, u"C"_s}));
}

TEST_F(NotesStoreFolders, TheNameOfAFolderThatWentUnseenIsThereOnce) {
    openThreeFolders();
    const auto made = store->createFolder({});
    ASSERT_TRUE(made);
    directory.rename(*made, u"Altrove"_s);
    ASSERT_EQ(store->createFolder({}), made);
    EXPECT_EQ(store->folders(), QStringList({*made, u"A"_s, u"B"_s, u"C"_s}));

    directory.rename(u"C"_s, u"Lontano"_s);
    store->renameFolder(u"A"_s, u"C"_s);
    EXPECT_EQ(store->folders(), QStringList({*made, u"C"_s, u"B"_s}));
    EXPECT_EQ(storedLayout().folderOrder, store->folders());

    store->refreshFromDisk();
    EXPECT_EQ(store->folders(), QStringList({*made, u"C"_s, u"B"_s, u"Altrove"_s, u"Lontano"_s}));
}

TEST_F(NotesStoreFolders, AFolderThatIsStoredTwiceIsShownOnce) {
    directory.write(u".quillary.json"_s, R"({"folderOrder": ["B", "A", "B"]})");
    directory.makeFolder(u"A"_s);
    directory.makeFolder(u"B"_s);
    openStore();
    EXPECT_EQ(store->folders(), QStringList({u"B"_s, u"A"_s}));
}

TEST_F(NotesStoreFolders, TheNameThatAFolderHasOnlyEndsTheEditing) {
    openThreeFolders();
    directory.makeFolder(u"perche\u0301"_s);
    store->refreshFromDisk();
    const FileStatus before = layoutFile();
    const std::pair<QString, QString> names[] = {
        {u"B"_s, u"B"_s},
        {u"B"_s, u" B\n"_s},
        {u"B"_s, u"  "_s},
        {u"B"_s, u""_s},
        {u"perche\u0301"_s, u"perch\u00E9"_s},
    };
    for (const auto& [name, typed] : names) {
        store->setRenamingFolder(name);
        store->renameFolder(name, typed);

        EXPECT_EQ(store->renamingFolder(), std::nullopt);
        EXPECT_TRUE(directory.exists(name));
    }
    EXPECT_EQ(layoutFile(), before);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreFolders, UnsavedTextsAreWrittenBeforeTheirFolderIsRenamed) {
    openThreeFolders();
    const NoteItemPtr one = note(u"uno"_s);
    type(one, u"nuovo"_s);

    store->renameFolder(u"B"_s, u"Lavoro"_s);

    EXPECT_FALSE(one->isDirty());
    EXPECT_EQ(directory.contents(u"Lavoro/uno.md"_s), "nuovo");
    letTheWatcherCatchUp();
    EXPECT_FALSE(directory.exists(u"B"_s));
}

TEST_F(NotesStoreFolders, AFolderThatCanNotBeRenamedStaysAsItIs) {
    openThreeFolders();
    const FileStatus before = layoutFile();
    const auto expectUnchanged = [&] {
        EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
        EXPECT_EQ(note(u"uno"_s)->url(), directory.path(u"B/uno.md"_s));
        EXPECT_EQ(store->renamingFolder(), std::nullopt);
        EXPECT_EQ(layoutFile(), before);
    };
    store->setRenamingFolder(u"B"_s);

    store->renameFolder(u"B"_s, u"."_s);
    EXPECT_EQ(failure(), u"Impossibile rinominare la cartella «B».");
    expectUnchanged();

    store->setErrorMessage({});
    directory.rename(u"B"_s, u".via"_s);
    store->renameFolder(u"B"_s, u"Lavoro"_s);
    EXPECT_EQ(failure(), u"Impossibile rinominare la cartella «B».");
    expectUnchanged();
}

TEST_F(NotesStoreFolders, NotesOfARenamedFolderStayTheSameUnderAWatcher) {
    openThreeFolders();
    const NoteItemPtr one = note(u"uno"_s);
    store->setSelectedID(one->id());
    const std::shared_ptr<NoteDocument> document = one->document();
    document->undoManager().replace({0, 1}, u"due"_s, EditKind::other, {});
    store->textDidChange(*one, *document, false);
    const SignalCount selections(store, &NotesStore::selectedIDChanged);

    store->renameFolder(u"B"_s, u"Lavoro"_s);
    letTheWatcherCatchUp();

    EXPECT_EQ(note(u"uno"_s), one);
    EXPECT_EQ(one->document(), document);
    EXPECT_EQ(one->revision(), 0);
    EXPECT_EQ(selections.count(), 0);
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"Lavoro"_s, u"C"_s}));
    ASSERT_TRUE(document->undoManager().canUndo());
    document->undoManager().undo();
    EXPECT_EQ(document->text(), u"1");
}

TEST_F(NotesStoreFolders, ARenamedFolderIsWatchedUnderItsNewName) {
    openThreeFolders();
    store->renameFolder(u"B"_s, u"Lavoro"_s);

    directory.write(u"Lavoro/da fuori.md"_s);

    EXPECT_TRUE(waitUntil([this] { return note(u"da fuori"_s) != nullptr; }));
}

// Deleting.

TEST_F(NotesStoreFolders, ADeletedFolderGoesToTheTrashWithItsNotes) {
    openThreeFolders();
    directory.write(u"B/altro.bin"_s, "x");
    const NoteItemPtr one = note(u"uno"_s);
    store->setSelectedID(one->id());
    type(one, u"ultimo testo"_s);
    store->setSelectedFolder(u"B"_s);
    store->setPendingFolderDeletion(u"B"_s);

    store->deleteFolder(u"B"_s, false);

    EXPECT_EQ(store->pendingFolderDeletion(), std::nullopt);
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"C"_s}));
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_TRUE(store->folderColors().isEmpty());
    EXPECT_EQ(store->selectedFolder(), std::nullopt);
    EXPECT_EQ(titles(), QStringList(u"libera"_s));
    EXPECT_EQ(store->selectedItem()->title(), u"libera");
    EXPECT_EQ(one->saveTask, nullptr);
    EXPECT_EQ(layout(), R"({
  "collapsedFolders": [],
  "folderColors": {},
  "folderOrder": [
    "A",
    "C"
  ],
  "noteOrder": {}
}
)");

    const auto trashed = trashedFrom(directory.path(u"B"_s));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->contents(u"uno.md"_s), "ultimo testo");
    EXPECT_EQ(QDir(trashed->path.text()).entryList(QDir::Files, QDir::Name),
              QStringList({u"altro.bin"_s, u"due.md"_s, u"uno.md"_s}));
    EXPECT_FALSE(directory.exists(u"B"_s));
}

TEST_F(NotesStoreFolders, ADeletedFolderCanLeaveItsNotesAtTheTopLevel) {
    openThreeFolders();
    directory.write(u"uno.txt"_s, "già qui");
    directory.rename(u"B/uno.md"_s, u"B/uno.txt"_s);
    store->refreshFromDisk();
    const NoteItemPtr two = note(u"due"_s);
    const NoteItemPtr one = store->notes(u"B"_s).last();
    ASSERT_EQ(one->title(), u"uno");
    store->setSelectedID(one->id());

    store->deleteFolder(u"B"_s, true);

    EXPECT_EQ(one->url(), directory.path(u"uno 2.txt"_s));
    EXPECT_EQ(one->folder(), std::nullopt);
    EXPECT_EQ(two->url(), directory.path(u"due.md"_s));
    EXPECT_EQ(directory.contents(u"uno 2.txt"_s), "1");
    EXPECT_EQ(directory.contents(u"uno.txt"_s), "già qui");
    EXPECT_EQ(store->selectedID(), one->id());
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"C"_s}));
    EXPECT_TRUE(trashedFrom(directory.path(u"B"_s)));
    letTheWatcherCatchUp();
    EXPECT_EQ(store->selectedID(), one->id());
    EXPECT_EQ(titles(), QStringList({u"due"_s, u"libera"_s, u"uno"_s, u"uno 2"_s}));
}

TEST_F(NotesStoreFolders, KeptNotesOfAFolderWithoutTheSelectedOneAreSelectedAsMovedOnesAre) {
    openThreeFolders();
    select(u"libera"_s);

    store->deleteFolder(u"B"_s, true);

    EXPECT_EQ(store->selectedItem()->title(), u"due");
}

TEST_F(NotesStoreFolders, ANoteThatCouldNotBeKeptGoesWithItsFolder) {
    openThreeFolders();
    const NoteItemPtr one = note(u"uno"_s);
    store->setSelectedID(one->id());
    directory.rename(u"B/uno.md"_s, u"B/.uno.md"_s);

    store->deleteFolder(u"B"_s, true);

    EXPECT_EQ(failure(), u"Impossibile spostare «uno».");
    EXPECT_EQ(titles(), QStringList({u"due"_s, u"libera"_s}));
    EXPECT_EQ(store->selectedItem()->title(), u"due");
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"C"_s}));
}

TEST_F(NotesStoreFolders, AFolderThatCanNotBeDeletedBringsMemoryInLineWithTheDisk) {
    openThreeFolders();
    directory.rename(u"B"_s, u".via"_s);
    directory.write(u"nuova.md"_s);
    const FileStatus before = layoutFile();

    store->deleteFolder(u"B"_s, false);

    EXPECT_EQ(failure(), u"Impossibile eliminare la cartella «B».");
    EXPECT_EQ(store->folders(), QStringList({u"A"_s, u"C"_s}));
    EXPECT_EQ(titles(), QStringList({u"libera"_s, u"nuova"_s}));
    EXPECT_EQ(layoutFile(), before);
}

// Order, colour, layout.

TEST_F(NotesStoreFolders, MovesBeforeAnotherFolderOrToTheEnd) {
    struct Case {
        QString folder;
        std::optional<QString> before;
        QString order;
    };

    openThreeFolders();
    for (const Case& each : {
             Case{u"C"_s, u"A"_s, u"C A B"_s},
             Case{u"C"_s, u"B"_s, u"A C B"_s},
             Case{u"A"_s, std::nullopt, u"C B A"_s},
             Case{u"C"_s, u"manca"_s, u"B A C"_s},
             Case{u"B"_s, u"C"_s, u"A B C"_s},
         }) {
        store->moveFolder(each.folder, each.before);

        EXPECT_EQ(store->folders().join(u' '), each.order);
        EXPECT_EQ(storedLayout().folderOrder, store->folders());
    }
}

TEST_F(NotesStoreFolders, MovesByPlaces) {
    openThreeFolders();

    store->moveFolder(u"A"_s, 1);
    EXPECT_EQ(store->folders().join(u' '), u"B A C");
    store->moveFolder(u"C"_s, -1);
    EXPECT_EQ(store->folders().join(u' '), u"B C A");
    store->moveFolder(u"B"_s, 2);
    EXPECT_EQ(store->folders().join(u' '), u"A C B");
    EXPECT_EQ(storedLayout().folderOrder, store->folders());
}

TEST_F(NotesStoreFolders, AMoveThatLeadsNowhereWritesNothing) {
    openThreeFolders();
    const FileStatus before = layoutFile();
    const SignalCount changes(store, &NotesStore::foldersChanged);

    store->moveFolder(u"A"_s, -1);
    store->moveFolder(u"C"_s, 1);
    store->moveFolder(u"manca"_s, 1);
    store->moveFolder(u"A"_s, u"A"_s);
    store->moveFolder(u"manca"_s, u"A"_s);

    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(layoutFile(), before);
}

TEST_F(NotesStoreFolders, AColourIsGivenAndTaken) {
    openThreeFolders();
    const SignalCount changes(store, &NotesStore::folderColorsChanged);

    store->setColor(FolderColor::red, u"A"_s);
    EXPECT_EQ(storedLayout().folderColors.value(u"A"_s), FolderColor::red);
    EXPECT_EQ(store->folderColors().value(u"A"_s), FolderColor::red);

    store->setColor(std::nullopt, u"A"_s);
    EXPECT_FALSE(storedLayout().folderColors.contains(u"A"_s));
    EXPECT_FALSE(store->folderColors().contains(u"A"_s));
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(NotesStoreFolders, ALayoutThatCanNotBeStoredIsReportedByEveryCommandAndNeverTakenBack) {
    openThreeFolders();
    directory.remove(u".quillary.json"_s);
    directory.makeFolder(u".quillary.json"_s);
    const std::function<void()> commands[] = {
        [this] { store->createFolder(); },
        [this] { store->renameFolder(u"A"_s, u"D"_s); },
        [this] { store->deleteFolder(u"C"_s, false); },
        [this] { store->moveFolder(u"D"_s, std::nullopt); },
        [this] { store->moveFolder(u"D"_s, -1); },
        [this] { store->setColor(FolderColor::blue, u"D"_s); },
        [this] { store->toggleCollapsed(u"B"_s); },
        [this] { store->move({note(u"libera"_s)}, u"D"_s); },
        [this] { store->place({note(u"due"_s)}, u"B"_s, note(u"uno"_s)); },
    };
    for (const auto& command : commands) {
        store->setErrorMessage({});

        command();

        EXPECT_EQ(failure(), u"Impossibile salvare l'ordine delle cartelle.");
    }
    EXPECT_EQ(store->folders().join(u'|'), u"Nuova cartella|D|B");
    EXPECT_EQ(store->folderColors().value(u"D"_s), FolderColor::blue);

    directory.remove(u".quillary.json"_s);
    store->setErrorMessage({});
    store->setColor(std::nullopt, u"B"_s);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_EQ(storedLayout().folderOrder.join(u'|'), u"Nuova cartella|D|B");
    EXPECT_EQ(storedLayout().folderColors, (QMap<QString, FolderColor>{{u"D"_s, FolderColor::blue}}));
}

} // namespace quillary::test
