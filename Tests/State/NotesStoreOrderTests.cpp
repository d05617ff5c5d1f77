#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"

namespace quillary::test {

using namespace Qt::StringLiterals;

class NotesStoreOrder : public NotesStoreTest {
protected:
    /// Notes a, b and c at the top level, x and y in a folder, ordered by title.
    void openNotes(NoteSortOrder order = NoteSortOrder::title) {
        directory.makeFolder(u"Casa"_s);
        for (const QString& name : {u"a.md"_s, u"b.md"_s, u"c.md"_s, u"Casa/x.md"_s, u"Casa/y.md"_s}) {
            directory.write(name, name.toUtf8());
        }
        openStore(order);
    }

    /// The titles of a folder's notes as they are shown.
    QString shown(const std::optional<QString>& folder = {}) const { return titles(store->notes(folder)).join(u' '); }

    /// The stored order of a folder's notes.
    QString stored(const QString& folder = {}) const {
        return store->fileStore().loadLayout().noteOrder.value(folder).join(u' ');
    }
};

// Moving.

TEST_F(NotesStoreOrder, AMovedNoteIsSavedAndGoesWithItsFile) {
    openNotes();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"nuovo"_s);

    store->move({a}, u"Casa"_s);

    EXPECT_EQ(a->url(), directory.path(u"Casa/a.md"_s));
    EXPECT_EQ(a->folder(), u"Casa"_s);
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(directory.contents(u"Casa/a.md"_s), "nuovo");
    EXPECT_FALSE(directory.exists(u"a.md"_s));
    EXPECT_EQ(store->selectedID(), note(u"x"_s)->id());

    store->move({a}, std::nullopt);
    EXPECT_EQ(a->url(), directory.path(u"a.md"_s));
    EXPECT_EQ(a->folder(), std::nullopt);
}

TEST_F(NotesStoreOrder, AMovedNoteIsInTheFolderThatHoldsItsFile) {
    directory.makeFolder(u"Caffe\u0300"_s);
    directory.makeFolder(u"Caff\u00E8"_s);
    directory.write(u"Caffe\u0300/a.md"_s, "a");
    directory.write(u"Caff\u00E8/b.md"_s, "b");
    openStore();
    const NoteItemPtr a = note(u"a"_s);

    store->move({a}, u"Caff\u00E8"_s);
    EXPECT_EQ(a->url(), directory.path(u"Caff\u00E8/a.md"_s));
    EXPECT_EQ(a->folder(), u"Caff\u00E8"_s);

    directory.remove(u"Caffe\u0300"_s);
    store->move({a}, u"Caffe\u0300"_s);
    EXPECT_EQ(a->url(), directory.path(u"Caff\u00E8/a.md"_s));
    EXPECT_EQ(a->folder(), u"Caff\u00E8"_s);
}

TEST_F(NotesStoreOrder, AMovedNoteGetsAFreeNameAndLeavesTheOrderOfItsFolder) {
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["c.md", "x.md", "b.md"], "Casa": ["y.md", "x.md"]}})");
    directory.write(u"x.md"_s, "fuori");
    openNotes(NoteSortOrder::manual);
    const NoteItemPtr x = store->notes(std::nullopt).at(2);
    ASSERT_EQ(x->url(), directory.path(u"x.md"_s));

    store->move({x}, u"Casa"_s);

    EXPECT_EQ(x->url(), directory.path(u"Casa/x 2.md"_s));
    EXPECT_EQ(stored(), u"c.md b.md");
    EXPECT_EQ(stored(u"Casa"_s), u"y.md x.md");
    // A note without a place stands above those that have one.
    EXPECT_EQ(shown(u"Casa"_s), u"x 2 y x");
}

TEST_F(NotesStoreOrder, MovingSeveralNotesSelectsTheFirstAndEndsTheMultipleSelection) {
    openNotes();
    store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});
    store->showDiff();
    const qint64 focus = store->editorFocusToken();

    store->move({note(u"b"_s), note(u"a"_s)}, u"Casa"_s);

    EXPECT_EQ(store->selectedItem()->title(), u"b");
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(store->editorFocusToken(), focus);
}

TEST_F(NotesStoreOrder, MovingOneNoteLeavesTheSelection) {
    openNotes();
    select(u"c"_s);
    store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});
    const qint64 focus = store->editorFocusToken();

    store->move({note(u"a"_s)}, u"Casa"_s);

    EXPECT_EQ(store->selectedItem()->title(), u"c");
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->editorFocusToken(), focus);
}

TEST_F(NotesStoreOrder, MovingNothingDoesNothing) {
    openNotes();
    store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});

    store->move({}, u"Casa"_s);

    EXPECT_EQ(store->multiSelection().size(), 2);
    EXPECT_EQ(layoutFile(), FileStatus());
}

TEST_F(NotesStoreOrder, NotesThatHaveGoneAreNotMoved) {
    openNotes();
    const NoteItemPtr a = note(u"a"_s);
    const NoteItemPtr b = note(u"b"_s);
    directory.remove(u"a.md"_s);
    store->refreshFromDisk();
    const std::optional<NoteID> selected = store->selectedID();

    store->move({a}, u"Casa"_s);
    EXPECT_EQ(store->createFolder({a}), std::nullopt);
    EXPECT_EQ(store->folders(), QStringList(u"Casa"_s));
    EXPECT_EQ(store->selectedID(), selected);

    store->move({a, b}, u"Casa"_s);
    EXPECT_EQ(b->folder(), u"Casa"_s);
    EXPECT_EQ(store->selectedID(), selected);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreOrder, ANoteThatIsThereAlreadyStaysAndTheFolderIsOpened) {
    openNotes();
    store->toggleCollapsed(u"Casa"_s);
    const auto before = fileStatus(directory.path(u"Casa/x.md"_s));

    store->move({note(u"x"_s)}, u"Casa"_s);

    EXPECT_EQ(*fileStatus(directory.path(u"Casa/x.md"_s)), *before);
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_TRUE(store->fileStore().loadLayout().collapsedFolders.isEmpty());
}

TEST_F(NotesStoreOrder, ANoteThatCanNotBeMovedHoldsNoneBack) {
    openNotes();
    const NoteItemPtr b = note(u"b"_s);
    directory.remove(u"b.md"_s);

    store->move({note(u"a"_s), b, note(u"c"_s)}, u"Casa"_s);

    EXPECT_EQ(failure(), u"Impossibile spostare «b».");
    EXPECT_EQ(store->errorMessage()->count(u'\n'), 1);
    EXPECT_EQ(b->folder(), std::nullopt);
    EXPECT_EQ(shown(u"Casa"_s), u"a c x y");
    EXPECT_TRUE(directory.exists(u"Casa/c.md"_s));
}

TEST_F(NotesStoreOrder, AMoveKeepsIdentityUndoAndSelectionUnderAWatcher) {
    openNotes();
    const NoteItemPtr a = note(u"a"_s);
    store->setSelectedID(a->id());
    const std::shared_ptr<NoteDocument> document = a->document();
    document->undoManager().replace({0, 1}, u"A"_s, EditKind::other, {});
    store->textDidChange(*a, *document, false);
    const SignalCount selections(store, &NotesStore::selectedIDChanged);

    store->move({a}, u"Casa"_s);
    store->rename(*a, u"nuovo"_s);
    store->changeFormat(*a, NoteFormat::html);
    store->place({a}, std::nullopt, note(u"b"_s));
    letTheWatcherCatchUp();

    EXPECT_EQ(note(u"nuovo"_s), a);
    EXPECT_EQ(a->url(), directory.path(u"nuovo.html"_s));
    EXPECT_EQ(a->document(), document);
    EXPECT_EQ(a->revision(), 0);
    EXPECT_EQ(selections.count(), 0);
    EXPECT_EQ(store->notes().size(), 5);
    ASSERT_TRUE(document->undoManager().canUndo());
    document->undoManager().undo();
    EXPECT_EQ(document->text(), u"a.md");
}

// Placing.

TEST_F(NotesStoreOrder, PlacingFreezesTheOrderOnShowAndStoresIt) {
    openNotes();
    select(u"b"_s);

    store->place({note(u"c"_s)}, std::nullopt, note(u"a"_s));

    EXPECT_EQ(settings.sortOrder(), NoteSortOrder::manual);
    EXPECT_EQ(shown(), u"c a b");
    EXPECT_EQ(store->selectedItem()->title(), u"b");
    EXPECT_EQ(layout(), R"({
  "collapsedFolders": [],
  "folderColors": {},
  "folderOrder": [
    "Casa"
  ],
  "noteOrder": {
    "": [
      "c.md",
      "a.md",
      "b.md"
    ],
    "Casa": [
      "x.md",
      "y.md"
    ]
  }
}
)");
}

TEST_F(NotesStoreOrder, AnOrderByHandOfOldIsDroppedWithTheFirstPlaceThatIsGiven) {
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["c.md", "b.md"], "Via": ["z.md"], "Casa": ["y.md"]}})");
    openNotes();

    store->place({note(u"a"_s)}, std::nullopt, nullptr);

    EXPECT_EQ(stored(), u"b.md c.md a.md");
    EXPECT_EQ(stored(u"Casa"_s), u"x.md y.md");
    EXPECT_FALSE(store->fileStore().loadLayout().noteOrder.contains(u"Via"_s));
}

TEST_F(NotesStoreOrder, SeveralPlacedNotesKeepTheirGivenOrder) {
    openNotes();
    store->setMultiSelection({note(u"a"_s)->id(), note(u"y"_s)->id()});
    const qint64 focus = store->editorFocusToken();

    store->place({note(u"y"_s), note(u"a"_s)}, std::nullopt, note(u"c"_s));

    EXPECT_EQ(shown(), u"b y a c");
    EXPECT_EQ(shown(u"Casa"_s), u"x");
    EXPECT_TRUE(directory.exists(u"y.md"_s));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_EQ(store->editorFocusToken(), focus);
}

TEST_F(NotesStoreOrder, ANotePlacedBeforeItselfDoesNothingAtAll) {
    openNotes();
    store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});

    store->place({note(u"a"_s)}, std::nullopt, note(u"a"_s));
    store->place({}, std::nullopt, note(u"a"_s));

    EXPECT_EQ(settings.sortOrder(), NoteSortOrder::title);
    EXPECT_EQ(store->multiSelection().size(), 2);
    EXPECT_EQ(layoutFile(), FileStatus());
}

TEST_F(NotesStoreOrder, TheNoteThatOthersArePlacedBeforeMayBeAmongThem) {
    openNotes();

    store->place({note(u"c"_s), note(u"b"_s), note(u"a"_s)}, std::nullopt, note(u"b"_s));

    EXPECT_EQ(shown(), u"c a b");
}

TEST_F(NotesStoreOrder, PlacingOpensAClosedFolder) {
    openNotes();
    store->toggleCollapsed(u"Casa"_s);

    store->place({note(u"a"_s)}, u"Casa"_s, note(u"y"_s));

    EXPECT_EQ(shown(u"Casa"_s), u"x a y");
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_TRUE(store->fileStore().loadLayout().collapsedFolders.isEmpty());
}

TEST_F(NotesStoreOrder, APlacedNoteGetsAFreeNameAndItsPlaceUnderThatName) {
    directory.write(u"x.md"_s, "fuori");
    openNotes();
    const NoteItemPtr x = store->notes(std::nullopt).last();

    store->place({x}, u"Casa"_s, note(u"y"_s));

    EXPECT_EQ(x->url(), directory.path(u"Casa/x 2.md"_s));
    EXPECT_EQ(stored(u"Casa"_s), u"x.md x 2.md y.md");
    EXPECT_EQ(stored(), u"a.md b.md c.md");
}

TEST_F(NotesStoreOrder, ANoteThatCanNotBePlacedHoldsNoneBack) {
    openNotes();
    const NoteItemPtr a = note(u"a"_s);
    directory.remove(u"a.md"_s);

    store->place({a, note(u"b"_s)}, u"Casa"_s, note(u"x"_s));

    EXPECT_EQ(failure(), u"Impossibile spostare «a».");
    EXPECT_EQ(a->folder(), std::nullopt);
    EXPECT_EQ(shown(u"Casa"_s), u"b x y");
    EXPECT_EQ(stored(), u"a.md c.md");
}

TEST_F(NotesStoreOrder, NotesArePlacedBeforeOneThatHasNoPlaceYet) {
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["c.md", "b.md"], "Casa": ["y.md"]}})");
    openNotes(NoteSortOrder::manual);
    ASSERT_EQ(shown(), u"a c b");

    store->place({note(u"b"_s)}, std::nullopt, note(u"a"_s));
    EXPECT_EQ(shown(), u"b a c");
    EXPECT_EQ(stored(), u"b.md a.md c.md");

    ASSERT_EQ(shown(u"Casa"_s), u"x y");
    store->place({note(u"c"_s), note(u"a"_s)}, u"Casa"_s, note(u"x"_s));
    EXPECT_EQ(shown(u"Casa"_s), u"c a x y");
    EXPECT_EQ(stored(u"Casa"_s), u"c.md a.md x.md y.md");
}

TEST_F(NotesStoreOrder, ANoteThatTakesTheNameOfARemovedOneIsShownOnce) {
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["c.md", "a.md", "b.md"]}})");
    openNotes(NoteSortOrder::manual);
    directory.remove(u"c.md"_s);
    store->refreshFromDisk();

    store->rename(*note(u"b"_s), u"c"_s);
    store->resort();

    EXPECT_EQ(stored(), u"c.md a.md c.md");
    EXPECT_EQ(shown(), u"c a");
}

// Shifting.

TEST_F(NotesStoreOrder, TheSelectedNoteIsShiftedInItsFolder) {
    struct Case {
        QString title;
        int by;
        QString shown;
    };

    openNotes();
    for (const Case& each : {
             Case{u"a"_s, 1, u"b a c"_s},
             Case{u"b"_s, 1, u"a c b"_s},
             Case{u"c"_s, -1, u"a c b"_s},
             Case{u"b"_s, -1, u"b a c"_s},
             Case{u"a"_s, 2, u"b c a"_s},
             Case{u"c"_s, -2, u"c a b"_s},
         }) {
        settings.setSortOrder(NoteSortOrder::title);
        select(each.title);

        store->shiftSelectedNote(each.by);

        EXPECT_EQ(shown(), each.shown) << qPrintable(each.title) << each.by;
        EXPECT_EQ(stored().remove(u".md"_s), each.shown);
        EXPECT_EQ(store->selectedItem()->title(), each.title);
        EXPECT_EQ(desktop.beeps, 0);
    }
}

TEST_F(NotesStoreOrder, ANoteIsShiftedOverOneThatHasNoPlaceYet) {
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["c.md"]}})");
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    directory.setCreated(u"a.md"_s, moment(2));
    directory.setCreated(u"b.md"_s, moment(1));
    directory.write(u"c.md"_s);
    openStore(NoteSortOrder::manual);
    ASSERT_EQ(shown(), u"a b c");

    select(u"c"_s);
    store->shiftSelectedNote(-1);
    EXPECT_EQ(shown(), u"a c b");
    store->shiftSelectedNote(-1);
    EXPECT_EQ(shown(), u"c a b");
    store->shiftSelectedNote(1);
    EXPECT_EQ(shown(), u"a c b");
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreOrder, ShiftingPastTheEndsBeepsButTheOrderIsTheOneByHandByThen) {
    openNotes();

    select(u"a"_s);
    store->shiftSelectedNote(-1);
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_EQ(settings.sortOrder(), NoteSortOrder::manual);
    EXPECT_EQ(shown(), u"a b c");

    select(u"y"_s);
    store->shiftSelectedNote(1);
    EXPECT_EQ(desktop.beeps, 2);
    EXPECT_EQ(layoutFile(), FileStatus());
}

TEST_F(NotesStoreOrder, ShiftingWithoutASelectedNoteDoesNothing) {
    openNotes();
    store->setSelectedID(std::nullopt);

    store->shiftSelectedNote(1);

    EXPECT_EQ(settings.sortOrder(), NoteSortOrder::title);
    EXPECT_EQ(desktop.beeps, 0);
}

// Drags.

TEST_F(NotesStoreOrder, TheNoteThatFollowsAnotherAmongThoseThatRemain) {
    openNotes();
    const NoteItemPtr a = note(u"a"_s);
    const NoteItemPtr b = note(u"b"_s);
    const NoteItemPtr c = note(u"c"_s);

    EXPECT_EQ(store->note(*a, {}), b);
    EXPECT_EQ(store->note(*a, {b}), c);
    EXPECT_EQ(store->note(*c, {}), nullptr);
    EXPECT_EQ(store->note(*b, {c}), nullptr);
    EXPECT_EQ(store->note(*a, {a}), nullptr);
    EXPECT_EQ(store->note(*note(u"y"_s), {}), nullptr);
}

TEST_F(NotesStoreOrder, ADragTakesTheWholeMultipleSelectionOnlyFromWithin) {
    openNotes();
    const NoteID a = note(u"a"_s)->id();
    const NoteID b = note(u"b"_s)->id();
    const NoteID c = note(u"c"_s)->id();

    EXPECT_EQ(store->dragItem(*note(u"b"_s)), SidebarDragItem(QList{b}));

    store->setMultiSelection({c, a, b});
    EXPECT_EQ(store->dragItem(*note(u"b"_s)), SidebarDragItem(QList{c, a, b}));
    EXPECT_EQ(store->dragItem(*note(u"x"_s)), SidebarDragItem(QList{note(u"x"_s)->id()}));
}

} // namespace quillary::test
