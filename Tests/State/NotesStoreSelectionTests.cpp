#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <QCoreApplication>

namespace quillary::test {

using namespace Qt::StringLiterals;

/// Notes a, b, c and d, from the oldest to the newest, in the order of their titles.
class NotesStoreSelection : public NotesStoreTest {
protected:
    NotesStoreSelection() {
        int age = 0;
        for (const QString& title : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
            directory.write(title + u".md"_s, title.toUtf8());
            directory.setCreated(title + u".md"_s, moment(++age));
        }
        openStore();
    }

    NoteID id(const QString& title) const { return note(title)->id(); }

    QStringList multiSelection() const {
        QStringList titles;
        for (const NoteID selected : store->multiSelection()) {
            titles.append(store->item(selected)->title());
        }
        return titles;
    }
};

TEST_F(NotesStoreSelection, ANewSelectionIsReadAtOnce) {
    select(u"c"_s);

    EXPECT_EQ(store->selectedItem(), note(u"c"_s));
    EXPECT_EQ(note(u"c"_s)->document()->text(), u"c");
}

TEST_F(NotesStoreSelection, TheSameSelectionAgainDoesNothing) {
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"scritto"_s);
    store->setSelectedFolder(u"Casa"_s);
    const SignalCount changes(store, &NotesStore::selectedIDChanged);

    store->setSelectedID(a->id());
    QCoreApplication::sendPostedEvents();

    EXPECT_EQ(changes.count(), 0);
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(store->selectedFolder(), u"Casa"_s);
}

TEST_F(NotesStoreSelection, AChangeIsToldOnceAndAfterTheTextIsThere) {
    int changes = 0;
    QObject::connect(store.get(), &NotesStore::selectedIDChanged, store.get(), [&] {
        ++changes;
        EXPECT_NE(store->selectedItem()->document(), nullptr);
    });

    select(u"b"_s);

    EXPECT_EQ(changes, 1);
}

TEST_F(NotesStoreSelection, LeavingADirtyNoteSavesItWithTheNextTurnOfTheEventLoop) {
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"scritto"_s);

    select(u"b"_s);
    EXPECT_TRUE(a->isDirty());
    QCoreApplication::sendPostedEvents();

    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(directory.contents(u"a.md"_s), "scritto");
    EXPECT_EQ(a->saveTask, nullptr);
}

TEST_F(NotesStoreSelection, LeavingADirtyNoteForNoneSavesItToo) {
    type(note(u"a"_s), u"scritto"_s);

    store->setSelectedID(std::nullopt);
    QCoreApplication::sendPostedEvents();

    EXPECT_EQ(directory.contents(u"a.md"_s), "scritto");
}

TEST_F(NotesStoreSelection, ClearsTheSelectedFolder) {
    store->setSelectedFolder(u"Casa"_s);

    select(u"b"_s);

    EXPECT_EQ(store->selectedFolder(), std::nullopt);
}

TEST_F(NotesStoreSelection, EndsAMultipleSelection) {
    store->setMultiSelection({id(u"a"_s), id(u"b"_s), id(u"c"_s)});
    const qint64 focus = store->editorFocusToken();

    select(u"d"_s);

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
    EXPECT_EQ(store->selectedItem()->title(), u"d");
}

TEST_F(NotesStoreSelection, AnUnknownIdGivesNoNote) {
    store->setSelectedID(NoteID(0));

    EXPECT_EQ(store->selectedItem(), nullptr);
    EXPECT_EQ(store->item(NoteID(0)), nullptr);
}

TEST_F(NotesStoreSelection, ClearingAMultipleSelectionEndsTheComparisonAndFocusesTheEditor) {
    store->compare(*note(u"a"_s), *note(u"b"_s));
    const SignalCount diffChanges(store, &NotesStore::isShowingDiffChanged);
    const qint64 focus = store->editorFocusToken();

    store->clearMultiSelection();

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(diffChanges.count(), 1);
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
}

TEST_F(NotesStoreSelection, TheActionTargetsAreTheSelectedNoteOrTheSeveral) {
    EXPECT_EQ(titles(store->actionTargets()), QStringList(u"a"_s));

    store->setSelectedFolder(u"Casa"_s);
    EXPECT_EQ(titles(store->actionTargets()), QStringList(u"a"_s));

    store->setMultiSelection({id(u"d"_s), id(u"b"_s), NoteID(0)});
    EXPECT_EQ(titles(store->actionTargets()), QStringList({u"d"_s, u"b"_s}));

    store->setSelectedID(std::nullopt);
    EXPECT_TRUE(store->actionTargets().isEmpty());
}

TEST_F(NotesStoreSelection, TheHighlightIsOnTheSelectedNoteTheSeveralOrTheFolderAlone) {
    EXPECT_TRUE(store->isHighlighted(*note(u"a"_s)));
    EXPECT_FALSE(store->isHighlighted(*note(u"b"_s)));

    store->setSelectedFolder(u"Casa"_s);
    EXPECT_FALSE(store->isHighlighted(*note(u"a"_s)));

    store->setMultiSelection({id(u"b"_s), id(u"c"_s)});
    EXPECT_FALSE(store->isHighlighted(*note(u"a"_s)));
    EXPECT_TRUE(store->isHighlighted(*note(u"b"_s)));
}

TEST_F(NotesStoreSelection, SeveralNotesAreReadAtOnce) {
    store->setMultiSelection({id(u"d"_s), id(u"c"_s), id(u"b"_s)});

    EXPECT_EQ(multiSelection(), QStringList({u"d"_s, u"c"_s, u"b"_s}));
    EXPECT_TRUE(allTextsAreLoaded());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(store->selectedID(), id(u"a"_s));
}

TEST_F(NotesStoreSelection, SeveralNotesOfWhichOneCanNotBeRead) {
    directory.remove(u"c.md"_s);

    store->setMultiSelection({id(u"b"_s), id(u"c"_s), id(u"d"_s)});

    EXPECT_TRUE(note(u"c"_s)->loadError());
    EXPECT_NE(note(u"d"_s)->document(), nullptr);
}

TEST_F(NotesStoreSelection, TwoNotesStandInTheOrderOfTheirCreation) {
    store->setMultiSelection({id(u"c"_s), id(u"b"_s)});
    EXPECT_EQ(multiSelection(), QStringList({u"b"_s, u"c"_s}));

    note(u"b"_s)->setCreated(note(u"c"_s)->created());
    store->setMultiSelection({id(u"c"_s), id(u"b"_s)});
    EXPECT_EQ(multiSelection(), QStringList({u"b"_s, u"c"_s}));
}

TEST_F(NotesStoreSelection, ASingleIdIsAPlainSelection) {
    store->setMultiSelection({id(u"c"_s)});

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedID(), id(u"c"_s));
}

TEST_F(NotesStoreSelection, NoIdsLeaveTheSelectedNoteAndFocusTheEditor) {
    store->setMultiSelection({id(u"b"_s), id(u"c"_s)});
    const qint64 focus = store->editorFocusToken();

    store->setMultiSelection({});

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedID(), id(u"a"_s));
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
}

TEST_F(NotesStoreSelection, TogglingStartsGrowsAndEndsAMultipleSelection) {
    store->toggleInSelection(*note(u"c"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"c"_s}));

    store->toggleInSelection(*note(u"b"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"c"_s, u"b"_s}));

    store->toggleInSelection(*note(u"a"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"b"_s, u"c"_s}));

    store->toggleInSelection(*note(u"b"_s));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"c");
}

TEST_F(NotesStoreSelection, TogglingDropsNotesThatHaveGone) {
    store->setMultiSelection({id(u"b"_s), id(u"c"_s), id(u"d"_s)});
    directory.remove(u"b.md"_s);
    store->refreshFromDisk();

    store->toggleInSelection(*note(u"c"_s));

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"d");
}

TEST_F(NotesStoreSelection, ASelectionOfWhichOneNoteIsLeftEndsAndTheSelectedNoteComesBack) {
    for (const bool isComparison : {false, true}) {
        const QString gone = isComparison ? u"c"_s : u"d"_s;
        if (isComparison) {
            store->compare(*note(u"b"_s), *note(gone));
        } else {
            store->setMultiSelection({id(u"b"_s), id(gone)});
        }
        const qint64 focus = store->editorFocusToken();
        const SignalCount told(store, &NotesStore::multiSelectionChanged);
        directory.remove(gone + u".md"_s);
        store->refreshFromDisk();

        EXPECT_TRUE(store->multiSelection().isEmpty());
        EXPECT_FALSE(store->isShowingDiff());
        EXPECT_EQ(told.count(), 1);
        EXPECT_EQ(store->selectedItem()->title(), u"a");
        EXPECT_EQ(store->editorFocusToken(), focus);
    }
}

TEST_F(NotesStoreSelection, NobodySeesASelectionOfASingleNote) {
    store->compare(*note(u"b"_s), *note(u"c"_s));
    int tellings = 0;
    const auto check = [&] {
        ++tellings;
        EXPECT_TRUE(store->multiSelection().isEmpty());
        EXPECT_FALSE(store->isShowingDiff());
        EXPECT_EQ(store->notes().size(), 3);
    };
    QObject::connect(store.get(), &NotesStore::multiSelectionChanged, store.get(), check);
    QObject::connect(store.get(), &NotesStore::isShowingDiffChanged, store.get(), check);
    QObject::connect(store.get(), &NotesStore::notesChanged, store.get(), check);

    directory.remove(u"b.md"_s);
    store->refreshFromDisk();

    EXPECT_EQ(tellings, 3);
}

TEST_F(NotesStoreSelection, AComparedNoteThatTheProgramTrashesEndsTheComparison) {
    store->compare(*note(u"a"_s), *note(u"c"_s));
    store->moveToTrash({note(u"c"_s)});

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(store->selectedItem()->title(), u"a");

    store->compare(*note(u"a"_s), *note(u"d"_s));
    store->moveToTrash({note(u"a"_s)});

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(store->selectedItem()->title(), u"b");
}

TEST_F(NotesStoreSelection, AnotherNoteThatGoesAwayLeavesTheComparisonAlone) {
    store->compare(*note(u"a"_s), *note(u"c"_s));
    store->moveToTrash({note(u"d"_s)});
    directory.remove(u"b.md"_s);
    store->refreshFromDisk();

    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"c"_s}));
    EXPECT_TRUE(store->isShowingDiff());
}

TEST_F(NotesStoreSelection, TogglingTheOnlyNoteLeavesItSelected) {
    store->toggleInSelection(*note(u"a"_s));

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"a");
}

TEST_F(NotesStoreSelection, ExtendingSelectsTheRangeFromTheSelectedNote) {
    select(u"b"_s);

    store->extendSelection(*note(u"d"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"b"_s, u"c"_s, u"d"_s}));

    store->extendSelection(*note(u"a"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"b"_s}));

    store->extendSelection(*note(u"b"_s));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"b");
}

TEST_F(NotesStoreSelection, ExtendingFromOrToWhatIsNotVisibleToggles) {
    store->setSearchQuery(u"d"_s);
    store->extendSelection(*note(u"d"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"d"_s}));

    store->setSearchQuery({});
    store->setSelectedID(std::nullopt);
    store->extendSelection(*note(u"c"_s));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->selectedItem()->title(), u"c");
}

TEST_F(NotesStoreSelection, ComparingPutsTheOlderNoteFirstAndReadsBoth) {
    store->compare(*note(u"d"_s), *note(u"c"_s));

    EXPECT_EQ(multiSelection(), QStringList({u"c"_s, u"d"_s}));
    EXPECT_TRUE(store->isShowingDiff());
    EXPECT_NE(note(u"c"_s)->document(), nullptr);
    EXPECT_NE(note(u"d"_s)->document(), nullptr);
    EXPECT_EQ(store->selectedID(), id(u"a"_s));
}

TEST_F(NotesStoreSelection, ComparingANoteWithItselfDoesNothing) {
    store->compare(*note(u"b"_s), *note(u"b"_s));

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
}

TEST_F(NotesStoreSelection, ASwapSurvivesLeavingAndComingBackButNotANewComparison) {
    store->compare(*note(u"b"_s), *note(u"c"_s));
    store->swapComparison();
    EXPECT_EQ(multiSelection(), QStringList({u"c"_s, u"b"_s}));
    EXPECT_TRUE(store->isShowingDiff());

    store->showDiff();
    EXPECT_EQ(multiSelection(), QStringList({u"c"_s, u"b"_s}));
    EXPECT_TRUE(store->isShowingDiff());

    store->compare(*note(u"b"_s), *note(u"c"_s));
    EXPECT_EQ(multiSelection(), QStringList({u"b"_s, u"c"_s}));
}

TEST_F(NotesStoreSelection, SwappingNeedsTwo) {
    store->setMultiSelection({id(u"a"_s), id(u"b"_s), id(u"c"_s)});

    store->swapComparison();

    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
}

TEST_F(NotesStoreSelection, ShowingTheDifferencesNeedsTwoNotesThatAreThere) {
    store->setMultiSelection({id(u"a"_s), id(u"b"_s), id(u"c"_s)});
    store->showDiff();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_FALSE(store->isShowingDiff());

    directory.remove(u"b.md"_s);
    store->refreshFromDisk();
    store->showDiff();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_TRUE(store->isShowingDiff());
    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"c"_s}));
}

TEST_F(NotesStoreSelection, ASelectionThatLeavesTwoOrMoreEndsTheComparison) {
    store->compare(*note(u"a"_s), *note(u"b"_s));

    store->toggleInSelection(*note(u"c"_s));

    EXPECT_EQ(multiSelection(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_FALSE(store->isShowingDiff());
}

TEST_F(NotesStoreSelection, EachRequestForTheFocusIsAChange) {
    const SignalCount editor(store, &NotesStore::editorFocusTokenChanged);
    const SignalCount search(store, &NotesStore::searchFocusTokenChanged);
    const SignalCount sidebar(store, &NotesStore::sidebarFocusTokenChanged);
    const SignalCount title(store, &NotesStore::titleRenameTokenChanged);

    for (int i = 0; i < 2; ++i) {
        store->raiseEditorFocusToken();
        store->raiseSearchFocusToken();
        store->raiseSidebarFocusToken();
        store->raiseTitleRenameToken();
    }

    for (const SignalCount* count : {&editor, &search, &sidebar, &title}) {
        EXPECT_EQ(count->count(), 2);
    }
    EXPECT_EQ(store->searchFocusToken(), 2);
    EXPECT_EQ(store->sidebarFocusToken(), 2);
    EXPECT_EQ(store->titleRenameToken(), 2);
}

TEST_F(NotesStoreSelection, FieldsTellOnlyOfChanges) {
    const SignalCount query(store, &NotesStore::searchQueryChanged);
    const SignalCount folder(store, &NotesStore::selectedFolderChanged);
    const SignalCount renaming(store, &NotesStore::renamingFolderChanged);
    const SignalCount folderDeletion(store, &NotesStore::pendingFolderDeletionChanged);
    const SignalCount noteDeletion(store, &NotesStore::pendingNoteDeletionChanged);
    const SignalCount error(store, &NotesStore::errorMessageChanged);

    for (int i = 0; i < 2; ++i) {
        store->setSearchQuery(u"x"_s);
        store->setSelectedFolder(u"Casa"_s);
        store->setRenamingFolder(u"Casa"_s);
        store->setPendingFolderDeletion(u"Casa"_s);
        store->setPendingNoteDeletion({id(u"a"_s)});
        store->setErrorMessage(u"Guasto"_s);
    }

    for (const SignalCount* count : {&query, &folder, &renaming, &folderDeletion, &noteDeletion, &error}) {
        EXPECT_EQ(count->count(), 1);
    }
}

} // namespace quillary::test
