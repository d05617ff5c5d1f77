#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <chrono>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class NotesStoreSaving : public NotesStoreTest {
protected:
    /// A note in a folder that can be taken away, so that saving fails.
    NoteItemPtr openNoteInFolder() {
        directory.makeFolder(u"Casa"_s);
        directory.write(u"Casa/a.md"_s, "prima");
        openStore();
        select(u"a"_s);
        return note(u"a"_s);
    }
};

TEST_F(NotesStoreSaving, AnEditIsSavedHalfASecondAfterTheLastOne) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    std::chrono::steady_clock::time_point lastEdit;
    QObject::connect(store.get(), &NotesStore::noteChanged, store.get(), [&](NoteItem* item, NoteField field) {
        if (field == NoteField::isDirty && !item->isDirty()) {
            EXPECT_GE(std::chrono::steady_clock::now() - lastEdit, 500ms);
        }
    });
    for (const QString& text : {u"d"_s, u"do"_s, u"dopo"_s}) {
        runEventLoop(30ms);
        lastEdit = std::chrono::steady_clock::now();
        type(a, text);
        EXPECT_TRUE(a->isDirty());
        EXPECT_EQ(a->characterCount(), text.size());
    }

    ASSERT_TRUE(waitUntil([&a] { return !a->isDirty(); }));

    EXPECT_EQ(directory.contents(u"a.md"_s), "dopo");
    EXPECT_EQ(a->saveTask, nullptr);
}

TEST_F(NotesStoreSaving, ASaveBringsTheNoteUpToDate) {
    directory.write(u"a.md"_s, "prima");
    directory.setModified(u"a.md"_s, moment(1));
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"\n## Dopo \nresto"_s);

    EXPECT_TRUE(store->save(*a));

    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(a->snippet(), u"Dopo");
    EXPECT_EQ(a->modified(), directory.modified(u"a.md"_s));
    EXPECT_EQ(a->knownModificationDate, directory.modified(u"a.md"_s));
    EXPECT_GT(a->modified(), moment(1));
}

TEST_F(NotesStoreSaving, ASaveTakesThePlaceOfThePendingOne) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);
    ASSERT_NE(a->saveTask, nullptr);
    EXPECT_TRUE(a->saveTask->isPending());

    store->save(*a);

    EXPECT_EQ(a->saveTask, nullptr);
}

TEST_F(NotesStoreSaving, ACleanNoteIsNotWritten) {
    directory.write(u"a.md"_s, "prima");
    directory.setModified(u"a.md"_s, moment(1));
    openStore();

    EXPECT_TRUE(store->save(*note(u"a"_s)));

    EXPECT_EQ(directory.modified(u"a.md"_s), moment(1));
}

TEST_F(NotesStoreSaving, ANoteWithoutItsTextIsNotWritten) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s, "prima");
    openStore();
    const NoteItemPtr b = note(u"b"_s);
    b->setDirty(true);
    ASSERT_EQ(b->document(), nullptr);

    EXPECT_TRUE(store->save(*b));

    EXPECT_EQ(directory.contents(u"b.md"_s), "prima");
}

TEST_F(NotesStoreSaving, ANoteThatIsNotAmongTheNotesIsNeverWritten) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"scritto"_s);
    directory.remove(u"a.md"_s);
    store->refreshFromDisk();
    ASSERT_EQ(note(u"a"_s), nullptr);

    EXPECT_TRUE(store->save(*a));
    EXPECT_FALSE(directory.exists(u"a.md"_s));

    // Nor by the save that was pending when it went.
    store->textDidChange(*a, *a->document(), false);
    ASSERT_TRUE(waitUntil([&a] { return !a->saveTask; }));
    EXPECT_FALSE(directory.exists(u"a.md"_s));
}

TEST_F(NotesStoreSaving, ANoteThatOutlivesItsStoreIsNeverWritten) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store.reset();
    ASSERT_TRUE(waitUntil([&a] { return !a->saveTask->isPending(); }));

    EXPECT_EQ(directory.contents(u"a.md"_s), "prima");
}

TEST_F(NotesStoreSaving, AFailureIsReportedAndLeavesTheNoteDirtyUntilTheNextEdit) {
    const NoteItemPtr a = openNoteInFolder();
    type(a, u"dopo"_s);
    directory.rename(u"Casa"_s, u".via"_s);

    EXPECT_FALSE(store->save(*a));

    ASSERT_TRUE(store->errorMessage());
    const QString firstLine = u"Impossibile salvare «a».\n"_s;
    EXPECT_TRUE(store->errorMessage()->startsWith(firstLine)) << qPrintable(*store->errorMessage());
    EXPECT_EQ(store->errorMessage()->mid(firstLine.size()), (SystemError{ENOENT}.localizedDescription()));
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->saveTask, nullptr);

    directory.rename(u".via"_s, u"Casa"_s);
    type(a, u"dopo ancora"_s);
    ASSERT_TRUE(waitUntil([&a] { return !a->isDirty(); }));
    EXPECT_EQ(directory.contents(u"Casa/a.md"_s), "dopo ancora");
}

TEST_F(NotesStoreSaving, ALaterFailureReplacesTheMessage) {
    const NoteItemPtr a = openNoteInFolder();
    type(a, u"dopo"_s);
    directory.rename(u"Casa"_s, u".via"_s);
    store->setErrorMessage(u"Un guasto di prima"_s);

    store->save(*a);

    EXPECT_TRUE(store->errorMessage()->startsWith(u"Impossibile salvare «a»"));
}

TEST_F(NotesStoreSaving, InTheOrderOfModificationASaveMovesTheNoteUp) {
    directory.write(u"a.md"_s);
    directory.setModified(u"a.md"_s, moment(2));
    directory.write(u"b.md"_s);
    directory.setModified(u"b.md"_s, moment(1));
    openStore(NoteSortOrder::modified);
    select(u"b"_s);
    type(note(u"b"_s), u"dopo"_s);
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));

    store->save(*note(u"b"_s));

    EXPECT_EQ(titles(), QStringList({u"b"_s, u"a"_s}));
}

TEST_F(NotesStoreSaving, InAnotherOrderASaveLeavesTheListAlone) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore(NoteSortOrder::title);
    select(u"b"_s);
    type(note(u"b"_s), u"dopo"_s);
    const SignalCount changes(store, &NotesStore::notesChanged);

    store->save(*note(u"b"_s));

    EXPECT_EQ(changes.count(), 0);
}

TEST_F(NotesStoreSaving, AllDirtyNotesAreSavedAtOnceAndAFailureHoldsNoneBack) {
    const NoteItemPtr a = openNoteInFolder();
    directory.write(u"b.md"_s, "prima");
    directory.write(u"c.md"_s, "prima");
    directory.setModified(u"c.md"_s, moment(1));
    store->refreshFromDisk();
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s}) {
        store->ensureLoaded(*note(title));
    }
    type(a, u"dopo"_s);
    type(note(u"b"_s), u"dopo"_s);
    directory.rename(u"Casa"_s, u".via"_s);

    store->saveDirtyNotes();

    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(directory.contents(u"b.md"_s), "dopo");
    EXPECT_EQ(directory.modified(u"c.md"_s), moment(1));
    EXPECT_TRUE(store->errorMessage()->startsWith(u"Impossibile salvare «a»"));
}

TEST_F(NotesStoreSaving, WhatWasNotEditedStaysByteForByte) {
    directory.write(u"a.md"_s, "prima\r\n\xC2\xA0seconda\rterza\n\xEF\xBF\xBE");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const QString text = a->document()->text();
    type(a, text + u"!"_s);

    store->save(*a);

    EXPECT_EQ(directory.contents(u"a.md"_s), "prima\r\n\xC2\xA0seconda\rterza\n\xEF\xBF\xBE!");
}

TEST_F(NotesStoreSaving, TheCreationDateOutlivesASave) {
    directory.write(u"a.md"_s);
    directory.setCreated(u"a.md"_s, moment(1));
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store->save(*a);
    store->refreshFromDisk();

    EXPECT_EQ(a->created(), moment(1));
}

} // namespace quillary::test
