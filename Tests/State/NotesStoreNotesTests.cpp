#include "Quillary/State/AppActions.h"
#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/TrashCan.h"
#include "Tests/State/Waiting.h"

#include <QTimeZone>

#include <gmock/gmock.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

/// The editor as the store sees it: it edits through the undo manager and reports to the store.
class FakeEditor : public NoteTextView {
public:
    FakeEditor(NotesStore& store, NoteItemPtr item) : m_store(store), m_item(std::move(item)) {
        AppActions::shared().editor = this;
    }

    NoteDocument* shownDocument() const override { return m_item->document().get(); }

    TextSelection selection() const override { return selected; }

    bool replaceText(TextRange range, const QString& text) override {
        if (refuses) {
            return false;
        }
        m_item->document()->undoManager().replace(range, text, EditKind::other, selected);
        m_store.textDidChange(*m_item, *m_item->document(), false);
        return true;
    }

    void resetHighlightedLanguage() override {}

    TextSelection selected;
    bool refuses = false;

private:
    NotesStore& m_store;
    NoteItemPtr m_item;
};

} // namespace

class NotesStoreNotes : public NotesStoreTest {
protected:
    QStringList order(const QString& folder = {}) const {
        return store->fileStore().loadLayout().noteOrder.value(folder);
    }
};

// Making notes.

TEST_F(NotesStoreNotes, ANewNoteIsNamedByTheDateHasTheUsersFormatAndTheFocus) {
    settings.setDefaultFormat(NoteFormat::json);
    openStore();
    const QString before = NoteNaming::defaultTitle(now(), QTimeZone::systemTimeZone());
    const qint64 focus = store->editorFocusToken();

    const NoteItemPtr made = store->makeNote();
    const QString after = NoteNaming::defaultTitle(now(), QTimeZone::systemTimeZone());

    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->title() == before || made->title() == after) << qPrintable(made->title());
    EXPECT_EQ(made->format(), NoteFormat::json);
    EXPECT_EQ(made->folder(), std::nullopt);
    EXPECT_FALSE(made->showsPreview());
    EXPECT_EQ(store->notes(), QList{made});
    EXPECT_EQ(store->selectedID(), made->id());
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
    EXPECT_TRUE(directory.exists(made->fileName()));
}

TEST_F(NotesStoreNotes, ANewNoteHasItsTextAtOnce) {
    openStore();

    const NoteItemPtr made = store->makeNote(u"Lista"_s, u"# Da fare\nx"_s, NoteFormat::markdown, true);

    EXPECT_EQ(directory.contents(u"Lista.md"_s), "# Da fare\nx");
    EXPECT_EQ(made->document()->text(), u"# Da fare\nx");
    EXPECT_EQ(made->snippet(), u"Da fare");
    EXPECT_EQ(made->characterCount(), 11);
    EXPECT_TRUE(made->showsPreview());
    EXPECT_FALSE(made->isDirty());
    EXPECT_EQ(made->knownModificationDate, directory.modified(u"Lista.md"_s));
}

TEST_F(NotesStoreNotes, ANewNoteStandsInItsSortedPlaceUnderAFreeName) {
    directory.write(u"a.md"_s);
    directory.write(u"c.md"_s);
    openStore();

    store->makeNote(u"b"_s);
    store->makeNote(u"c"_s);

    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s, u"c"_s, u"c 2"_s}));
}

TEST_F(NotesStoreNotes, ANewNoteIsSeenWhateverHidItsPlace) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    store->toggleCollapsed(u"Casa"_s);
    store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});
    store->setSearchQuery(u"a"_s);

    const NoteItemPtr made = store->makeNote(u"c"_s, {}, {}, false, u"Casa"_s);

    EXPECT_EQ(made->folder(), u"Casa"_s);
    EXPECT_TRUE(directory.exists(u"Casa/c.md"_s));
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_TRUE(store->fileStore().loadLayout().collapsedFolders.isEmpty());
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->searchQuery(), QString());
    EXPECT_TRUE(store->visibleNotes().contains(made));
}

TEST_F(NotesStoreNotes, ANoteThatCanNotBeMadeChangesNothingElse) {
    directory.write(u"a.md"_s);
    openStore();
    store->setSearchQuery(u"x"_s);
    const qint64 focus = store->editorFocusToken();

    EXPECT_EQ(store->makeNote(u"b"_s, {}, {}, false, u"Manca"_s), nullptr);

    EXPECT_EQ(failure(), u"Impossibile creare la nota.");
    EXPECT_EQ(titles(), QStringList(u"a"_s));
    EXPECT_EQ(store->searchQuery(), u"x");
    EXPECT_EQ(store->editorFocusToken(), focus);
}

// Editing.

TEST_F(NotesStoreNotes, AnEditMakesTheNoteDirtyCountsItAndAsksForASave) {
    directory.write(u"a.md"_s, "testo");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->document()->storage().replace({5, 0}, u"\U0001F600");

    store->textDidChange(*a, *a->document(), true);

    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->characterCount(), 7);
    ASSERT_NE(a->saveTask, nullptr);
    EXPECT_TRUE(a->saveTask->isPending());
    EXPECT_EQ(directory.contents(u"a.md"_s), "testo");
}

TEST_F(NotesStoreNotes, ATextThatIsClearlyOfAnotherFormatGivesItsNoteThatFormat) {
    directory.write(u"a.md"_s, "");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->document()->storage().replace({0, 0}, u"{\"x\": [1]}");

    store->textDidChange(*a, *a->document(), true);

    EXPECT_EQ(a->fileName(), u"a.json");
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(directory.contents(u"a.json"_s), "{\"x\": [1]}");
    EXPECT_FALSE(directory.exists(u"a.md"_s));
}

TEST_F(NotesStoreNotes, TheFormatIsDetectedOnlyWhereItIsWanted) {
    directory.write(u"a.md"_s, "");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->document()->storage().replace({0, 0}, u"{\"x\": [1]}");

    store->textDidChange(*a, *a->document(), false);
    EXPECT_EQ(a->fileName(), u"a.md");

    settings.setAutoDetectFormat(false);
    store->textDidChange(*a, *a->document(), true);
    EXPECT_EQ(a->fileName(), u"a.md");
}

TEST_F(NotesStoreNotes, TheFormatOfAVeryLongTextIsNotDetected) {
    directory.write(u"a.md"_s, "");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    TextStorage& storage = a->document()->storage();
    storage.replace({0, 0}, QString(u"<html>"_s + QString(1'000'000 - 5, u'x')));

    store->textDidChange(*a, *a->document(), true);
    EXPECT_EQ(a->fileName(), u"a.md");

    storage.replace({storage.length() - 1, 1}, {});
    store->textDidChange(*a, *a->document(), true);
    EXPECT_EQ(a->fileName(), u"a.html");
}

TEST_F(NotesStoreNotes, ATextOfNoClearFormatLeavesTheFormat) {
    directory.write(u"a.json"_s, "");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->document()->storage().replace({0, 0}, u"# Titolo");

    store->textDidChange(*a, *a->document(), true);

    EXPECT_EQ(a->fileName(), u"a.json");
}

TEST_F(NotesStoreNotes, ReplacingTheTextOfAShownNoteIsAnEdit) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    FakeEditor editor(*store, a);

    store->replaceText(*a, u"dopo"_s);

    EXPECT_EQ(a->document()->text(), u"dopo");
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->revision(), 1);
    ASSERT_TRUE(a->document()->undoManager().canUndo());
    a->document()->undoManager().undo();
    EXPECT_EQ(a->document()->text(), u"prima");
}

TEST_F(NotesStoreNotes, AnEditorThatRefusesKeepsTheTextAndTheRevision) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    FakeEditor editor(*store, a);
    editor.refuses = true;

    store->replaceText(*a, u"dopo"_s);

    EXPECT_EQ(a->document()->text(), u"prima");
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(a->revision(), 0);
}

TEST_F(NotesStoreNotes, ReplacingTheTextOfANoteThatIsNotShownLeavesNoUndoStepAndIsSaved) {
    directory.write(u"a.md"_s, "prima");
    directory.write(u"b.md"_s, "altra");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    select(u"b"_s);
    const FakeEditor editor(*store, note(u"b"_s));
    a->document()->appliedStyle = EditorStyle();

    store->replaceText(*a, u"dopo"_s);

    EXPECT_EQ(a->document()->text(), u"dopo");
    EXPECT_EQ(a->document()->appliedStyle, std::nullopt);
    EXPECT_EQ(a->characterCount(), 4);
    EXPECT_EQ(a->revision(), 1);
    EXPECT_TRUE(a->isDirty());
    EXPECT_FALSE(a->document()->undoManager().canUndo());
    ASSERT_TRUE(waitUntil([&a] { return !a->isDirty(); }));
    EXPECT_EQ(directory.contents(u"a.md"_s), "dopo");
}

TEST_F(NotesStoreNotes, ReplacingTheTextOfANoteThatIsNotLoadedDoesNothing) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s, "prima");
    openStore();
    const NoteItemPtr b = note(u"b"_s);

    store->replaceText(*b, u"dopo"_s);

    EXPECT_EQ(b->document(), nullptr);
    EXPECT_FALSE(b->isDirty());
    EXPECT_EQ(b->revision(), 0);
}

// Formats and names.

TEST_F(NotesStoreNotes, AnotherFormatRenamesTheFileAndKeepsTextUndoAndSelection) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    a->setShowsPreview(true);
    a->document()->undoManager().replace({0, 0}, u"x", EditKind::typing, {});
    store->textDidChange(*a, *a->document(), false);

    store->changeFormat(*a, NoteFormat::csv);

    EXPECT_EQ(a->fileName(), u"a.csv");
    EXPECT_EQ(directory.contents(u"a.csv"_s), "xprima");
    EXPECT_FALSE(directory.exists(u"a.md"_s));
    EXPECT_FALSE(a->isDirty());
    EXPECT_TRUE(a->showsPreview());
    EXPECT_TRUE(a->document()->undoManager().canUndo());
    EXPECT_EQ(store->selectedID(), a->id());

    store->changeFormat(*a, NoteFormat::plain);
    EXPECT_FALSE(a->showsPreview());
}

TEST_F(NotesStoreNotes, TheFormatThatANoteHasDoesNothing) {
    directory.write(u"a.log"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store->changeFormat(*a, NoteFormat::plain);

    EXPECT_EQ(a->fileName(), u"a.log");
    EXPECT_TRUE(a->isDirty());
}

TEST_F(NotesStoreNotes, AFormatThatCanNotBeGivenIsReported) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    directory.remove(u"a.md"_s);

    store->changeFormat(*a, NoteFormat::csv);

    EXPECT_EQ(failure(), u"Impossibile cambiare il formato di «a».");
    EXPECT_EQ(a->fileName(), u"a.md");
}

TEST_F(NotesStoreNotes, RenamingSavesRenamesAndSorts) {
    directory.write(u"a.md"_s, "prima");
    directory.write(u"b.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store->rename(*a, u"  c: nuova\n"_s);

    EXPECT_EQ(a->title(), u"c- nuova");
    EXPECT_EQ(directory.contents(u"c- nuova.md"_s), "dopo");
    EXPECT_FALSE(directory.exists(u"a.md"_s));
    EXPECT_EQ(titles(), QStringList({u"b"_s, u"c- nuova"_s}));
    EXPECT_EQ(store->selectedID(), a->id());
}

class UnchangedTitles : public NotesStoreNotes, public testing::WithParamInterface<QString> {};

TEST_P(UnchangedTitles, DoNothingAtAll) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store->rename(*a, GetParam());

    EXPECT_EQ(a->fileName(), u"a.md");
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(directory.contents(u"a.md"_s), "prima");
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(All, UnchangedTitles, testing::Values(u"a"_s, u"  a \n"_s, u""_s, u" \t\u2028"_s));

TEST_F(NotesStoreNotes, ANameThatCanNotBeGivenIsReportedWithTheOldTitle) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);

    store->rename(*a, u"..."_s);

    EXPECT_EQ(failure(), u"Impossibile rinominare «a».");
    EXPECT_EQ(a->fileName(), u"a.md");
}

TEST_F(NotesStoreNotes, TheManualOrderFollowsANoteToItsNewName) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["b.md", "a.md"]}})");
    openStore(NoteSortOrder::manual);

    store->rename(*note(u"b"_s), u"z"_s);
    EXPECT_EQ(order(), QStringList({u"z.md"_s, u"a.md"_s}));
    EXPECT_EQ(titles(), QStringList({u"z"_s, u"a"_s}));

    store->changeFormat(*note(u"z"_s), NoteFormat::plain);
    EXPECT_EQ(order(), QStringList({u"z.txt"_s, u"a.md"_s}));
}

TEST_F(NotesStoreNotes, TheManualOrderFollowsANoteWhoseNameItComposesInAnotherWay) {
    directory.write(u"Caff\u00E8.md"_s);
    directory.write(u".quillary.json"_s, u"{\"noteOrder\": {\"\": [\"Caffe\u0300.md\"]}}"_s.toUtf8());
    openStore(NoteSortOrder::manual);

    store->rename(*note(u"Caff\u00E8"_s), u"T\u00E8"_s);

    EXPECT_EQ(order(), QStringList(u"T\u00E8.md"_s));
}

TEST_F(NotesStoreNotes, RenamingANoteWithoutAPlaceWritesNoLayout) {
    directory.write(u"a.md"_s);
    directory.write(u".quillary.json"_s, R"({"noteOrder":{"":["x.md"]}})");
    openStore();
    const QByteArray before = layout();

    store->rename(*note(u"a"_s), u"b"_s);

    EXPECT_EQ(layout(), before);
}

TEST_F(NotesStoreNotes, ALayoutThatCanNotBeStoredIsReportedAndItsOrderStays) {
    directory.write(u"a.md"_s);
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["a.md"]}})");
    openStore();
    directory.remove(u".quillary.json"_s);
    directory.makeFolder(u".quillary.json"_s);

    store->rename(*note(u"a"_s), u"b"_s);

    EXPECT_EQ(failure(), u"Impossibile salvare l'ordine delle cartelle.");
    EXPECT_EQ(note(u"b"_s)->fileName(), u"b.md");
    EXPECT_EQ(store->currentLayout().noteOrder.value(QString()), QStringList(u"b.md"_s));
}

// The Trash.

TEST_F(NotesStoreNotes, ARequestForTheTrashOnlyAsks) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();

    store->requestTrash();
    EXPECT_EQ(store->pendingNoteDeletion(), QList{note(u"a"_s)->id()});

    store->requestTrash(QList{note(u"b"_s), note(u"a"_s)});
    EXPECT_EQ(store->pendingNoteDeletion(), QList({note(u"b"_s)->id(), note(u"a"_s)->id()}));
    EXPECT_TRUE(directory.exists(u"a.md"_s));
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreNotes, ARequestForTheTrashOfNothingBeeps) {
    openStore();

    store->requestTrash();
    store->requestTrash(QList<NoteItemPtr>());

    EXPECT_EQ(desktop.beeps, 2);
    EXPECT_TRUE(store->pendingNoteDeletion().isEmpty());
}

TEST_F(NotesStoreNotes, ATrashedNoteIsSavedFirstAndItsFileGoes) {
    directory.write(u"a.md"_s, "prima");
    directory.write(u"b.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);

    store->moveToTrash({a});

    EXPECT_FALSE(directory.exists(u"a.md"_s));
    const auto trashed = trashedFrom(directory.path(u"a.md"_s));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->contents(), "dopo");
    EXPECT_THAT(trashed->record.toStdString(),
                testing::MatchesRegex("\\[Trash Info\\]\nPath=/[^\n]+/Note/a\\.md\n"
                                      "DeletionDate=[0-9]+-[0-9]+-[0-9]+T[0-9]+:[0-9]+:[0-9]+\n"));
    EXPECT_EQ(titles(), QStringList(u"b"_s));
    EXPECT_EQ(a->saveTask, nullptr);
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreNotes, TrashingTheSelectedNoteSelectsTheOneThatTakesItsPlace) {
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
        directory.write(title + u".md"_s);
    }
    openStore();
    select(u"b"_s);

    store->moveToTrash({note(u"b"_s)});
    EXPECT_EQ(store->selectedItem()->title(), u"c");

    select(u"d"_s);
    store->moveToTrash({note(u"d"_s)});
    EXPECT_EQ(store->selectedItem()->title(), u"c");

    store->moveToTrash({note(u"a"_s), note(u"c"_s)});
    EXPECT_EQ(store->selectedID(), std::nullopt);
}

TEST_F(NotesStoreNotes, TrashingAnotherNoteLeavesTheSelection) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();

    store->moveToTrash({note(u"b"_s)});

    EXPECT_EQ(store->selectedItem()->title(), u"a");
}

TEST_F(NotesStoreNotes, TrashingTheOnlyNoteThatASearchShowsSelectsTheFirstOfAll) {
    directory.write(u"a.md"_s);
    directory.write(u"trovata.md"_s, "x");
    openStore();
    select(u"trovata"_s);
    store->setSearchQuery(u"trovata"_s);

    store->moveToTrash({note(u"trovata"_s)});

    EXPECT_TRUE(store->visibleNotes().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"a");
}

TEST_F(NotesStoreNotes, OfTwoTrashedNotesTheOneThatFailsStays) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    directory.write(u"c.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    directory.remove(u"a.md"_s);

    store->moveToTrash({a, note(u"b"_s)});

    EXPECT_EQ(failure(), u"Impossibile spostare «a» nel Cestino.");
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"c"_s}));
    EXPECT_EQ(store->selectedID(), a->id());
}

TEST_F(NotesStoreNotes, TrashingWhatIsNotThereAnyMoreDoesNothing) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    directory.rename(u"a.md"_s, u".via"_s);
    store->refreshFromDisk();
    directory.rename(u".via"_s, u"a.md"_s);

    store->moveToTrash({a});

    EXPECT_TRUE(directory.exists(u"a.md"_s));
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreNotes, ATrashedNoteLeavesTheManualOrder) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"Casa/b.md"_s);
    directory.write(u"c.md"_s);
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"Casa": ["b.md", "a.md"]}})");
    openStore();
    const QByteArray before = layout();

    store->moveToTrash({note(u"c"_s)});
    EXPECT_EQ(layout(), before);

    store->moveToTrash({note(u"b"_s)});
    EXPECT_EQ(order(u"Casa"_s), QStringList(u"a.md"_s));
}

// Previews and sharing.

TEST_F(NotesStoreNotes, ThePreviewComesAndGoesAndItsEndFocusesTheEditor) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const qint64 focus = store->editorFocusToken();

    store->togglePreview();
    EXPECT_TRUE(a->showsPreview());
    EXPECT_EQ(store->editorFocusToken(), focus);

    store->togglePreview();
    EXPECT_FALSE(a->showsPreview());
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreNotes, WithoutAPreviewItBeeps) {
    directory.write(u"a.html"_s);
    openStore();

    store->togglePreview();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_FALSE(note(u"a"_s)->showsPreview());

    store->setSelectedID(std::nullopt);
    store->togglePreview();
    EXPECT_EQ(desktop.beeps, 2);
}

TEST_F(NotesStoreNotes, WhatIsSharedIsTheSelectionInTheEditorOrElseTheWholeText) {
    directory.write(u"a.md"_s, "uno due tre");
    directory.write(u"b.md"_s, "altra");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const NotesStore::SharedText whole{u"uno due tre"_s, false};
    EXPECT_EQ(store->textToShare(*a), whole);
    EXPECT_EQ(store->textToShare(*note(u"b"_s)), std::nullopt);

    {
        FakeEditor editor(*store, a);
        EXPECT_EQ(store->textToShare(*a), whole);

        editor.selected = {7, 4};
        EXPECT_EQ(store->textToShare(*a), (NotesStore::SharedText{u"due"_s, true}));

        a->setShowsPreview(true);
        EXPECT_EQ(store->textToShare(*a), whole);
        a->setShowsPreview(false);

        store->ensureLoaded(*note(u"b"_s));
        EXPECT_EQ(store->textToShare(*note(u"b"_s)), (NotesStore::SharedText{u"altra"_s, false}));
    }
    EXPECT_EQ(store->textToShare(*a), whole);
}

TEST_F(NotesStoreNotes, APreviewThatIsRefusedHidesNoSelection) {
    directory.write(u"a.html"_s, "uno due tre");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    FakeEditor editor(*store, a);
    editor.selected = {4, 7};
    a->setShowsPreview(true);

    EXPECT_EQ(store->textToShare(*a), (NotesStore::SharedText{u"due"_s, true}));
}

} // namespace quillary::test
