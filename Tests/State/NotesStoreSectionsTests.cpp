#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <QDateTime>

namespace quillary::test {

using namespace Qt::StringLiterals;

class NotesStoreSections : public NotesStoreTest {
protected:
    /// The sidebar as text: "Casa/: a b", "[Note]: c", "-: d".
    QStringList sections() const {
        QStringList texts;
        for (const SidebarSection& section : store->sidebarSections()) {
            QString heading = u"-"_s;
            if (section.kind.isFolder()) {
                heading = section.kind.text + u"/"_s;
            } else if (section.kind.isGroup()) {
                heading = u"["_s + section.kind.text + u"]"_s;
            }
            texts.append(heading + u":"_s + (section.items.isEmpty() ? u""_s : u" "_s) +
                         titles(section.items).join(u' '));
        }
        return texts;
    }
};

TEST_F(NotesStoreSections, AnEmptyDirectoryHasNone) {
    openStore();

    EXPECT_TRUE(store->sidebarSections().isEmpty());
    EXPECT_TRUE(store->visibleNotes().isEmpty());
}

TEST_F(NotesStoreSections, NotesWithoutFoldersHaveNoHeadingByTitleAndByHand) {
    directory.write(u"b.md"_s);
    directory.write(u"a.md"_s);

    openStore(NoteSortOrder::title);
    EXPECT_EQ(sections(), QStringList(u"-: a b"_s));

    openStore(NoteSortOrder::manual);
    EXPECT_EQ(sections(), QStringList(u"-: a b"_s));

    directory.makeFolder(u"Casa"_s);
    store->refreshFromDisk();
    EXPECT_EQ(sections(), QStringList({u"Casa/:"_s, u"[Note]: a b"_s}));
}

TEST_F(NotesStoreSections, FoldersStandAboveTheNotesOfTheTopLevelInTheirOrder) {
    directory.makeFolder(u"Casa"_s);
    directory.makeFolder(u"Ufficio"_s);
    directory.makeFolder(u"Vuota"_s);
    directory.write(u"Casa/b.md"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"Ufficio/c.md"_s);
    directory.write(u"d.md"_s);
    directory.write(u".quillary.json"_s, R"({"folderOrder": ["Ufficio", "Vuota", "Casa"]})");

    openStore();

    EXPECT_EQ(sections(), QStringList({u"Ufficio/: c"_s, u"Vuota/:"_s, u"Casa/: a b"_s, u"[Note]: d"_s}));
    EXPECT_EQ(titles(store->visibleNotes()), QStringList({u"c"_s, u"a"_s, u"b"_s, u"d"_s}));
}

TEST_F(NotesStoreSections, WithoutNotesAtTheTopLevelThereAreOnlyFolders) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);

    openStore();

    EXPECT_EQ(sections(), QStringList(u"Casa/: a"_s));
}

TEST_F(NotesStoreSections, ACollapsedFolderKeepsItsSectionAndHidesItsNotes) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"b.md"_s);
    directory.write(u".quillary.json"_s, R"({"collapsedFolders": ["Casa"]})");

    openStore();

    EXPECT_EQ(sections(), QStringList({u"Casa/: a"_s, u"[Note]: b"_s}));
    EXPECT_EQ(titles(store->visibleNotes()), QStringList(u"b"_s));
    EXPECT_EQ(store->selectedItem()->title(), u"b");
}

TEST_F(NotesStoreSections, ByDateNeighboursOfOneHeadingJoin) {
    const auto write = [this](const QString& title, Moment date) {
        directory.write(title + u".md"_s);
        directory.setModified(title + u".md"_s, date);
    };
    write(u"futura"_s, now() + std::chrono::hours(100));
    write(u"adesso"_s, now());
    write(u"antica"_s, moment(0));
    write(u"antica anche"_s, moment(-1));
    directory.makeFolder(u"Casa"_s);

    openStore(NoteSortOrder::modified);

    EXPECT_EQ(sections(),
              QStringList({u"Casa/:"_s, u"[Oggi]: futura adesso"_s, u"[Marzo 2024]: antica antica anche"_s}));
}

TEST_F(NotesStoreSections, ByCreationTheHeadingsAreThoseOfTheCreation) {
    directory.write(u"vecchia.md"_s);
    directory.setCreated(u"vecchia.md"_s, moment(0));
    directory.write(u"nuova.md"_s);
    directory.setModified(u"nuova.md"_s, moment(0));

    openStore(NoteSortOrder::created);

    EXPECT_EQ(sections(), QStringList({u"[Oggi]: nuova"_s, u"[Marzo 2024]: vecchia"_s}));
}

TEST_F(NotesStoreSections, HeadingsThatAreNotNeighboursStayApart) {
    directory.write(u"a.md"_s);
    directory.setModified(u"a.md"_s, now());
    directory.write(u"b.md"_s);
    directory.setModified(u"b.md"_s, moment(0));
    directory.write(u"c.md"_s);
    directory.setModified(u"c.md"_s, now() - std::chrono::seconds(1));
    openStore(NoteSortOrder::modified);
    // The list stays as it is until the next time that it is put in order.
    note(u"a"_s)->setModified(moment(1));
    note(u"b"_s)->setModified(now());
    note(u"c"_s)->setModified(moment(0));

    EXPECT_EQ(sections(), QStringList({u"[Marzo 2024]: a c"_s, u"[Oggi]: b"_s}));
    note(u"c"_s)->setModified(now());
    EXPECT_EQ(sections(), QStringList({u"[Marzo 2024]: a"_s, u"[Oggi]: c b"_s}));
}

TEST_F(NotesStoreSections, TheDisplayDateIsThatOfCreationOnlyWhereItSorts) {
    directory.write(u"a.md"_s);
    directory.setCreated(u"a.md"_s, moment(1));
    directory.setModified(u"a.md"_s, moment(2));
    openStore();

    for (const auto& [order, date] :
         {std::pair(NoteSortOrder::created, moment(1)), std::pair(NoteSortOrder::modified, moment(2)),
          std::pair(NoteSortOrder::title, moment(2)), std::pair(NoteSortOrder::manual, moment(2))}) {
        settings.setSortOrder(order);
        EXPECT_EQ(store->displayDate(*note(u"a"_s)), date);
    }
}

TEST_F(NotesStoreSections, ASearchIsOnePlainSectionOverAllFolders) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/Ricetta.md"_s, "farina");
    directory.write(u"Spesa.md"_s, "comprare la FARINA");
    directory.write(u"Altro.md"_s, "niente");
    directory.write(u".quillary.json"_s, R"({"collapsedFolders": ["Casa"]})");
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    store->setSearchQuery(u"  Farina "_s);
    EXPECT_EQ(sections(), QStringList(u"-: Ricetta Spesa"_s));
    EXPECT_EQ(titles(store->visibleNotes()), QStringList({u"Ricetta"_s, u"Spesa"_s}));

    store->setSearchQuery(u"rICETTA"_s);
    EXPECT_EQ(sections(), QStringList(u"-: Ricetta"_s));

    store->setSearchQuery(u"introvabile"_s);
    EXPECT_EQ(sections(), QStringList(u"-:"_s));
    EXPECT_TRUE(store->visibleNotes().isEmpty());
}

TEST_F(NotesStoreSections, AQueryOfBlanksIsNoSearchButALineEndIsOne) {
    directory.write(u"a.md"_s, "una riga");
    directory.write(u"b.md"_s, "due\nrighe");
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    store->setSearchQuery(u" \t\u00A0"_s);
    EXPECT_EQ(sections(), QStringList(u"-: a b"_s));

    store->setSearchQuery(u" \n "_s);
    EXPECT_EQ(sections(), QStringList(u"-: b"_s));
}

TEST_F(NotesStoreSections, ATextThatIsNotLoadedIsFoundByItsTitleOnly) {
    directory.write(u"a.md"_s);
    directory.write(u"Farina.md"_s, "segreto");
    openStore();
    ASSERT_EQ(note(u"Farina"_s)->document(), nullptr);

    store->setSearchQuery(u"segreto"_s);
    EXPECT_EQ(sections(), QStringList(u"-:"_s));
    store->setSearchQuery(u"farina"_s);
    EXPECT_EQ(sections(), QStringList(u"-: Farina"_s));

    store->setSearchQuery(u"segreto"_s);
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    EXPECT_EQ(sections(), QStringList(u"-: Farina"_s));
}

TEST_F(NotesStoreSections, TheSnippetIsNotSearched) {
    directory.write(u"a.md"_s, "testo");
    openStore();
    note(u"a"_s)->setSnippet(u"solo qui"_s);

    store->setSearchQuery(u"solo qui"_s);

    EXPECT_TRUE(store->visibleNotes().isEmpty());
}

TEST_F(NotesStoreSections, ASearchSeesWhatWasJustTyped) {
    directory.write(u"a.md"_s, "testo");
    openStore();
    type(note(u"a"_s), u"appena scritto"_s);

    store->setSearchQuery(u"APPENA"_s);

    EXPECT_EQ(sections(), QStringList(u"-: a"_s));
}

TEST_F(NotesStoreSections, TheNotesOfAFolderAndOfTheTopLevel) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/b.md"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"c.md"_s);
    openStore();

    EXPECT_EQ(titles(store->notes(u"Casa"_s)), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(titles(store->notes(std::nullopt)), QStringList(u"c"_s));
    EXPECT_TRUE(store->notes(u"Altrove"_s).isEmpty());
}

TEST_F(NotesStoreSections, TogglingAFolderIsToldAndStored) {
    directory.makeFolder(u"Casa"_s);
    directory.makeFolder(u"Ufficio"_s);
    openStore();
    const SignalCount changes(store, &NotesStore::collapsedFoldersChanged);

    store->toggleCollapsed(u"Casa"_s);
    EXPECT_TRUE(store->collapsedFolders().contains(u"Casa"_s));
    EXPECT_EQ(store->fileStore().loadLayout().collapsedFolders, QStringList(u"Casa"_s));
    EXPECT_EQ(store->fileStore().loadLayout().folderOrder, QStringList({u"Casa"_s, u"Ufficio"_s}));

    store->toggleCollapsed(u"Casa"_s);
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_TRUE(store->fileStore().loadLayout().collapsedFolders.isEmpty());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(NotesStoreSections, ALayoutThatCanNotBeStoredIsReportedAndStaysInMemory) {
    directory.makeFolder(u"Casa"_s);
    directory.makeFolder(u".quillary.json"_s);
    openStore();

    store->toggleCollapsed(u"Casa"_s);

    EXPECT_TRUE(store->collapsedFolders().contains(u"Casa"_s));
    ASSERT_TRUE(store->errorMessage());
    EXPECT_TRUE(store->errorMessage()->startsWith(u"Impossibile salvare l'ordine delle cartelle.\n"))
        << qPrintable(*store->errorMessage());
}

TEST(SidebarSectionKind, IsItsCaseAndItsText) {
    using Kind = SidebarSection::Kind;

    EXPECT_EQ(Kind::folder(u"Note"_s), Kind::folder(u"Note"_s));
    EXPECT_NE(Kind::folder(u"Note"_s), Kind::group(u"Note"_s));
    EXPECT_NE(Kind::group(u"Note"_s), Kind::group(u"Oggi"_s));
    EXPECT_EQ(QSet<Kind>({Kind::plain(), Kind::plain(), Kind::group(u"Note"_s), Kind::folder(u"Note"_s)}).size(), 3);
}

} // namespace quillary::test
