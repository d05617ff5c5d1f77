#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <QFile>

#include <algorithm>
#include <unistd.h>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class NotesStoreLoading : public NotesStoreTest {};

TEST_F(NotesStoreLoading, AnEmptyDirectoryHasNoNotesNoSelectionAndNoError) {
    openStore();

    EXPECT_TRUE(store->notes().isEmpty());
    EXPECT_TRUE(store->folders().isEmpty());
    EXPECT_EQ(store->selectedID(), std::nullopt);
    EXPECT_EQ(store->selectedItem(), nullptr);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreLoading, AMissingDirectoryIsMade) {
    settings.setNotesDirectory(directory.path(u"Nuova/Cartella"_s));

    openStore();

    EXPECT_TRUE(directory.exists(u"Nuova/Cartella"_s));
    EXPECT_TRUE(store->notes().isEmpty());
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreLoading, TheFirstVisibleNoteIsSelectedAndAloneHasItsTextAtFirst) {
    directory.write(u"Zucca.md"_s, "z");
    directory.write(u"Albero.md"_s, "# Un albero\nverde");
    directory.write(u"Mela.md"_s, "m");

    openStore();

    EXPECT_EQ(titles(), QStringList({u"Albero"_s, u"Mela"_s, u"Zucca"_s}));
    ASSERT_NE(store->selectedItem(), nullptr);
    EXPECT_EQ(store->selectedItem()->title(), u"Albero");
    EXPECT_EQ(note(u"Albero"_s)->document()->text(), u"# Un albero\nverde");
    EXPECT_EQ(note(u"Albero"_s)->snippet(), u"Un albero");
    EXPECT_EQ(note(u"Albero"_s)->characterCount(), 17);
    EXPECT_EQ(note(u"Mela"_s)->document(), nullptr);
    EXPECT_EQ(note(u"Zucca"_s)->document(), nullptr);
}

TEST_F(NotesStoreLoading, TheOtherTextsArriveInTheBackground) {
    for (int i = 0; i < 300; ++i) {
        directory.write(u"Nota %1.md"_s.arg(i), QByteArray("Testo ") + QByteArray::number(i));
    }
    openStore();

    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    EXPECT_EQ(note(u"Nota 299"_s)->document()->text(), u"Testo 299");
    EXPECT_EQ(note(u"Nota 299"_s)->snippet(), u"Testo 299");
    EXPECT_EQ(note(u"Nota 299"_s)->characterCount(), 9);
    EXPECT_EQ(note(u"Nota 299"_s)->revision(), 0);
}

TEST_F(NotesStoreLoading, TheOtherTextsArriveInTheOrderOfTheNotes) {
    for (int i = 0; i < 100; ++i) {
        directory.write(u"Nota %1.md"_s.arg(i));
    }
    openStore();
    QStringList arrived;
    QObject::connect(store.get(), &NotesStore::noteChanged, store.get(), [&arrived](NoteItem* item, NoteField field) {
        if (field == NoteField::document) {
            arrived.append(item->title());
        }
    });

    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    EXPECT_EQ(arrived, titles().mid(1));
}

TEST_F(NotesStoreLoading, ADirectoryThatCanNotBeReadIsReportedAndLeavesTheStoreUsable) {
    directory.write(u"file"_s);
    settings.setNotesDirectory(directory.path(u"file"_s));

    openStore();

    EXPECT_TRUE(store->notes().isEmpty());
    EXPECT_TRUE(store->folders().isEmpty());
    EXPECT_EQ(store->selectedID(), std::nullopt);
    ASSERT_TRUE(store->errorMessage());
    const QString firstLine = u"Impossibile leggere la cartella «"_s + directory.path().text() + u"/file».\n"_s;
    EXPECT_TRUE(store->errorMessage()->startsWith(firstLine)) << qPrintable(*store->errorMessage());
    EXPECT_GT(store->errorMessage()->size(), firstLine.size());

    directory.write(u"a.md"_s);
    store->changeDirectory(directory.path());
    EXPECT_EQ(titles(), QStringList(u"a"_s));
}

TEST_F(NotesStoreLoading, ADirectoryThatComesAfterAFailureIsLoadedWithItsLayout) {
    directory.write(u".note"_s);
    settings.setNotesDirectory(directory.path(u".note"_s));
    openStore();
    ASSERT_TRUE(store->errorMessage());

    directory.makeFolder(u".altre"_s);
    directory.makeFolder(u".altre/Alfa"_s);
    directory.makeFolder(u".altre/Beta"_s);
    directory.write(u".altre/Beta/a.md"_s);
    directory.write(u".altre/.quillary.json"_s, R"({"folderOrder": ["Beta", "Alfa"], "collapsedFolders": ["Alfa"]})");
    directory.remove(u".note"_s);
    directory.rename(u".altre"_s, u".note"_s);

    ASSERT_TRUE(waitUntil([this] { return !store->notes().isEmpty(); }));
    EXPECT_EQ(store->folders(), QStringList({u"Beta"_s, u"Alfa"_s}));
    EXPECT_EQ(store->collapsedFolders(), QSet<QString>{u"Alfa"_s});
}

TEST_F(NotesStoreLoading, AFailureAfterASuccessEmptiesEverything) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"a.md"_s);
    openStore();
    store->toggleCollapsed(u"Casa"_s);
    ASSERT_TRUE(store->selectedID());
    directory.remove(u""_s);
    QFile blocker(directory.path().text());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));

    store->loadAll();

    EXPECT_TRUE(store->notes().isEmpty());
    EXPECT_TRUE(store->folders().isEmpty());
    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_EQ(store->selectedID(), std::nullopt);
    EXPECT_TRUE(store->errorMessage());
}

TEST_F(NotesStoreLoading, TheLayoutIsTakenOverForTheFoldersThatExist) {
    directory.makeFolder(u"Alfa"_s);
    directory.makeFolder(u"Beta"_s);
    directory.makeFolder(u"Gamma"_s);
    directory.write(u".quillary.json"_s, R"({"folderOrder": ["Gamma", "Sparita", "Beta"],
        "collapsedFolders": ["Beta", "Sparita"], "folderColors": {"Gamma": "teal", "Sparita": "red"},
        "noteOrder": {"Sparita": ["x.md"], "": ["y.md"]}})");

    openStore();

    EXPECT_EQ(store->folders(), QStringList({u"Gamma"_s, u"Beta"_s, u"Alfa"_s}));
    EXPECT_EQ(store->collapsedFolders(), QSet<QString>{u"Beta"_s});
    EXPECT_EQ(store->folderColors(), (QMap<QString, FolderColor>{{u"Gamma"_s, FolderColor::teal}}));
    const SidebarLayout layout = store->currentLayout();
    EXPECT_EQ(layout.folderOrder, store->folders());
    EXPECT_EQ(layout.collapsedFolders, QStringList(u"Beta"_s));
    EXPECT_EQ(layout.noteOrder.value(u"Sparita"_s), QStringList(u"x.md"_s));
    EXPECT_EQ(layout.noteOrder.value(QString()), QStringList(u"y.md"_s));
}

TEST_F(NotesStoreLoading, ClosedFoldersAreStoredInTheOrderOfTheFolders) {
    const QStringList folders{u"e"_s, u"b"_s, u"h"_s, u"a"_s, u"g"_s, u"c"_s, u"f"_s, u"d"_s};
    const QString names = u"[\""_s + folders.join(u"\", \""_s) + u"\"]"_s;
    for (const QString& folder : folders) {
        directory.makeFolder(folder);
    }
    directory.write(u".quillary.json"_s, u"{\"folderOrder\": %1, \"collapsedFolders\": %1}"_s.arg(names).toUtf8());

    openStore();

    EXPECT_EQ(store->currentLayout().collapsedFolders, folders);
}

TEST_F(NotesStoreLoading, TheLayoutFindsFoldersWhoseNamesAreComposedInAnotherWay) {
    directory.makeFolder(u"Caff\u00E8"_s);
    directory.write(
        u".quillary.json"_s,
        u"{\"collapsedFolders\": [\"Caffe\u0300\"], \"folderColors\": {\"Caffe\u0300\": \"blue\"}}"_s.toUtf8());

    openStore();

    EXPECT_EQ(store->collapsedFolders(), QSet<QString>{u"Caff\u00E8"_s});
    EXPECT_EQ(store->folderColors().value(u"Caff\u00E8"_s), FolderColor::blue);
}

TEST_F(NotesStoreLoading, ABrokenLayoutIsAnEmptyOneWithoutAMessage) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u".quillary.json"_s, R"({"collapsedFolders": ["Casa"], "folderColors": {"Casa": "fuchsia"}})");

    openStore();

    EXPECT_TRUE(store->collapsedFolders().isEmpty());
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_TRUE(directory.contents(u".quillary.json"_s).contains("fuchsia"));
}

TEST_F(NotesStoreLoading, NothingIsWrittenByLoading) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"a.md"_s);

    openStore();

    EXPECT_FALSE(directory.exists(u".quillary.json"_s));
}

struct Order {
    NoteSortOrder order;
    QStringList titles;
};

class NotesStoreOrders : public NotesStoreTest, public testing::WithParamInterface<Order> {};

TEST_P(NotesStoreOrders, DecideTheOrderOfTheNotes) {
    directory.write(u"Nota 10.md"_s);
    directory.setCreated(u"Nota 10.md"_s, moment(3));
    directory.setModified(u"Nota 10.md"_s, moment(4));
    directory.write(u"Nota 2.md"_s);
    directory.setCreated(u"Nota 2.md"_s, moment(1));
    directory.setModified(u"Nota 2.md"_s, moment(6));
    directory.write(u"Altra.md"_s);
    directory.setCreated(u"Altra.md"_s, moment(2));
    directory.setModified(u"Altra.md"_s, moment(5));
    directory.write(u".quillary.json"_s, R"({"noteOrder": {"": ["Nota 10.md"]}})");

    openStore(GetParam().order);
    EXPECT_EQ(titles(), GetParam().titles);

    openStore(GetParam().order == NoteSortOrder::title ? NoteSortOrder::created : NoteSortOrder::title);
    settings.setSortOrder(GetParam().order);
    EXPECT_EQ(titles(), GetParam().titles);
}

INSTANTIATE_TEST_SUITE_P(All, NotesStoreOrders,
                         testing::Values(Order{NoteSortOrder::title, {u"Altra"_s, u"Nota 2"_s, u"Nota 10"_s}},
                                         Order{NoteSortOrder::created, {u"Nota 10"_s, u"Altra"_s, u"Nota 2"_s}},
                                         Order{NoteSortOrder::modified, {u"Nota 2"_s, u"Altra"_s, u"Nota 10"_s}},
                                         Order{NoteSortOrder::manual, {u"Altra"_s, u"Nota 2"_s, u"Nota 10"_s}}));

TEST_F(NotesStoreLoading, InManualOrderUnknownNotesComeFirstNewestOnTopFolderByFolder) {
    directory.makeFolder(u"Casa"_s);
    int age = 0;
    for (const QString& name : {u"Casa/vecchia.md"_s, u"Casa/nuova.md"_s, u"Casa/nota.md"_s, u"prima.md"_s,
                                u"seconda.md"_s, u"sciolta.md"_s}) {
        directory.write(name);
        directory.setCreated(name, moment(++age));
    }
    directory.write(u".quillary.json"_s,
                    R"({"noteOrder": {"": ["seconda.md", "prima.md", "sparita.md"], "Casa": ["nota.md"]}})");

    openStore(NoteSortOrder::manual);

    EXPECT_EQ(titles(store->notes(u"Casa"_s)), QStringList({u"nuova"_s, u"vecchia"_s, u"nota"_s}));
    EXPECT_EQ(titles(store->notes(std::nullopt)), QStringList({u"sciolta"_s, u"seconda"_s, u"prima"_s}));
}

TEST_F(NotesStoreLoading, TheManualOrderFindsNotesWhoseNamesAreComposedInAnotherWay) {
    directory.write(u"Caff\u00E8.md"_s);
    directory.write(u"Altra.md"_s);
    directory.write(u"Nuova.md"_s);
    directory.write(u".quillary.json"_s, u"{\"noteOrder\": {\"\": [\"Caffe\u0300.md\", \"Altra.md\"]}}"_s.toUtf8());

    openStore(NoteSortOrder::manual);

    EXPECT_EQ(titles(), QStringList({u"Nuova"_s, u"Caff\u00E8"_s, u"Altra"_s}));
}

TEST_F(NotesStoreLoading, TwoFilesWhoseNamesDifferOnlyInCompositionAreTwoNotes) {
    directory.write(u"Caff\u00E8.md"_s, "composto");
    directory.write(u"Caffe\u0300.md"_s, "scomposto");
    directory.write(u".quillary.json"_s, u"{\"noteOrder\": {\"\": [\"Caffe\u0300.md\"]}}"_s.toUtf8());

    openStore(NoteSortOrder::manual);
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    ASSERT_EQ(titles(), QStringList({u"Caff\u00E8"_s, u"Caffe\u0300"_s}));
    EXPECT_EQ(note(u"Caff\u00E8"_s)->document()->text(), u"composto");
    EXPECT_EQ(note(u"Caffe\u0300"_s)->document()->text(), u"scomposto");
}

TEST_F(NotesStoreLoading, ANameThatIsNoUtf8IsANoteLikeAnyOther) {
    const QByteArray path = directory.path().bytes() + "/\xE8.md";
    FILE* const raw = fopen(path.constData(), "w");
    ASSERT_NE(raw, nullptr);
    fputs("testo", raw);
    fclose(raw);

    openStore();

    ASSERT_EQ(store->notes().size(), 1);
    const NoteItemPtr item = store->notes().first();
    EXPECT_EQ(item->document()->text(), u"testo");
    type(item, u"altro"_s);
    EXPECT_TRUE(store->save(*item));
    EXPECT_EQ(item->url().bytes(), path);
    EXPECT_EQ(unlink(path.constData()), 0);
}

TEST_F(NotesStoreLoading, ResortTellsOnlyOfAnotherOrder) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    const SignalCount changes(store, &NotesStore::notesChanged);

    store->resort();
    settings.setSortOrder(NoteSortOrder::title);
    EXPECT_EQ(changes.count(), 0);

    note(u"a"_s)->setModified(moment(2));
    note(u"b"_s)->setModified(moment(1));
    settings.setSortOrder(NoteSortOrder::modified);
    EXPECT_EQ(changes.count(), 0);

    note(u"a"_s)->setModified(moment(0));
    store->resort();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(titles(), QStringList({u"b"_s, u"a"_s}));
}

TEST_F(NotesStoreLoading, ATextFromTheBackgroundIsDroppedForANoteThatGotAnotherName) {
    directory.write(u"a.md"_s, "a");
    directory.write(u"b.md"_s, "b");
    directory.write(u"c.md"_s, "c");
    openStore();
    const NoteItemPtr renamed = note(u"b"_s);

    store->rename(*renamed, u"altro nome"_s);
    ASSERT_TRUE(waitUntil([this] { return note(u"c"_s)->document() != nullptr; }));
    EXPECT_EQ(renamed->document(), nullptr);

    store->setSelectedID(renamed->id());
    ASSERT_NE(renamed->document(), nullptr);
    EXPECT_EQ(renamed->document()->text(), u"b");
}

TEST_F(NotesStoreLoading, ATextFromTheBackgroundIsDroppedForANoteThatWasOpened) {
    directory.write(u"a.md"_s, "a");
    directory.write(u"b.md"_s, "b");
    directory.write(u"c.md"_s, "c");
    openStore();
    select(u"b"_s);
    const auto opened = note(u"b"_s)->document();
    type(note(u"b"_s), u"scritto"_s);

    ASSERT_TRUE(waitUntil([this] { return note(u"c"_s)->document() != nullptr; }));

    EXPECT_EQ(note(u"b"_s)->document(), opened);
    EXPECT_EQ(opened->text(), u"scritto");
}

class NotesStoreHugeNote : public NotesStoreTest {
protected:
    void writeHugeNote() const {
        directory.write(u"enorme.md"_s);
        ASSERT_EQ(truncate(directory.path(u"enorme.md"_s).bytes().constData(), NoteFileStore::maxReadableBytes + 1), 0);
    }

    /// The selected one, which has become small since.
    NoteItemPtr failedNoteThatCouldBeRead() {
        directory.write(u"a.md"_s);
        writeHugeNote();
        openStore();
        select(u"enorme"_s);
        directory.write(u"enorme.md"_s, "piccola");
        return note(u"enorme"_s);
    }
};

TEST_F(NotesStoreHugeNote, StaysListedAndGetsItsErrorOnlyWhenItIsSelected) {
    directory.write(u"a.md"_s);
    writeHugeNote();
    directory.write(u"z.md"_s);
    openStore();

    ASSERT_TRUE(waitUntil([this] { return note(u"z"_s)->document() != nullptr; }));
    ASSERT_NE(note(u"enorme"_s), nullptr);
    EXPECT_EQ(note(u"enorme"_s)->loadError(), std::nullopt);

    select(u"enorme"_s);
    ASSERT_TRUE(note(u"enorme"_s)->loadError());
    EXPECT_TRUE(note(u"enorme"_s)->loadError()->startsWith(u"«enorme.md» è troppo grande per essere aperto ("))
        << qPrintable(*note(u"enorme"_s)->loadError());
    EXPECT_EQ(note(u"enorme"_s)->document(), nullptr);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreHugeNote, IsReadAgainByEachNewSelection) {
    const NoteItemPtr huge = failedNoteThatCouldBeRead();
    ASSERT_TRUE(huge->loadError());
    select(u"enorme"_s);
    EXPECT_TRUE(huge->loadError()) << "the same selection again is no new one";

    select(u"a"_s);
    select(u"enorme"_s);

    EXPECT_EQ(huge->loadError(), std::nullopt);
    ASSERT_NE(huge->document(), nullptr);
    EXPECT_EQ(huge->document()->text(), u"piccola");
}

TEST_F(NotesStoreHugeNote, IsNotReadInTheBackgroundOnceItHasItsError) {
    const NoteItemPtr huge = failedNoteThatCouldBeRead();
    ASSERT_TRUE(huge->loadError());
    directory.write(u"z.md"_s);
    store->refreshFromDisk();
    // Texts come in the order of the notes, and this one is behind it.
    ASSERT_TRUE(waitUntil([this] { return note(u"z"_s)->document() != nullptr; }));

    EXPECT_EQ(huge->document(), nullptr);
    EXPECT_TRUE(huge->loadError());
}

TEST_F(NotesStoreLoading, LoadingAgainMakesNewNotesAndTheOldOnesFallSilent) {
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr old = note(u"a"_s);
    type(old, u"non salvato"_s);

    store->loadAll();
    const SignalCount changes(store, &NotesStore::noteChanged);
    old->setSnippet(u"x"_s);

    EXPECT_NE(note(u"a"_s)->id(), old->id());
    EXPECT_EQ(note(u"a"_s)->document()->text(), u"testo");
    EXPECT_EQ(store->selectedID(), note(u"a"_s)->id());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(NotesStoreLoading, LoadingAgainEndsAComparison) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    store->compare(*note(u"a"_s), *note(u"b"_s));
    ASSERT_TRUE(store->isShowingDiff());

    store->loadAll();

    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(store->isShowingDiff());
}

TEST_F(NotesStoreLoading, ChangingTheDirectorySavesAndStartsAnew) {
    directory.write(u"a.md"_s);
    directory.makeFolder(u"Altre"_s);
    directory.write(u"Altre/b.md"_s, "b");
    openStore();
    type(note(u"a"_s), u"appena scritto"_s);
    store->setSearchQuery(u"a"_s);

    store->changeDirectory(directory.path(u"Altre"_s));

    EXPECT_EQ(directory.contents(u"a.md"_s), "appena scritto");
    EXPECT_EQ(settings.notesDirectory(), directory.path(u"Altre"_s));
    EXPECT_EQ(store->fileStore().directory(), directory.path(u"Altre"_s));
    EXPECT_EQ(store->searchQuery(), QString());
    EXPECT_EQ(titles(), QStringList(u"b"_s));
    EXPECT_EQ(store->selectedID(), note(u"b"_s)->id());
}

TEST_F(NotesStoreLoading, WhatComesIntoAnotherDirectoryBeforeItIsWatchedIsListedToo) {
    directory.makeFolder(u"Altre"_s);
    directory.write(u"Altre/a.md"_s);
    openStore();
    QObject::connect(
        store.get(), &NotesStore::notesChanged, store.get(), [this] { directory.write(u"Altre/b.md"_s); },
        Qt::SingleShotConnection);

    store->changeDirectory(directory.path(u"Altre"_s));

    EXPECT_TRUE(waitUntil([this] { return titles() == QStringList({u"a"_s, u"b"_s}); }));
}

TEST_F(NotesStoreLoading, ADirtyNoteThatCanNotBeSavedDoesNotStopTheChangeOfDirectory) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.makeFolder(u"Altre"_s);
    openStore();
    select(u"a"_s);
    type(note(u"a"_s), u"appena scritto"_s);
    directory.remove(u"Casa"_s);

    store->changeDirectory(directory.path(u"Altre"_s));

    ASSERT_TRUE(store->errorMessage());
    EXPECT_TRUE(store->errorMessage()->startsWith(u"Impossibile salvare «a».\n"));
    EXPECT_EQ(store->fileStore().directory(), directory.path(u"Altre"_s));
    EXPECT_TRUE(store->notes().isEmpty());
}

TEST_F(NotesStoreLoading, TheTextsOfManyNotesAreReadWithoutAFirstLook) {
    for (int i = 0; i < 1200; ++i) {
        directory.write(u"Nota %1.md"_s.arg(i), QByteArray::number(i));
    }
    openStore();

    const auto hasItsText = [](const NoteItemPtr& note) {
        return note->document() && u"Nota "_s + note->document()->text() == note->title();
    };
    EXPECT_TRUE(waitUntil([&] { return std::ranges::all_of(store->notes(), hasItsText); }));
}

TEST_F(NotesStoreLoading, APreloadDoesNotOutliveAChangeOfDirectory) {
    for (int i = 0; i < 200; ++i) {
        directory.write(u"Nota %1.md"_s.arg(i));
    }
    directory.makeFolder(u"Altre"_s);
    directory.write(u"Altre/Nota 5.md"_s, "altro testo");
    openStore();

    store->changeDirectory(directory.path(u"Altre"_s));
    runEventLoop(50ms);

    ASSERT_EQ(titles(), QStringList(u"Nota 5"_s));
    EXPECT_EQ(note(u"Nota 5"_s)->document()->text(), u"altro testo");
}

TEST_F(NotesStoreLoading, TheStoreMayGoWhileTextsAreBeingRead) {
    for (int i = 0; i < 300; ++i) {
        directory.write(u"Nota %1.md"_s.arg(i));
    }
    openStore();
    QList<NoteItemPtr> survivors = store->notes();

    store.reset();
    runEventLoop(20ms);

    // A note that outlives its store has nobody to tell.
    survivors.first()->setSnippet(u"x"_s);
    EXPECT_EQ(survivors.size(), 300);
}

} // namespace quillary::test
