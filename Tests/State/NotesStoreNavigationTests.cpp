#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"

#include <QTemporaryDir>

namespace quillary::test {

using namespace Qt::StringLiterals;

class NotesStoreNavigation : public NotesStoreTest {
protected:
    /// Two folders with notes, an empty one, and notes at the top level, ordered by title.
    void openNotes() {
        for (const QString& folder : {u"A"_s, u"B"_s, u"C"_s}) {
            directory.makeFolder(folder);
        }
        for (const QString& name : {u"A/a1.md"_s, u"A/a2.md"_s, u"B/b1.md"_s, u"t1.md"_s, u"t2.md"_s}) {
            directory.write(name, "testo");
        }
        openStore();
    }

    QString text(const SidebarCursor& cursor) const {
        const auto* const folder = std::get_if<QString>(&cursor);
        return folder != nullptr ? *folder : store->item(std::get<NoteID>(cursor))->title();
    }

    QString cursors() const {
        QStringList texts;
        for (const SidebarCursor& cursor : store->sidebarCursors()) {
            texts.append(text(cursor));
        }
        return texts.join(u' ');
    }

    /// Where the keyboard's cursor is.
    QString current() const {
        if (store->selectedFolder()) {
            return *store->selectedFolder();
        }
        const NoteItemPtr selected = store->selectedItem();
        return selected ? selected->title() : QString();
    }

    void goTo(const QString& stop) const {
        if (store->folders().contains(stop)) {
            store->setSelectedFolder(stop);
        } else {
            select(stop);
            store->setSelectedFolder({});
        }
    }
};

// The cursor.

TEST_F(NotesStoreNavigation, StopsAreFoldersAndTheNotesThatAreNotHiddenInOne) {
    openNotes();
    EXPECT_EQ(cursors(), u"A a1 a2 B b1 C t1 t2");

    store->toggleCollapsed(u"A"_s);
    EXPECT_EQ(cursors(), u"A B b1 C t1 t2");

    settings.setSortOrder(NoteSortOrder::modified);
    EXPECT_EQ(store->sidebarCursors().size(), 6);

    store->setSearchQuery(u"a"_s);
    EXPECT_EQ(cursors().split(u' ').size(), 2);
}

TEST_F(NotesStoreNavigation, TheCursorWalksOverNotesAndFromHeaderToHeader) {
    struct Case {
        QString from;
        int step;
        QString to;
        int beeps;
    };

    openNotes();
    for (const Case& each : {
             Case{u"a1"_s, 1, u"a2"_s, 0},
             Case{u"a2"_s, 1, u"B"_s, 0},
             Case{u"a1"_s, -1, u"A"_s, 0},
             Case{u"b1"_s, -1, u"B"_s, 0},
             Case{u"t1"_s, -1, u"C"_s, 0},
             Case{u"t2"_s, 1, u"t2"_s, 1},
             Case{u"t1"_s, 1, u"t2"_s, 0},
             Case{u"A"_s, 1, u"B"_s, 0},
             Case{u"B"_s, 1, u"C"_s, 0},
             Case{u"C"_s, 1, u"t1"_s, 0},
             Case{u"C"_s, -1, u"B"_s, 0},
             Case{u"B"_s, -1, u"A"_s, 0},
             Case{u"A"_s, -1, u"A"_s, 1},
         }) {
        goTo(each.from);
        desktop.beeps = 0;

        store->sidebarMove(each.step);

        EXPECT_EQ(current(), each.to) << qPrintable(each.from) << each.step;
        EXPECT_EQ(desktop.beeps, each.beeps) << qPrintable(each.from) << each.step;
    }
}

TEST_F(NotesStoreNavigation, BelowTheLastFolderItsNotesAreSkipped) {
    directory.makeFolder(u"A"_s);
    directory.write(u"A/a.md"_s);
    directory.write(u"t.md"_s);
    openStore();
    store->setSelectedFolder(u"A"_s);

    store->sidebarMove(1);
    EXPECT_EQ(current(), u"t");

    directory.remove(u"t.md"_s);
    store->refreshFromDisk();
    store->setSelectedFolder(u"A"_s);
    store->sidebarMove(1);
    EXPECT_EQ(current(), u"A");
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(NotesStoreNavigation, WithoutACursorThatIsSeenTheFirstStopIsTaken) {
    openNotes();
    select(u"b1"_s);
    store->toggleCollapsed(u"B"_s);
    store->sidebarMove(-1);
    EXPECT_EQ(current(), u"A");

    store->setSelectedID(std::nullopt);
    store->setSelectedFolder({});
    store->sidebarMove(1);
    EXPECT_EQ(current(), u"A");

    store->setSelectedFolder(u"sparita"_s);
    store->setSearchQuery(u"t2"_s);
    store->sidebarMove(1);
    EXPECT_EQ(current(), u"t2");

    store->setSearchQuery(u"non c'è"_s);
    store->sidebarMove(1);
    EXPECT_EQ(current(), u"t2");
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreNavigation, AHeaderLeavesTheSelectedNoteAndTheMultipleSelection) {
    openNotes();
    select(u"a1"_s);
    store->setMultiSelection({note(u"a1"_s)->id(), note(u"a2"_s)->id()});
    store->showDiff();
    const SignalCount selections(store, &NotesStore::selectedIDChanged);

    store->sidebarMove(-1);

    EXPECT_EQ(store->selectedFolder(), u"A"_s);
    EXPECT_EQ(store->selectedItem()->title(), u"a1");
    EXPECT_EQ(store->multiSelection().size(), 2);
    EXPECT_TRUE(store->isShowingDiff());
    EXPECT_EQ(selections.count(), 0);
}

TEST_F(NotesStoreNavigation, ANoteEndsTheMultipleSelectionWithoutTakingTheFocus) {
    openNotes();
    select(u"a1"_s);
    store->setMultiSelection({note(u"a1"_s)->id(), note(u"t1"_s)->id()});
    store->showDiff();
    const qint64 focus = store->editorFocusToken();

    store->sidebarMove(1);

    EXPECT_EQ(current(), u"a2");
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
    EXPECT_EQ(store->editorFocusToken(), focus);
}

TEST_F(NotesStoreNavigation, TheSelectedNoteUnderAHeaderIsComeBackToWithoutBeingLeft) {
    openNotes();
    select(u"a1"_s);
    store->setSelectedFolder(u"A"_s);
    const SignalCount selections(store, &NotesStore::selectedIDChanged);

    store->sidebarRight();

    EXPECT_EQ(store->selectedFolder(), std::nullopt);
    EXPECT_EQ(current(), u"a1");
    EXPECT_EQ(selections.count(), 0);
}

TEST_F(NotesStoreNavigation, RightOpensAFolderAndThenEntersIt) {
    openNotes();
    store->toggleCollapsed(u"B"_s);
    store->setSelectedFolder(u"B"_s);

    store->sidebarRight();
    EXPECT_FALSE(store->collapsedFolders().contains(u"B"_s));
    EXPECT_EQ(current(), u"B");

    store->sidebarRight();
    EXPECT_EQ(current(), u"b1");
    EXPECT_EQ(desktop.beeps, 0);

    store->sidebarRight();
    EXPECT_EQ(current(), u"b1");
    EXPECT_EQ(desktop.beeps, 0);

    store->setSelectedFolder(u"C"_s);
    store->sidebarRight();
    EXPECT_EQ(current(), u"C");
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(NotesStoreNavigation, LeftGoesToTheHeaderAndThenClosesTheFolder) {
    openNotes();
    select(u"b1"_s);

    store->sidebarLeft();
    EXPECT_EQ(current(), u"B");
    EXPECT_TRUE(store->collapsedFolders().isEmpty());

    store->sidebarLeft();
    EXPECT_TRUE(store->collapsedFolders().contains(u"B"_s));
    EXPECT_EQ(desktop.beeps, 0);

    store->sidebarLeft();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_TRUE(store->collapsedFolders().contains(u"B"_s));

    select(u"t1"_s);
    store->sidebarLeft();
    EXPECT_EQ(desktop.beeps, 2);
    EXPECT_EQ(current(), u"t1");

    store->setSelectedID(std::nullopt);
    store->sidebarLeft();
    EXPECT_EQ(desktop.beeps, 3);
}

// Stepping through notes.

TEST_F(NotesStoreNavigation, SteppingGoesRoundTheVisibleNotes) {
    struct Case {
        QString from;
        int step;
        QString to;
    };

    openNotes();
    store->toggleCollapsed(u"B"_s);
    for (const Case& each : {
             Case{u"a1"_s, 1, u"a2"_s},
             Case{u"a2"_s, 1, u"t1"_s},
             Case{u"t2"_s, 1, u"a1"_s},
             Case{u"a1"_s, -1, u"t2"_s},
             Case{u"a1"_s, -9, u"t2"_s},
             Case{u"a1"_s, 6, u"t1"_s},
             Case{u"b1"_s, -1, u"t2"_s},
             Case{u"b1"_s, 1, u"a1"_s},
             Case{u"b1"_s, 0, u"a1"_s},
         }) {
        select(each.from);

        store->selectAdjacent(each.step);

        EXPECT_EQ(current(), each.to) << qPrintable(each.from) << each.step;
    }
    EXPECT_EQ(desktop.beeps, 0);

    store->setSelectedID(std::nullopt);
    store->selectAdjacent(-1);
    EXPECT_EQ(current(), u"t2");
}

TEST_F(NotesStoreNavigation, SteppingThroughNothingDoesNothing) {
    openNotes();
    select(u"t1"_s);
    store->setSearchQuery(u"non c'è"_s);

    store->selectAdjacent(1);

    EXPECT_EQ(current(), u"t1");
}

TEST_F(NotesStoreNavigation, ANoteIsSelectedByItsPlaceAmongTheVisibleOnes) {
    openNotes();
    store->toggleCollapsed(u"A"_s);

    store->selectVisible(1);
    EXPECT_EQ(current(), u"t1");
    store->selectVisible(3);
    EXPECT_EQ(current(), u"t1");
    store->selectVisible(-1);
    EXPECT_EQ(current(), u"t1");
    store->selectVisible(0);
    EXPECT_EQ(current(), u"b1");
}

// The search field.

TEST_F(NotesStoreNavigation, ReturnKeepsASelectedNoteThatWasFoundAndElseTakesTheFirst) {
    openNotes();
    select(u"a2"_s);
    const qint64 focus = store->editorFocusToken();

    store->setSearchQuery(u"a"_s);
    store->commitSearch();
    EXPECT_EQ(current(), u"a2");
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_EQ(store->editorFocusToken(), focus + 1);

    store->setSearchQuery(u"t"_s);
    select(u"b1"_s);
    store->setSearchQuery(u"t1"_s);
    store->commitSearch();
    EXPECT_EQ(current(), u"t1");
    EXPECT_EQ(store->editorFocusToken(), focus + 2);
    EXPECT_EQ(store->notes().size(), 5);
}

TEST_F(NotesStoreNavigation, ReturnMakesTheNoteThatASearchDidNotFind) {
    openNotes();
    select(u"b1"_s);
    store->setSearchQuery(u" Lista nuova\t"_s);
    const qint64 focus = store->editorFocusToken();

    store->commitSearch();

    EXPECT_EQ(current(), u"Lista nuova");
    EXPECT_EQ(store->selectedItem()->folder(), u"B"_s);
    EXPECT_EQ(store->selectedItem()->document()->text(), u"");
    EXPECT_EQ(store->selectedItem()->format(), settings.defaultFormat());
    EXPECT_FALSE(store->selectedItem()->showsPreview());
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
}

TEST_F(NotesStoreNavigation, ReturnWithBlanksAloneIsNoSearch) {
    openNotes();
    select(u"t2"_s);
    store->setSearchQuery(u" \t\u00A0"_s);

    store->commitSearch();
    EXPECT_EQ(current(), u"t2");
    EXPECT_EQ(store->searchQuery(), u"");

    for (const QString& folder : {u"A"_s, u"B"_s}) {
        store->toggleCollapsed(folder);
    }
    store->moveToTrash({note(u"t1"_s), note(u"t2"_s)});
    ASSERT_TRUE(store->visibleNotes().isEmpty());
    ASSERT_NE(store->selectedItem(), nullptr);
    const qint64 focus = store->editorFocusToken();
    store->setSearchQuery(u"  "_s);

    store->commitSearch();
    EXPECT_EQ(store->selectedID(), std::nullopt);
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
    EXPECT_EQ(store->notes().size(), 3);
}

TEST_F(NotesStoreNavigation, EscapeEmptiesTheSearchAndThenLeavesItsField) {
    openNotes();
    store->setSearchQuery(u"a"_s);
    const qint64 focus = store->editorFocusToken();

    store->cancelSearch();
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_EQ(store->editorFocusToken(), focus);

    store->cancelSearch();
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
}

// Coming from elsewhere.

TEST_F(NotesStoreNavigation, ANoteIsRevealedWhateverHidesIt) {
    openNotes();
    store->toggleCollapsed(u"B"_s);
    store->setSearchQuery(u"t"_s);
    store->setMultiSelection({note(u"t1"_s)->id(), note(u"t2"_s)->id()});

    store->reveal(*note(u"b1"_s), false);

    EXPECT_EQ(current(), u"b1");
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_FALSE(store->collapsedFolders().contains(u"B"_s));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(note(u"b1"_s)->showsPreview());
}

TEST_F(NotesStoreNavigation, OnlyFormatsWithAPreviewAreRevealedInIt) {
    for (const QString& name : {u"a.md"_s, u"b.json"_s, u"c.csv"_s, u"d.html"_s, u"e.txt"_s}) {
        directory.write(name);
    }
    openStore();
    for (const NoteItemPtr& each : store->notes()) {
        store->reveal(*each, true);

        EXPECT_EQ(each->showsPreview(), supportsPreview(each->format())) << qPrintable(each->fileName());
        EXPECT_EQ(store->selectedID(), each->id());
    }
    store->reveal(*note(u"a"_s), false);
    EXPECT_TRUE(note(u"a"_s)->showsPreview());
}

class NotesStoreLinks : public NotesStoreNavigation {
protected:
    using Result = NotesStore::LinkResult;

    /// A link in a note; the file name of the note that is selected afterwards, with its folder.
    QString follow(const QString& url, const NoteItemPtr& from) {
        EXPECT_EQ(store->openLink(url, *from), Result::handled) << qPrintable(url);
        const NoteItemPtr selected = store->selectedItem();
        return (selected->folder() ? *selected->folder() + u'/' : QString()) + selected->fileName();
    }
};

TEST_F(NotesStoreLinks, AnAnchorIsLeftToThePreviewAndAnotherSchemeToTheSystem) {
    openNotes();
    select(u"a1"_s);

    EXPECT_EQ(store->openLink(u"#titolo"_s, *note(u"a1"_s)), Result::discarded);
    EXPECT_EQ(store->openLink(u"https://example.org/t1.md"_s, *note(u"a1"_s)), Result::systemAction);
    EXPECT_EQ(store->openLink(u"mailto:io@example.org"_s, *note(u"a1"_s)), Result::systemAction);

    EXPECT_EQ(current(), u"a1");
    EXPECT_EQ(desktop.beeps, 0);
    EXPECT_TRUE(desktop.opened.isEmpty());
}

TEST_F(NotesStoreLinks, APathLeadsToTheNoteThere) {
    directory.makeFolder(u"A"_s);
    directory.makeFolder(u"B"_s);
    for (const QString& name :
         {u"A/da.md"_s, u"A/uno due.md"_s, u"B/altra.md"_s, u"uno due.md"_s, u"perch\u00E9.md"_s}) {
        directory.write(name);
    }
    openStore();
    const NoteItemPtr from = note(u"da"_s);

    EXPECT_EQ(follow(u"uno%20due.md"_s, from), u"A/uno due.md");
    EXPECT_EQ(follow(u"../uno%20due.md"_s, from), u"uno due.md");
    EXPECT_EQ(follow(u"./../B/altra.md#punto"_s, from), u"B/altra.md");
    EXPECT_EQ(follow(directory.path(u"uno due.md"_s).text(), from), u"uno due.md");
    EXPECT_EQ(follow(u"file://"_s + directory.path(u"B/altra.md"_s).text(), from), u"B/altra.md");
    EXPECT_EQ(follow(u"../perche\u0301.md"_s, from), u"perch\u00E9.md");
}

TEST_F(NotesStoreLinks, ANameLeadsToTheNoteInTheSameFolderFirst) {
    directory.makeFolder(u"A"_s);
    directory.makeFolder(u"B"_s);
    for (const QString& name : {u"A/meta.md"_s, u"B/da.md"_s, u"B/meta.txt"_s, u"sola.css"_s, u"da.md"_s}) {
        directory.write(name);
    }
    openStore();
    const NoteItemPtr from = store->notes(u"B"_s).first();
    ASSERT_EQ(from->title(), u"da");

    EXPECT_EQ(follow(u"meta"_s, from), u"B/meta.txt");
    EXPECT_EQ(follow(u"meta.md"_s, from), u"A/meta.md");
    EXPECT_EQ(follow(u"sola"_s, from), u"sola.css");
    EXPECT_EQ(follow(u"ovunque/sola.css"_s, from), u"sola.css");
    EXPECT_EQ(follow(u"/via/meta"_s, from), u"B/meta.txt");
    EXPECT_EQ(follow(u"../da.md"_s, from), u"da.md");

    EXPECT_EQ(store->openLink(u"META"_s, *from), Result::discarded);
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(NotesStoreLinks, OfTwoNamesThatDifferInCompositionTheOneAsSpelledIsMeant) {
    directory.write(u"e\u0301.md"_s);
    directory.write(u"\u00E9.md"_s);
    directory.write(u"da.md"_s);
    openStore();

    EXPECT_EQ(follow(u"e\u0301.md"_s, note(u"da"_s)), u"e\u0301.md");
    EXPECT_EQ(follow(u"\u00E9.md"_s, note(u"da"_s)), u"\u00E9.md");
}

TEST_F(NotesStoreLinks, ALinkInAPreviewOpensAPreview) {
    directory.write(u"da.md"_s);
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    const NoteItemPtr from = note(u"da"_s);

    follow(u"a"_s, from);
    EXPECT_FALSE(note(u"a"_s)->showsPreview());

    from->setShowsPreview(true);
    follow(u"b"_s, from);
    EXPECT_TRUE(note(u"b"_s)->showsPreview());

    from->setCharacterCount(1'000'001);
    follow(u"a"_s, from);
    EXPECT_FALSE(note(u"a"_s)->showsPreview());
}

TEST_F(NotesStoreLinks, AFileThatIsNoNoteIsOpenedByTheDesktop) {
    directory.makeFolder(u"A"_s);
    directory.write(u"A/da.md"_s);
    directory.write(u"foto.png"_s);
    openStore();
    const NoteItemPtr from = note(u"da"_s);

    EXPECT_EQ(store->openLink(u"../foto.png"_s, *from), Result::handled);
    EXPECT_EQ(store->openLink(u".."_s, *from), Result::handled);
    EXPECT_EQ(store->openLink(directory.path(u"foto.png"_s).text(), *from), Result::handled);

    EXPECT_EQ(desktop.opened, QStringList({directory.path(u"foto.png"_s).text(), directory.path().text(),
                                           directory.path(u"foto.png"_s).text()}));
    EXPECT_EQ(current(), u"da");
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreLinks, ALinkThatLeadsNowhereBeeps) {
    openNotes();
    select(u"a1"_s);

    for (const QString& url : {u"manca.md"_s, u"/nessun/posto"_s, u"../foto.png"_s, u"foto%00.png"_s, u"..%00"_s}) {
        EXPECT_EQ(store->openLink(url, *note(u"a1"_s)), Result::discarded) << qPrintable(url);
    }
    EXPECT_EQ(desktop.beeps, 5);
    EXPECT_TRUE(desktop.opened.isEmpty());
    EXPECT_EQ(current(), u"a1");
}

} // namespace quillary::test
