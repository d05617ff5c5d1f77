#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTimeZone>

namespace quillary::test {

using namespace Qt::StringLiterals;

class NotesStoreFiles : public NotesStoreTest {
protected:
    /// A file outside the notes directory.
    FilePath foreign(const QString& name) const { return FilePath::fromText(outside.filePath(name)); }

    FilePath writeForeign(const QString& name, const QByteArray& bytes) const {
        QFile file(outside.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return foreign(name);
    }

    QByteArray readForeign(const QString& name) const {
        QFile file(outside.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir outside;
};

// A note from the clipboard.

TEST_F(NotesStoreFiles, TheClipboardBecomesANoteOfItsClearFormatInPreview) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    openStore();
    select(u"a"_s);
    desktop.clipboard = u"{\"chiave\": 1}"_s;
    const qint64 focus = store->editorFocusToken();
    const QString before = NoteNaming::defaultTitle(now(), QTimeZone::systemTimeZone());

    store->createNoteFromClipboard();

    const QString after = NoteNaming::defaultTitle(now(), QTimeZone::systemTimeZone());
    const NoteItemPtr made = store->selectedItem();
    EXPECT_TRUE(made->title() == before || made->title() == after) << qPrintable(made->title());
    EXPECT_EQ(made->format(), NoteFormat::json);
    EXPECT_TRUE(made->showsPreview());
    EXPECT_EQ(made->folder(), u"Casa"_s);
    EXPECT_EQ(directory.contents(u"Casa/"_s + made->fileName()), "{\"chiave\": 1}");
    EXPECT_EQ(store->editorFocusToken(), focus + 1);
}

TEST_F(NotesStoreFiles, AClipboardOfNoClearFormatBecomesANoteOfTheUsersFormat) {
    settings.setDefaultFormat(NoteFormat::css);
    openStore();
    desktop.clipboard = u"solo parole"_s;

    store->createNoteFromClipboard();

    const NoteItemPtr made = store->selectedItem();
    EXPECT_EQ(made->format(), NoteFormat::css);
    EXPECT_FALSE(made->showsPreview());
    EXPECT_EQ(made->folder(), std::nullopt);
    EXPECT_EQ(made->document()->text(), u"solo parole");
}

TEST_F(NotesStoreFiles, WithoutDetectionTheClipboardBecomesANoteOfTheUsersFormatWithoutPreview) {
    settings.setAutoDetectFormat(false);
    openStore();
    desktop.clipboard = u"{\"chiave\": 1}"_s;

    store->createNoteFromClipboard();

    EXPECT_EQ(store->selectedItem()->format(), settings.defaultFormat());
    EXPECT_FALSE(store->selectedItem()->showsPreview());
    EXPECT_EQ(store->selectedItem()->document()->text(), u"{\"chiave\": 1}");
}

TEST_F(NotesStoreFiles, AnEmptyClipboardGivesAnEmptyNote) {
    openStore();
    store->detectFormatOf = [](QStringView) -> std::optional<NoteFormat> {
        ADD_FAILURE() << "no text to look at";
        return NoteFormat::php;
    };
    for (const auto& clipboard : {std::optional<QString>(), std::optional(u""_s)}) {
        desktop.clipboard = clipboard;

        store->createNoteFromClipboard();

        EXPECT_EQ(store->selectedItem()->document()->text(), u"");
        EXPECT_EQ(store->selectedItem()->format(), settings.defaultFormat());
        EXPECT_FALSE(store->selectedItem()->showsPreview());
    }
    EXPECT_EQ(store->notes().size(), 2);
}

// Import.

TEST_F(NotesStoreFiles, ImportedFilesAreCopiedAndTheLastOneIsSelected) {
    directory.makeFolder(u"Casa"_s);
    directory.write(u"Casa/a.md"_s);
    directory.write(u"elenco.csv"_s, "x");
    openStore();
    select(u"a"_s);
    store->setSearchQuery(u"a"_s);
    desktop.chosenFiles = {writeForeign(u"zeta.md"_s, "z"), writeForeign(u"foto.JPG"_s, "\xFF\xD8"),
                           writeForeign(u"elenco.CSV"_s, "1;2\r\n")};

    store->importFiles();

    EXPECT_EQ(desktop.panels,
              QList<QStringList>({{u"I file verranno copiati nella cartella delle note."_s, u"Importa"_s}}));
    EXPECT_EQ(directory.contents(u"zeta.md"_s), "z");
    EXPECT_EQ(directory.contents(u"foto.txt"_s), "\xFF\xD8");
    EXPECT_EQ(directory.contents(u"elenco 2.csv"_s), "1;2\r\n");
    EXPECT_EQ(directory.contents(u"elenco.csv"_s), "x");
    EXPECT_EQ(readForeign(u"zeta.md"_s), "z");
    EXPECT_EQ(store->selectedItem()->fileName(), u"elenco 2.csv");
    EXPECT_EQ(store->searchQuery(), u"");
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

TEST_F(NotesStoreFiles, AnImportedFileIsAnotherNoteThanOneOfItsNameThatWentUnseen) {
    directory.write(u"a.md"_s, "via");
    directory.setModified(u"a.md"_s, moment(1));
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    directory.remove(u"a.md"_s);
    desktop.chosenFiles = {writeForeign(u"a.md"_s, "importata")};
    QFile file(foreign(u"a.md"_s).text());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)), QFileDevice::FileModificationTime));

    store->importFiles();

    EXPECT_EQ(store->selectedItem()->document()->text(), u"importata");
}

TEST_F(NotesStoreFiles, ADismissedImportDoesNothing) {
    directory.write(u"a.md"_s);
    openStore();
    store->setSearchQuery(u"a"_s);
    directory.write(u"nuova.md"_s);

    store->importFiles();

    EXPECT_EQ(titles(), QStringList(u"a"_s));
    EXPECT_EQ(store->searchQuery(), u"a"_s);
}

TEST_F(NotesStoreFiles, AFileThatCanNotBeImportedHoldsNoneBackAndOneFailureIsSeen) {
    openStore();
    desktop.chosenFiles = {writeForeign(u"a.md"_s, "a"), foreign(u"manca.md"_s), writeForeign(u"b.md"_s, "b"),
                           foreign(u"pure questa.md"_s)};

    store->importFiles();

    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(store->selectedItem()->title(), u"b");
    EXPECT_EQ(failure(), u"Impossibile importare «pure questa.md».");
    EXPECT_EQ(store->errorMessage()->count(u'\n'), 1);
}

TEST_F(NotesStoreFiles, WhereNothingCouldBeImportedSelectionAndSearchStay) {
    directory.write(u"a.md"_s);
    directory.write(u"b.md"_s);
    openStore();
    select(u"b"_s);
    store->setSearchQuery(u"b"_s);
    desktop.chosenFiles = {foreign(u"manca.md"_s)};

    store->importFiles();

    EXPECT_EQ(store->selectedItem()->title(), u"b");
    EXPECT_EQ(store->searchQuery(), u"b");
    EXPECT_EQ(failure(), u"Impossibile importare «manca.md».");
}

// Save as.

TEST_F(NotesStoreFiles, SavingAsWritesTheTextElsewhereAndLeavesTheNote) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"perch\u00E9\r\n"_s);
    desktop.chosenDestination = foreign(u"copia.txt"_s);

    store->saveSelectedAs();

    EXPECT_EQ(desktop.panels, QList<QStringList>{{u"a.md"_s}});
    EXPECT_EQ(readForeign(u"copia.txt"_s), "perch\xC3\xA9\r\n");
    EXPECT_EQ(a->url(), directory.path(u"a.md"_s));
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(directory.contents(u"a.md"_s), "prima");
    EXPECT_EQ(titles(), QStringList(u"a"_s));
}

TEST_F(NotesStoreFiles, SavingAsReplacesAFileInOneStep) {
    directory.write(u"a.md"_s, "nuovo");
    openStore();
    desktop.chosenDestination = writeForeign(u"copia.txt"_s, "un testo vecchio e lungo");
    const auto before = fileStatus(foreign(u"copia.txt"_s));

    store->saveSelectedAs();

    EXPECT_EQ(readForeign(u"copia.txt"_s), "nuovo");
    EXPECT_FALSE(fileStatus(foreign(u"copia.txt"_s))->isSameFile(*before));
}

TEST_F(NotesStoreFiles, SavingAsNeedsALoadedNoteAndADestination) {
    directory.write(u"a.md"_s);
    openStore();

    store->saveSelectedAs();
    EXPECT_EQ(desktop.panels.size(), 1);

    store->setSelectedID(std::nullopt);
    desktop.chosenDestination = foreign(u"copia.txt"_s);
    store->saveSelectedAs();
    EXPECT_EQ(desktop.panels.size(), 1);
    EXPECT_FALSE(QFile::exists(outside.filePath(u"copia.txt"_s)));
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(NotesStoreFiles, ADestinationThatCanNotBeWrittenIsReportedByItsName) {
    directory.write(u"a.md"_s);
    openStore();
    desktop.chosenDestination = foreign(u"manca/copia.txt"_s);

    store->saveSelectedAs();

    EXPECT_EQ(failure(), u"Impossibile salvare «copia.txt».");
}

TEST_F(NotesStoreFiles, ANoteThatGoesDuringThePanelIsStillWrittenElsewhere) {
    directory.write(u"a.md"_s, "testo");
    openStore();
    desktop.chosenDestination = foreign(u"copia.txt"_s);
    desktop.duringPanel = [this] {
        directory.remove(u"a.md"_s);
        store->refreshFromDisk();
    };

    store->saveSelectedAs();

    EXPECT_TRUE(store->notes().isEmpty());
    EXPECT_EQ(readForeign(u"copia.txt"_s), "testo");
}

// JSON.

TEST_F(NotesStoreFiles, JSONIsWrittenOverSeveralLinesOrInOne) {
    directory.write(u"a.json"_s, R"({"b": [1, 2], "a": {}})");
    openStore();
    const NoteItemPtr a = note(u"a"_s);

    store->reformatJSON(true);
    EXPECT_EQ(a->document()->text(), u"{\n  \"b\": [\n    1,\n    2\n  ],\n  \"a\": {}\n}");
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->revision(), 1);

    store->reformatJSON(false);
    EXPECT_EQ(a->document()->text(), uR"({"b":[1,2],"a":{}})");
    EXPECT_EQ(store->selectedID(), a->id());
}

TEST_F(NotesStoreFiles, JSONThatHasItsFormAlreadyChangesOnlyTheFormatOfItsNote) {
    directory.write(u"a.txt"_s, "[1]");
    openStore();
    const NoteItemPtr a = note(u"a"_s);

    store->reformatJSON(false);

    EXPECT_EQ(a->format(), NoteFormat::json);
    EXPECT_EQ(a->revision(), 0);
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(directory.contents(u"a.json"_s), "[1]");
    EXPECT_FALSE(directory.exists(u"a.txt"_s));
}

TEST_F(NotesStoreFiles, JSONInAnotherNoteIsWrittenAndMakesItAJSONNote) {
    directory.write(u"a.md"_s, "[1, 2]");
    openStore();

    store->reformatJSON(false);

    EXPECT_EQ(note(u"a"_s)->format(), NoteFormat::json);
    EXPECT_EQ(directory.contents(u"a.json"_s), "[1,2]");
}

TEST_F(NotesStoreFiles, ATextThatIsNoJSONIsReportedAndStays) {
    directory.write(u"a.md"_s, "[1,\n 2");
    openStore();

    store->reformatJSON(true);

    EXPECT_EQ(store->errorMessage(), u"Il testo non è un JSON valido.\nRiga 2, colonna 3: Attesa «,» oppure «]»"_s);
    EXPECT_EQ(note(u"a"_s)->document()->text(), u"[1,\n 2");
    EXPECT_EQ(note(u"a"_s)->format(), NoteFormat::markdown);
}

TEST_F(NotesStoreFiles, ReformattingWithoutASelectedTextDoesNothing) {
    directory.write(u"a.json"_s, "[1, 2]");
    openStore();
    store->setSelectedID(std::nullopt);

    store->reformatJSON(false);

    EXPECT_EQ(note(u"a"_s)->document()->text(), u"[1, 2]");
    EXPECT_EQ(store->errorMessage(), std::nullopt);
}

// The clipboard.

TEST_F(NotesStoreFiles, CopyingPutsTheWholeTextOnTheClipboard) {
    directory.write(u"a.md"_s, "riga\r\n\xC2\xA0"
                               "fine\xE2\x80\xA8");
    openStore();
    desktop.clipboard = u"vecchio"_s;

    store->copySelectedContent();
    EXPECT_EQ(desktop.clipboard, u"riga\r\n\u00A0fine\u2028");

    store->setSelectedID(std::nullopt);
    desktop.clipboard = u"altro"_s;
    store->copySelectedContent();
    EXPECT_EQ(desktop.clipboard, u"altro");
}

} // namespace quillary::test
