#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class NotesStoreDisk : public NotesStoreTest {
protected:
    /// A moment some seconds after the file's date as the store knows it.
    static Moment after(const NoteItemPtr& item, double seconds) {
        return item->knownModificationDate + std::chrono::nanoseconds(qRound64(seconds * 1e9));
    }

    /// The date of a file that somebody may still be writing, however slow this machine is.
    static Moment justNow() { return std::chrono::floor<std::chrono::seconds>(now()) + 60s + 500ms; }

    /// An edit as the editor makes it, with an undo step.
    void edit(const NoteItemPtr& item) const {
        store->ensureLoaded(*item);
        item->document()->undoManager().replace({0, 0}, u"x", EditKind::typing, {});
        store->textDidChange(*item, *item->document(), false);
    }

    /// Waits for what the watcher brings about.
    bool isListed(const QString& title) {
        return waitUntil([this, title] { return note(title) != nullptr; });
    }
};

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

// What a refresh does to one note.

TEST_F(NotesStoreDisk, ACleanOpenNoteTakesTheNewTextAndItsUndoIsEmpty) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    store->save(*a);
    const auto document = a->document();
    const Moment date = after(a, 1);
    directory.replace(u"a.md"_s, "# Da fuori");
    directory.setModified(u"a.md"_s, date);

    store->refreshFromDisk();

    EXPECT_EQ(a->document(), document);
    EXPECT_EQ(document->text(), u"# Da fuori");
    EXPECT_FALSE(document->undoManager().canUndo());
    EXPECT_EQ(a->revision(), 1);
    EXPECT_EQ(a->snippet(), u"Da fuori");
    EXPECT_EQ(a->characterCount(), 10);
    EXPECT_EQ(a->modified(), date);
    EXPECT_EQ(a->knownModificationDate, date);
    EXPECT_FALSE(a->isDirty());
}

TEST_F(NotesStoreDisk, ADirtyNoteKeepsItsTextAndTheNextSaveOverwritesTheDisk) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    const Moment known = a->knownModificationDate;
    directory.write(u"a.md"_s, "da fuori");
    directory.setModified(u"a.md"_s, after(a, 1));

    store->refreshFromDisk();
    EXPECT_EQ(a->document()->text(), u"xprima");
    EXPECT_EQ(a->knownModificationDate, known);
    EXPECT_EQ(a->modified(), known);
    EXPECT_EQ(a->revision(), 0);

    store->refreshFromDisk();
    EXPECT_EQ(a->document()->text(), u"xprima");
    EXPECT_TRUE(store->save(*a));
    EXPECT_EQ(directory.contents(u"a.md"_s), "xprima");
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreDisk, AFileThatWasOnlyTouchedTakesItsDateAndNothingElse) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    store->save(*a);
    const Moment date = after(a, 5);
    directory.setModified(u"a.md"_s, date);

    store->refreshFromDisk();

    EXPECT_EQ(a->modified(), date);
    EXPECT_EQ(a->revision(), 0);
    EXPECT_TRUE(a->document()->undoManager().canUndo());
}

TEST_F(NotesStoreDisk, ADateWithinAMillisecondOfTheKnownOneIsNoChange) {
    directory.write(u"a.md"_s, "prima");
    directory.setModified(u"a.md"_s, moment(1));
    openStore();
    const NoteItemPtr a = note(u"a"_s);

    for (const double difference : {0.0005, 0.001}) {
        directory.write(u"a.md"_s, "dopo");
        directory.setModified(u"a.md"_s, moment(1 + difference));
        store->refreshFromDisk();
        EXPECT_EQ(a->document()->text(), u"prima");
        EXPECT_EQ(a->modified(), moment(1));
    }

    directory.setModified(u"a.md"_s, moment(1.002));
    store->refreshFromDisk();
    EXPECT_EQ(a->document()->text(), u"dopo");
}

TEST_F(NotesStoreDisk, AnOlderFileIsNoChangeButItsNewCreationDateIsTaken) {
    directory.write(u"a.md"_s, "prima");
    directory.setCreated(u"a.md"_s, moment(50));
    directory.setModified(u"a.md"_s, moment(100));
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const Moment known = a->knownModificationDate;
    directory.write(u"a.md"_s, "dalla copia di riserva");
    directory.setCreated(u"a.md"_s, moment(7));
    directory.setModified(u"a.md"_s, moment(1));

    store->refreshFromDisk();

    EXPECT_EQ(a->created(), moment(7));
    EXPECT_EQ(a->document()->text(), u"prima");
    EXPECT_EQ(a->modified(), known);
    EXPECT_EQ(a->knownModificationDate, known);
}

TEST_F(NotesStoreDisk, AFileThatIsCopiedInWithItsDateIsReadAgainWhenItIsComplete) {
    openStore();
    directory.write(u"a.md"_s, "la prima met");
    directory.setModified(u"a.md"_s, justNow());
    ASSERT_TRUE(isListed(u"a"_s));
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    const NoteItemPtr a = note(u"a"_s);
    ASSERT_EQ(a->document()->text(), u"la prima met");

    directory.write(u"a.md"_s, "la prima metà e il resto");
    directory.setModified(u"a.md"_s, moment(1));
    ASSERT_TRUE(waitUntil([&a] { return a->modified() == moment(1); }));

    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(a->document()->text(), u"la prima metà e il resto");
    EXPECT_EQ(a->knownModificationDate, moment(1));

    // From then on it is a file as any other.
    directory.write(u"a.md"_s, "dalla copia di riserva");
    directory.setModified(u"a.md"_s, moment(0));
    store->refreshFromDisk();
    EXPECT_EQ(a->document()->text(), u"la prima metà e il resto");
}

TEST_F(NotesStoreDisk, SoIsOneThatIsListedAtTheStartAndOneThatIsOverwritten) {
    directory.write(u"a.md"_s, "met");
    directory.setModified(u"a.md"_s, justNow());
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    for (const char* const text : {"metà", "un'altra"}) {
        ASSERT_NE(a->document()->text(), QString::fromUtf8(text));
        directory.write(u"a.md"_s, text);
        directory.setModified(u"a.md"_s, moment(1));
        store->refreshFromDisk();
        EXPECT_EQ(a->document()->text(), QString::fromUtf8(text));
        EXPECT_EQ(a->modified(), moment(1));

        directory.write(u"a.md"_s, "un'al");
        directory.setModified(u"a.md"_s, justNow());
        store->refreshFromDisk();
        ASSERT_EQ(a->document()->text(), u"un'al");
    }
}

TEST_F(NotesStoreDisk, WhereDatesAreWholeSecondsAFileMayHaveChangedWithoutAnother) {
    struct Case {
        Moment date;
        bool isReadAgain;
    };

    const Moment wholeSecond = justNow() + 500ms;
    const Case cases[] = {{wholeSecond, true}, {justNow(), false}, {moment(1), false}};
    for (const auto& [date, isReadAgain] : cases) {
        directory.write(u"a.md"_s, "prima");
        directory.setModified(u"a.md"_s, date);
        openStore();
        const NoteItemPtr a = note(u"a"_s);
        directory.write(u"a.md"_s, "prima e dopo");
        directory.setModified(u"a.md"_s, date);

        store->refreshFromDisk();

        EXPECT_EQ(a->document()->text(), isReadAgain ? u"prima e dopo"_s : u"prima"_s);
        EXPECT_EQ(a->revision(), isReadAgain ? 1 : 0);
        // But not for ever, also if the date never comes to lie behind.
        EXPECT_EQ(a->isSettled, date != justNow());
    }
}

TEST_F(NotesStoreDisk, ATextThatIsReadWhileAnotherProgramWritesItIsReadAgainWhenThatHasSetTheDateBack) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s, "prima");
    directory.setModified(u"b.md"_s, moment(1));
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    directory.write(u"b.md"_s, "met");
    directory.setModified(u"b.md"_s, justNow());
    select(u"b"_s);
    ASSERT_EQ(b->document()->text(), u"met");

    directory.write(u"b.md"_s, "metà e resto");
    directory.setModified(u"b.md"_s, moment(1));
    store->refreshFromDisk();
    EXPECT_EQ(b->document()->text(), u"metà e resto");
    EXPECT_EQ(b->modified(), moment(1));
}

TEST_F(NotesStoreDisk, AnOlderFileIsNoChangeAfterASaveOfOurs) {
    openStore();
    directory.write(u"a.md"_s, "prima");
    store->refreshFromDisk();
    const NoteItemPtr a = note(u"a"_s);
    store->ensureLoaded(*a);
    type(a, u"nostro"_s);
    ASSERT_TRUE(store->save(*a));
    directory.write(u"a.md"_s, "dalla copia di riserva");
    directory.setModified(u"a.md"_s, moment(1));

    store->refreshFromDisk();

    EXPECT_EQ(a->document()->text(), u"nostro");
}

TEST_F(NotesStoreDisk, AFileThatHasBecomeOlderIsReadInTheBackgroundToo) {
    directory.write(u"a.md"_s);
    // Too large to be read.
    directory.write(u"b.md"_s);
    ASSERT_TRUE(QFile::resize(directory.path(u"b.md"_s).text(), NoteFileStore::maxReadableBytes + 1));
    directory.setModified(u"b.md"_s, moment(100));
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    ASSERT_TRUE(waitUntil([this] { return note(u"a"_s)->document() != nullptr; }));
    directory.replace(u"b.md"_s, "dalla copia di riserva");
    directory.setModified(u"b.md"_s, moment(1));

    store->refreshFromDisk();

    EXPECT_EQ(b->document(), nullptr);
    EXPECT_EQ(b->modified(), moment(100));
    ASSERT_TRUE(waitUntil([&b] { return b->document() != nullptr; }));
    EXPECT_EQ(b->document()->text(), u"dalla copia di riserva");
}

TEST_F(NotesStoreDisk, ADirtyNoteTakesANewCreationDateToo) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    directory.setCreated(u"a.md"_s, moment(7));

    store->refreshFromDisk();

    EXPECT_EQ(a->created(), moment(7));
    EXPECT_TRUE(a->isDirty());
}

TEST_F(NotesStoreDisk, AFileWhoseDateWasUnknownIsNewer) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->knownModificationDate = distantPast;
    directory.write(u"a.md"_s, "dopo");

    store->refreshFromDisk();

    EXPECT_EQ(a->document()->text(), u"dopo");
}

TEST_F(NotesStoreDisk, AnUnloadedNoteTakesTheDatesAndItsTextWhenItIsNeeded) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s, "prima");
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    ASSERT_EQ(b->document(), nullptr);
    const Moment date = after(b, 1);
    directory.write(u"b.md"_s, "dopo");
    directory.setModified(u"b.md"_s, date);

    store->refreshFromDisk();

    EXPECT_EQ(b->document(), nullptr);
    EXPECT_EQ(b->modified(), date);
    EXPECT_EQ(b->revision(), 0);
    select(u"b"_s);
    EXPECT_EQ(b->document()->text(), u"dopo");
}

TEST_F(NotesStoreDisk, ATextThatWasReadBeforeTheChangeIsNotDeliveredAfterIt) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s, "prima");
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    // The background thread may have read it by now, but the event loop had no turn to take it over.
    const Moment date = after(b, 1);
    directory.write(u"b.md"_s, "dopo");
    directory.setModified(u"b.md"_s, date);

    store->refreshFromDisk();
    ASSERT_TRUE(waitUntil([&b] { return b->document() != nullptr; }));

    EXPECT_EQ(b->document()->text(), u"dopo");
}

TEST_F(NotesStoreDisk, AChangedFileThatCanNotBeReadKeepsItsOldTextAndTakesTheDates) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const Moment date = after(a, 1);
    ASSERT_EQ(truncate(a->url().bytes().constData(), NoteFileStore::maxReadableBytes + 1), 0);
    directory.setModified(u"a.md"_s, date);

    store->refreshFromDisk();

    EXPECT_EQ(a->document()->text(), u"prima");
    EXPECT_EQ(a->loadError(), std::nullopt);
    EXPECT_EQ(a->modified(), date);
    EXPECT_EQ(a->knownModificationDate, date);
}

TEST_F(NotesStoreDisk, NothingIsToldWhereNothingChanged) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    const SignalCount notes(store, &NotesStore::notesChanged);
    const SignalCount fields(store, &NotesStore::noteChanged);
    const SignalCount folders(store, &NotesStore::foldersChanged);
    const SignalCount selection(store, &NotesStore::selectedIDChanged);

    store->refreshFromDisk();

    for (const SignalCount* count : {&notes, &fields, &folders, &selection}) {
        EXPECT_EQ(count->count(), 0);
    }
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

TEST_F(NotesStoreDisk, OfTwoNotesOfOneNameTheOneInUseStays) {
    for (const QString& title : {u"a"_s, u"c"_s}) {
        directory.write(u"a.md"_s);
        directory.write(u"b.md"_s);
        directory.write(u"c.md"_s);
        openStore();
        const NoteItemPtr used = note(title);
        select(title);
        directory.remove(u"b.md"_s);
        store->rename(*used, u"b"_s);
        ASSERT_EQ(used->fileName(), u"b.md");
        edit(used);

        store->refreshFromDisk();

        EXPECT_EQ(store->notes().size(), 2);
        EXPECT_EQ(note(u"b"_s), used);
        EXPECT_EQ(store->selectedItem(), used);
        EXPECT_TRUE(used->isDirty());
        EXPECT_TRUE(used->document()->undoManager().canUndo());
    }
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
