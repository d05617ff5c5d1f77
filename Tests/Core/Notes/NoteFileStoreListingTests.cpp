#include "Tests/Core/Notes/NoteFileStoreTest.h"
#include "Tests/Support/FragileVolume.h"

#include <cerrno>
#include <sys/socket.h>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

class NoteFileStoreListing : public test::NoteFileStoreTest {};

TEST_F(NoteFileStoreListing, StandardizesItsDirectory) {
    const NoteFileStore winding(FilePath::fromBytes(directory.bytes() + "/./x/..//"));
    EXPECT_EQ(winding.directory(), directory.path());
    EXPECT_EQ(winding.folderURL(u"Lavoro"), directory.path("Lavoro"));
}

TEST_F(NoteFileStoreListing, FindsNotesByExtensionAtTheTopAndInFolders) {
    directory.write("a.md");
    directory.write("b.MD");
    directory.write("c.sql");
    directory.write("d.TxT");
    directory.write("e.tar.json");
    directory.write("noextension");
    directory.write("f.rtf");
    directory.write("g.");
    directory.write("md");
    directory.write("h.md~");
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/i.css");
    directory.write("Lavoro/j.pdf");
    EXPECT_EQ(listed(), (QList<QByteArray>{"Lavoro/i.css", "a.md", "b.MD", "c.sql", "d.TxT", "e.tar.json"}));
}

TEST_F(NoteFileStoreListing, TakesEveryRecognisedExtension) {
    QList<QByteArray> names;
    for (const QString& extension : recognizedExtensions()) {
        names.append("note." + extension.toUtf8());
        directory.write(names.last());
    }
    // The lower case of the Kelvin sign is an ordinary k.
    names.append("note.m\xE2\x84\xAA"
                 "d");
    directory.write(names.last());
    for (const char* const other :
         {"note.m", "note.mdx", "note.txtt", "note.verylongextension", "note.m4", "note.c++"}) {
        directory.write(other);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(listed(), names);
}

TEST_F(NoteFileStoreListing, ListsTheTopFirst) {
    for (int folder = 0; folder < 5; ++folder) {
        const QByteArray name = "folder" + QByteArray::number(folder);
        directory.makeDirectory(name);
        directory.write(name + "/a.md");
        directory.write(QByteArray::number(folder) + ".md");
    }
    const auto notes = store.listNotes();
    ASSERT_TRUE(notes);
    ASSERT_EQ(notes->size(), 10);
    for (qsizetype i = 0; i < 10; ++i) {
        EXPECT_EQ(notes->at(i).folder.has_value(), i >= 5) << i;
    }
}

TEST_F(NoteFileStoreListing, PassesOverHiddenEntriesLinksPackagesAndWhatLiesDeeper) {
    directory.write("a.md");
    directory.write(".secret.md");
    directory.write(".md");
    directory.makeDirectory(".git");
    directory.write(".git/b.md");
    directory.makeDirectory("directory.md");
    directory.makeLink("link.md", "a.md");
    directory.makeDirectory("Lavoro");
    directory.makeDirectory("Lavoro/deeper");
    directory.write("Lavoro/deeper/c.md");
    directory.write("Lavoro/.hidden.md");
    directory.makeLink("LinkedFolder", "Lavoro");
    ASSERT_EQ(::mkfifo(directory.path("pipe.md").bytes().constData(), 0600), 0);
    for (const char* const package : {"x.app", "x.APP", "y.bundle", "z.Framework", "w.rtfd"}) {
        directory.makeDirectory(package);
        directory.write(QByteArray(package) + "/d.md");
    }
    EXPECT_EQ(listed(), QList<QByteArray>{"a.md"});
    EXPECT_EQ(folders(), (QStringList{u"Lavoro"_s, u"directory.md"_s}));
}

TEST_F(NoteFileStoreListing, ALookAtTheDirectoryGivesTheFoldersAndTheNotesThatEachGivesAlone) {
    for (const char* const folder : {"Lavoro", "vuota", "casa.md", ".nascosta", "Pacchetto.app", "not\xFFutf8"}) {
        directory.makeDirectory(folder);
    }
    for (const char* const note : {"a.md", "Lavoro/b.txt", "casa.md/c.json", ".nascosta/d.md", "Pacchetto.app/e.md"}) {
        directory.write(note);
    }
    const auto listing = store.list();
    const auto folders = store.listFolders();
    const auto notes = store.listNotes();
    ASSERT_TRUE(listing && folders && notes);
    EXPECT_EQ(listing->folders.size(), 4);
    EXPECT_EQ(listing->folders, *folders);
    EXPECT_EQ(listing->notes.size(), 3);
    EXPECT_EQ(listing->notes, *notes);

    const auto failed = NoteFileStore(directory.path("a.md")).list();
    ASSERT_FALSE(failed);
    EXPECT_EQ(localizedDescription(failed.error()), localizedDescription(FileError(SystemError{ENOTDIR})));
}

TEST_F(NoteFileStoreListing, AsksForTheKindOfAnEntryThatTheVolumeDoesNotTellWithItsName) {
    const TestDirectory shown;
    shown.write("a.md");
    shown.makeDirectory("directory.md");
    shown.makeLink("link.md", "a.md");
    shown.makeDirectory("Lavoro");
    shown.write("Lavoro/b.md");
    shown.makeLink("LinkedFolder", "Lavoro");
    shown.makeDirectory("x.app");
    shown.makeDirectory(".git");
    const test::FragileVolume volume(directory.bytes(), shown.bytes(), {.tellsKinds = false});
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    EXPECT_EQ(listed(), (QList<QByteArray>{"Lavoro/b.md", "a.md"}));
    EXPECT_EQ(folders(), (QStringList{u"Lavoro"_s, u"directory.md"_s}));
    EXPECT_EQ(store.list()->folders, *store.listFolders());
}

TEST_F(NoteFileStoreListing, TakesDirectoriesForFoldersWhoseNamesOnlyResembleAPackage) {
    for (const char* const name : {"app", "x.apps", "x.app.d", "bundle", "myrtfd", "x. app"}) {
        directory.makeDirectory(name);
    }
    EXPECT_EQ(folders().size(), 6);
}

TEST_F(NoteFileStoreListing, GivesTheFactsOfEachNote) {
    directory.makeDirectory("Lavoro");
    directory.write("a.md", "12345");
    directory.write("Lavoro/b.md", "");
    TestDirectory::setTimes(directory.path("a.md"), 1'000'000'000, 123'456'789);
    const auto notes = store.listNotes();
    ASSERT_TRUE(notes);
    ASSERT_EQ(notes->size(), 2);
    const NoteFileInfo& a = notes->at(0);
    EXPECT_EQ(a.url, directory.path("a.md"));
    EXPECT_EQ(a.size, 5);
    EXPECT_EQ(a.modified.time_since_epoch().count(), 1'000'000'000'123'456'789);
    EXPECT_EQ(a.created, fileStatus(a.url)->born.value_or(distantPast));
    EXPECT_EQ(a.folder, std::nullopt);
    EXPECT_EQ(notes->at(1).folder, u"Lavoro"_s);
    EXPECT_EQ(notes->at(1).size, 0);
    for (const NoteFileInfo& note : *notes) {
        const auto single = store.info(note.url);
        ASSERT_TRUE(single);
        EXPECT_EQ(*single, note);
    }
}

TEST_F(NoteFileStoreListing, GivesTheCreationDateOfASavedNote) {
    const FilePath url = directory.write("a.md");
    const Moment created = store.info(url)->created;
    ASSERT_TRUE(store.write(u"text", url));
    EXPECT_EQ(store.listNotes()->first().created, created);
}

TEST_F(NoteFileStoreListing, ShowsEveryNameThatIsOnTheDisk) {
    const QList<QByteArray> names = {
        "-rf.md", "a\nb.md",         "caf\xE9.md", "e\xCC\x80.md", "\xC3\xA8.md", QByteArray(252, 'n') + ".md",
        " .md",   "\xEF\xBB\xBF.md", "*?<>|\".md", "\\.md",        "a:b.md",
    };
    QList<QByteArray> expected = names;
    std::sort(expected.begin(), expected.end());
    for (const QByteArray& name : names) {
        directory.write(name, name);
    }
    EXPECT_EQ(listed(), expected);
    const auto notes = store.listNotes();
    ASSERT_TRUE(notes);
    for (const NoteFileInfo& note : *notes) {
        const auto text = store.read(note.url);
        ASSERT_TRUE(text);
        EXPECT_EQ(*text, note.url.bytes().endsWith("\xE9.md")
                             ? u"café.md"_s
                             : QString::fromUtf8(relativePath(note.url)).remove(u'\uFEFF'));
    }
}

TEST_F(NoteFileStoreListing, ShowsFoldersWhoseNamesAreNoText) {
    directory.makeDirectory("caf\xE9");
    directory.write("caf\xE9/a.md", "text");
    ASSERT_EQ(folders().size(), 1);
    const QString name = folders().first();
    EXPECT_EQ(store.folderURL(name), directory.path("caf\xE9"));
    EXPECT_EQ(listed(), QList<QByteArray>{"caf\xE9/a.md"});
    EXPECT_EQ(store.folder(directory.path("caf\xE9/a.md")), name);
}

TEST_F(NoteFileStoreListing, TellsTheFolderByTheParentAlone) {
    EXPECT_EQ(store.folder(directory.path("a.md")), std::nullopt);
    EXPECT_EQ(store.folder(directory.path("./x/../a.md")), std::nullopt);
    EXPECT_EQ(store.folder(directory.path("Lavoro/a.md")), u"Lavoro"_s);
    EXPECT_EQ(store.folder(directory.path("Lavoro/deeper/a.md")), u"deeper"_s);
    EXPECT_EQ(store.folder(FilePath::fromBytes("/elsewhere/a.md")), u"elsewhere"_s);
}

TEST_F(NoteFileStoreListing, RefusesTheFactsOfWhatIsNoOrdinaryFile) {
    directory.write("a.md");
    directory.makeDirectory("d.md");
    directory.makeLink("l.md", "a.md");
    EXPECT_EQ(systemCode(store.info(directory.path("absent.md"))), ENOENT);
    EXPECT_EQ(systemCode(store.info(directory.path("d.md"))), EISDIR);
    EXPECT_EQ(systemCode(store.info(directory.path("l.md"))), ELOOP);
    EXPECT_EQ(systemCode(store.info(FilePath::fromBytes("/dev/null"))), EINVAL);
}

TEST_F(NoteFileStoreListing, ReportsADirectoryThatCannotBeListed) {
    const NoteFileStore absent(directory.path("absent"));
    EXPECT_EQ(systemCode(absent.listNotes()), ENOENT);
    EXPECT_EQ(systemCode(absent.listFolders()), ENOENT);
    const NoteFileStore file(directory.write("file"));
    EXPECT_EQ(systemCode(file.listNotes()), ENOTDIR);
    EXPECT_EQ(systemCode(file.listFolders()), ENOTDIR);
    const auto error = absent.listNotes();
    EXPECT_EQ(localizedDescription(error.error()), qt_error_string(ENOENT));
}

TEST_F(NoteFileStoreListing, LeavesOutAFolderThatCannotBeListed) {
    ::chmod(directory.bytes().constData(), 0755);
    directory.write("a.md");
    directory.makeDirectory("closed");
    directory.write("closed/b.md");
    directory.makeDirectory("open");
    directory.write("open/c.md");
    ::chmod(directory.path("closed").bytes().constData(), 0000);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(listed(), (QList<QByteArray>{"a.md", "open/c.md"}));
        EXPECT_EQ(folders(), (QStringList{u"closed"_s, u"open"_s}));
    }
    ::chmod(directory.path("closed").bytes().constData(), 0755);
}

TEST_F(NoteFileStoreListing, LeavesOutNotesWhoseFactsCannotBeRead) {
    // A directory that may be listed but not searched gives names only.
    ::chmod(directory.bytes().constData(), 0755);
    directory.write("a.md");
    directory.makeDirectory("names");
    directory.write("names/b.md");
    ::chmod(directory.path("names").bytes().constData(), 0444);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(listed(), QList<QByteArray>{"a.md"});
    }
    ::chmod(directory.path("names").bytes().constData(), 0755);
}

TEST_F(NoteFileStoreListing, MakesTheDirectoryAndThoseAboveIt) {
    const NoteFileStore deep(directory.path("one/two/three"));
    ASSERT_TRUE(deep.ensureDirectoryExists());
    ASSERT_TRUE(deep.ensureDirectoryExists());
    EXPECT_TRUE(deep.listNotes()->isEmpty());
    directory.write("file");
    EXPECT_EQ(systemCode(NoteFileStore(directory.path("file")).ensureDirectoryExists()), ENOTDIR);
    EXPECT_EQ(systemCode(NoteFileStore(directory.path("file/below")).ensureDirectoryExists()), ENOTDIR);
    directory.makeDirectory("real");
    EXPECT_TRUE(NoteFileStore(directory.makeLink("way", "real")).ensureDirectoryExists());
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(NoteFileStore(directory.path("new")).ensureDirectoryExists()), EACCES);
    }
    ::chmod(directory.bytes().constData(), 0755);
}

TEST_F(NoteFileStoreListing, KeepsYoungHiddenFilesOfOtherProcesses) {
    directory.write(".quillary-abc.tmp", "text that a running process is saving");
    EXPECT_EQ(listed(), QList<QByteArray>{});
    EXPECT_TRUE(directory.has(".quillary-abc.tmp"));
}

} // namespace

} // namespace quillary
