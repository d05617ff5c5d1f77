#include "Tests/State/NotesStoreDiskTest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <unistd.h>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// What is watched.

TEST_F(NotesStoreDisk, AFileMadeOutsideIsListedAfterTheQuietTimeAndGetsItsText) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const auto written = std::chrono::steady_clock::now();
    directory.write(u"b.md"_s, "# Da fuori");

    ASSERT_TRUE(isListed(u"b"_s));

    EXPECT_GE(std::chrono::steady_clock::now() - written, 250ms);
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(store->selectedID(), a->id());
    ASSERT_TRUE(waitUntil([this] { return note(u"b"_s)->document() != nullptr; }));
    EXPECT_EQ(note(u"b"_s)->snippet(), u"Da fuori");
}

TEST_F(NotesStoreDisk, ABurstOfChangesLeadsToOneRefreshAfterTheLast) {
    openStore();
    int refreshes = 0;
    auto last = std::chrono::steady_clock::now();
    auto longestPause = std::chrono::steady_clock::duration::zero();
    QObject::connect(store.get(), &NotesStore::notesChanged, store.get(), [&] {
        ++refreshes;
        EXPECT_GE(std::chrono::steady_clock::now() - last, 250ms);
    });
    for (int i = 0; i < 10; ++i) {
        directory.write(u"%1.md"_s.arg(i));
        const auto time = std::chrono::steady_clock::now();
        longestPause = std::max(longestPause, time - last);
        last = time;
        runEventLoop(15ms);
    }

    ASSERT_TRUE(waitUntil([this] { return store->notes().size() == 10; }));

    // Unless the machine was so busy that the burst was none.
    if (longestPause < 200ms) {
        EXPECT_EQ(refreshes, 1);
    }
}

TEST_F(NotesStoreDisk, ARewriteInPlaceIsSeen) {
    directory.write(u"a.md"_s, "prima");
    directory.setModified(u"a.md"_s, moment(1));
    openStore();

    directory.write(u"a.md"_s, "dopo");

    EXPECT_TRUE(waitUntil([this] { return note(u"a"_s)->document()->text() == u"dopo"; }));
}

TEST_F(NotesStoreDisk, OwnSavesLeaveTheNoteAlone) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    store->save(*a);

    runEventLoop(400ms);

    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(a->revision(), 0);
    EXPECT_TRUE(a->document()->undoManager().canUndo());
}

TEST_F(NotesStoreDisk, WhatComesIntoANewFolderBeforeItIsWatchedIsListedToo) {
    openStore();
    QObject::connect(
        store.get(), &NotesStore::foldersChanged, store.get(), [this] { directory.write(u"Nuova/dentro.md"_s); },
        Qt::SingleShotConnection);

    directory.makeFolder(u"Nuova"_s);

    EXPECT_TRUE(waitUntil([this] { return note(u"dentro"_s) != nullptr; }));
}

TEST_F(NotesStoreDisk, WatchingFollowsTheFolders) {
    directory.write(u"a.md"_s);
    openStore();

    directory.makeFolder(u"Casa"_s);
    ASSERT_TRUE(waitUntil([this] { return store->folders().contains(u"Casa"_s); }));
    directory.write(u"Casa/b.md"_s);
    ASSERT_TRUE(isListed(u"b"_s));
    EXPECT_EQ(note(u"b"_s)->folder(), u"Casa"_s);

    // A folder in the place of one of the same name.
    directory.rename(u"Casa"_s, u".via"_s);
    directory.makeFolder(u"Casa"_s);
    ASSERT_TRUE(waitUntil([this] { return note(u"b"_s) == nullptr; }));
    directory.write(u"Casa/c.md"_s);
    EXPECT_TRUE(isListed(u"c"_s));
}

TEST_F(NotesStoreDisk, ADirectoryThatIsLeftIsWatchedNoMore) {
    directory.makeFolder(u"Altre"_s);
    directory.write(u"a.md"_s);
    openStore();
    store->changeDirectory(directory.path(u"Altre"_s));
    const SignalCount changes(store, &NotesStore::notesChanged);

    directory.write(u"b.md"_s);
    runEventLoop(350ms);

    EXPECT_EQ(changes.count(), 0);
    EXPECT_TRUE(store->notes().isEmpty());
}

TEST_F(NotesStoreDisk, ADirectoryThatGoesAwayAndComesBackIsKeptAndWatchedAgain) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const QString path = directory.path().text();
    ASSERT_EQ(rename(qPrintable(path), qPrintable(path + u"-via"_s)), 0);
    runEventLoop(350ms);
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(store->errorMessage(), std::nullopt);

    ASSERT_EQ(rename(qPrintable(path + u"-via"_s), qPrintable(path)), 0);
    directory.write(u"b.md"_s);
    ASSERT_TRUE(isListed(u"b"_s));
    EXPECT_EQ(note(u"a"_s), a);

    directory.write(u"c.md"_s);
    EXPECT_TRUE(isListed(u"c"_s));
}

TEST_F(NotesStoreDisk, ADirectoryThatGoesWithThoseAboveItIsWatchedAgainWhenItComesBack) {
    directory.makeFolder(u"Disco"_s);
    directory.makeFolder(u"Disco/Note"_s);
    directory.write(u"Disco/Note/a.md"_s);
    settings.setNotesDirectory(directory.path(u"Disco/Note"_s));
    openStore();
    directory.remove(u"Disco"_s);
    runEventLoop(350ms);
    ASSERT_NE(note(u"a"_s), nullptr);

    directory.makeFolder(u"Disco"_s);
    runEventLoop(350ms);
    directory.makeFolder(u"Disco/Note"_s);
    directory.write(u"Disco/Note/b.md"_s);

    ASSERT_TRUE(isListed(u"b"_s));
    EXPECT_EQ(note(u"a"_s), nullptr);
}

// What a refresh does to the list.

TEST_F(NotesStoreDisk, AFileThatHasGoneTakesItsNoteWithItDirtyOrNot) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    directory.write(u"c.md"_s);
    openStore();
    edit(note(u"b"_s));
    directory.remove(u"b.md"_s);
    directory.remove(u"c.md"_s);

    store->refreshFromDisk();

    EXPECT_EQ(titles(), QStringList(u"a"_s));
    runEventLoop(600ms);
    EXPECT_FALSE(directory.exists(u"b.md"_s));
}

TEST_F(NotesStoreDisk, ALinkInThePlaceOfAFolderTakesItsNotesOutOfTheList) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    const QTemporaryDir elsewhere;
    const FilePath moved = FilePath::fromText(elsewhere.filePath(u"Casa"_s));
    ASSERT_TRUE(QDir().mkpath(moved.text()));
    ASSERT_TRUE(QFile::copy(directory.path(u"Casa/a.md"_s).text(), moved.appending(u"a.md"_s).text()));
    directory.remove(u"Casa"_s);
    ASSERT_EQ(symlink(moved.bytes().constData(), directory.path(u"Casa"_s).bytes().constData()), 0);

    store->refreshFromDisk();

    EXPECT_EQ(titles(), QStringList(u"b"_s));
    EXPECT_TRUE(store->folders().isEmpty());
}

TEST_F(NotesStoreDisk, WhoTakesTheNameOfANoteWhoseFileWentUnseenTakesItsPlace) {
    struct Case {
        QString gone;
        std::function<void(const NoteItemPtr&)> command;
    };

    const Case cases[] = {
        {u"Casa/x.md"_s, [this](const NoteItemPtr& a) { store->rename(*a, u"x"_s); }},
        {u"Casa/a.txt"_s, [this](const NoteItemPtr& a) { store->changeFormat(*a, NoteFormat::plain); }},
        {u"a.md"_s, [this](const NoteItemPtr& a) { store->move({a}, {}); }},
        {u"a.md"_s, [this](const NoteItemPtr& a) { store->place({a}, {}, {}); }},
        {u"a.md"_s, [this](const NoteItemPtr&) { store->deleteFolder(u"Casa"_s, true); }},
        {u"Via/a.md"_s,
         [this](const NoteItemPtr&) {
             ASSERT_TRUE(QDir().rmdir(directory.path(u"Via"_s).text()));
             store->renameFolder(u"Casa"_s, u"Via"_s);
         }},
    };
    constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    for (const NoteSortOrder order : {NoteSortOrder::created, NoteSortOrder::manual}) {
        for (const bool isSelected : {true, false}) {
            for (const auto& [gone, command] : cases) {
                directory.makeFolder(u"Casa"_s);
                directory.makeFolder(u"Via"_s);
                directory.write(u"Casa/a.md"_s, "resta");
                directory.setModified(u"Casa/a.md"_s, moment(1));
                directory.write(gone, "via");
                directory.setModified(gone, moment(2));
                openStore(order);
                ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
                const QList<NoteItemPtr> both = store->notes();
                const bool isFirst = both.first()->url() == directory.path(u"Casa/a.md"_s);
                const NoteItemPtr& a = both.at(isFirst ? 0 : 1);
                const NoteItemPtr& stale = both.at(isFirst ? 1 : 0);
                store->setSelectedID((isSelected ? stale : a)->id());
                directory.remove(gone);

                command(a);

                EXPECT_EQ(store->notes(), QList{a}) << gone.toStdString();
                EXPECT_EQ(store->selectedItem(), a);
                store->refreshFromDisk();
                EXPECT_EQ(store->notes(), QList{a}) << gone.toStdString();
                EXPECT_EQ(a->document()->text(), u"resta");
                ASSERT_EQ(store->errorMessage(), std::nullopt);
                store.reset();
                for (const QString& name : QDir(directory.path().text()).entryList(everything)) {
                    directory.remove(name);
                }
            }
        }
    }
}

TEST_F(NotesStoreDisk, ANewNoteTakesThePlaceOfOneOfItsNameThatWentUnseen) {
    directory.write(u"a.md"_s);
    openStore();
    directory.remove(u"a.md"_s);

    const NoteItemPtr a = store->makeNote(u"a"_s, u"nuova"_s, NoteFormat::markdown);

    EXPECT_EQ(store->notes(), QList{a});
    EXPECT_EQ(store->selectedItem(), a);
    EXPECT_EQ(directory.contents(u"a.md"_s), "nuova");
}

TEST_F(NotesStoreDisk, AFileThatComesBackIsANewNote) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    const NoteID old = note(u"b"_s)->id();
    directory.rename(u"b.md"_s, u".b.md"_s);
    store->refreshFromDisk();
    directory.rename(u".b.md"_s, u"b.md"_s);

    store->refreshFromDisk();

    EXPECT_NE(note(u"b"_s)->id(), old);
}

TEST_F(NotesStoreDisk, ARenamingOutsideIsOneNoteLessAndOneNoteMore) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    const NoteItemPtr old = note(u"b"_s);
    store->ensureLoaded(*old);
    directory.rename(u"b.md"_s, u"c.md"_s);

    store->refreshFromDisk();

    EXPECT_EQ(titles(), QStringList({u"a"_s, u"c"_s}));
    EXPECT_NE(note(u"c"_s), old);
    EXPECT_EQ(note(u"c"_s)->document(), nullptr);
}

TEST_F(NotesStoreDisk, TheSelectionFallsBackToTheFirstVisibleNoteOrToNone) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    select(u"b"_s);

    directory.remove(u"b.md"_s);
    store->refreshFromDisk();
    ASSERT_NE(store->selectedItem(), nullptr);
    EXPECT_EQ(store->selectedItem()->title(), u"a");

    directory.remove(u"a.md"_s);
    store->refreshFromDisk();
    EXPECT_EQ(store->selectedID(), std::nullopt);

    directory.write(u"c.md"_s);
    store->refreshFromDisk();
    EXPECT_EQ(store->selectedItem()->title(), u"c");
}

TEST_F(NotesStoreDisk, TheSelectionAndItsTextOutliveARefreshThatMovesTheNote) {
    directory.write(u"b.md"_s);
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    edit(b);
    directory.write(u"a.md"_s);

    store->refreshFromDisk();

    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(store->selectedItem(), b);
    EXPECT_TRUE(b->document()->undoManager().canUndo());
}

TEST_F(NotesStoreDisk, ADirectoryThatCanNotBeListedChangesNothing) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    directory.remove(u""_s);

    store->refreshFromDisk();

    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(store->folders(), QStringList(u"Casa"_s));
    EXPECT_EQ(store->selectedID(), a->id());
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreDisk, AChangedDateMovesANoteInTheOrderOfModification) {
    directory.write(u"a.md"_s);
    directory.setModified(u"a.md"_s, moment(1));
    directory.write(u"b.md"_s);
    directory.setModified(u"b.md"_s, moment(2));
    openStore(NoteSortOrder::modified);
    ASSERT_EQ(titles(), QStringList({u"b"_s, u"a"_s}));
    directory.setModified(u"a.md"_s, moment(3));

    store->refreshFromDisk();

    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
}

// Folders.

TEST_F(NotesStoreDisk, NewFoldersComeAfterTheKnownOnesByName) {
    directory.makeFolder(u"Zeta"_s);
    openStore();
    directory.makeFolder(u"Cartella 10"_s);
    directory.makeFolder(u"Cartella 2"_s);
    store->refreshFromDisk();
    EXPECT_EQ(store->folders(), QStringList({u"Zeta"_s, u"Cartella 2"_s, u"Cartella 10"_s}));

    directory.makeFolder(u"Alfa"_s);
    store->refreshFromDisk();
    EXPECT_EQ(store->folders(), QStringList({u"Zeta"_s, u"Cartella 2"_s, u"Cartella 10"_s, u"Alfa"_s}));
    EXPECT_FALSE(directory.exists(u".quillary.json"_s));
}

TEST_F(NotesStoreDisk, AFolderThatIsRenamedOutsideIsANewOneWithNewNotes) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"z.md"_s);
    directory.write(u".quillary.json"_s, R"({"folderColors": {"Casa": "red"}, "noteOrder": {"Casa": ["a.md"]}})");
    openStore();
    store->toggleCollapsed(u"Casa"_s);
    const NoteItemPtr a = note(u"a"_s);
    store->setSelectedID(a->id());

    directory.rename(u"Casa"_s, u"Dimora"_s);
    store->refreshFromDisk();

    EXPECT_EQ(store->folders(), QStringList(u"Dimora"_s));
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_NE(note(u"a"_s)->id(), a->id());
    EXPECT_NE(store->selectedID(), a->id());
    // What the layout holds of it stays until the next save.
    EXPECT_EQ(store->folderColors().value(u"Casa"_s), FolderColor::red);
    EXPECT_EQ(store->currentLayout().noteOrder.value(u"Casa"_s), QStringList(u"a.md"_s));
    EXPECT_TRUE(store->currentLayout().folderColors.isEmpty());
    EXPECT_EQ(store->fileStore().loadLayout().folderOrder, QStringList(u"Casa"_s));
}

} // namespace quillary::test
