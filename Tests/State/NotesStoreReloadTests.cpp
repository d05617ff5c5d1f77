#include "Tests/State/NotesStoreDiskTest.h"

#include <QFile>

#include <chrono>
#include <unistd.h>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What a refresh does to one note.
class NotesStoreReload : public NotesStoreDisk {
protected:
    /// The date of a file that somebody may still be writing, however slow this machine is.
    static Moment justNow() { return std::chrono::floor<std::chrono::seconds>(now()) + 60s + 500ms; }
};

TEST_F(NotesStoreReload, ACleanOpenNoteTakesTheNewTextAndItsUndoIsEmpty) {
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

TEST_F(NotesStoreReload, ADirtyNoteKeepsItsTextAndTheNextSaveOverwritesTheDisk) {
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

TEST_F(NotesStoreReload, AFileThatWasOnlyTouchedTakesItsDateAndNothingElse) {
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

TEST_F(NotesStoreReload, ADateWithinAMillisecondOfTheKnownOneIsNoChange) {
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

TEST_F(NotesStoreReload, AnOlderFileIsNoChangeButItsNewCreationDateIsTaken) {
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

TEST_F(NotesStoreReload, AFileThatIsCopiedInWithItsDateIsReadAgainWhenItIsComplete) {
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

TEST_F(NotesStoreReload, SoIsOneThatIsListedAtTheStartAndOneThatIsOverwritten) {
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

TEST_F(NotesStoreReload, WhereDatesAreWholeSecondsAFileMayHaveChangedWithoutAnother) {
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

TEST_F(NotesStoreReload, ATextThatIsReadWhileAnotherProgramWritesItIsReadAgainWhenThatHasSetTheDateBack) {
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

TEST_F(NotesStoreReload, AnOlderFileIsNoChangeAfterASaveOfOurs) {
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

TEST_F(NotesStoreReload, AnOlderFileIsNoChangeOnceTheNewOneWasFoundLeftAlone) {
    directory.write(u"a.md"_s, "prima");
    const Moment date = now() - 1500ms;
    directory.setModified(u"a.md"_s, date);
    openStore();
    ASSERT_TRUE(waitUntil([date] { return NoteItem::isSettledSince(date); }));
    store->refreshFromDisk();
    directory.write(u"a.md"_s, "dalla copia di riserva");
    directory.setModified(u"a.md"_s, moment(1));

    store->refreshFromDisk();

    EXPECT_EQ(note(u"a"_s)->document()->text(), u"prima");
}

TEST_F(NotesStoreReload, AFileThatHasBecomeOlderIsReadInTheBackgroundToo) {
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

TEST_F(NotesStoreReload, ADirtyNoteTakesANewCreationDateToo) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    edit(a);
    directory.setCreated(u"a.md"_s, moment(7));

    store->refreshFromDisk();

    EXPECT_EQ(a->created(), moment(7));
    EXPECT_TRUE(a->isDirty());
}

TEST_F(NotesStoreReload, AFileWhoseDateWasUnknownIsNewer) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->knownModificationDate = distantPast;
    directory.write(u"a.md"_s, "dopo");

    store->refreshFromDisk();

    EXPECT_EQ(a->document()->text(), u"dopo");
}

TEST_F(NotesStoreReload, AnUnloadedNoteTakesTheDatesAndItsTextWhenItIsNeeded) {
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

TEST_F(NotesStoreReload, ATextThatWasReadBeforeTheChangeIsNotDeliveredAfterIt) {
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

TEST_F(NotesStoreReload, AChangedFileThatCanNotBeReadKeepsItsOldTextAndTakesTheDates) {
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

TEST_F(NotesStoreReload, NothingIsToldWhereNothingChanged) {
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

} // namespace quillary::test
