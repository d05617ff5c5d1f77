#include "QuillaryCore/Platform/CreationDate.h"

#include "Tests/Core/Notes/NoteFileStoreTest.h"
#include "Tests/Support/FragileVolume.h"

#include <cerrno>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

class NoteFileStoreNames : public test::NoteFileStoreTest {
protected:
    QByteArray unique(const QString& title, const QString& extension = u"md"_s,
                      const std::optional<QString>& folder = std::nullopt,
                      const std::optional<FilePath>& ignoring = std::nullopt) const {
        return relativePath(store.uniqueURL(title, extension, folder, ignoring));
    }
};

TEST_F(NoteFileStoreNames, NumbersANameThatIsTaken) {
    EXPECT_EQ(unique(u"Nota"_s), "Nota.md");
    directory.write("Nota.md");
    EXPECT_EQ(unique(u"Nota"_s), "Nota 2.md");
    directory.write("Nota 3.md");
    EXPECT_EQ(unique(u"Nota"_s), "Nota 2.md");
    directory.write("Nota 2.md");
    EXPECT_EQ(unique(u"Nota"_s), "Nota 4.md");
    EXPECT_EQ(unique(u"Nota"_s, u"txt"_s), "Nota.txt");
    EXPECT_EQ(unique(u"Nota"_s, u"md"_s, u"Lavoro"_s), "Lavoro/Nota.md");
    EXPECT_EQ(unique(u"Nota 2"_s), "Nota 2 2.md");
    EXPECT_EQ(unique(u"nota"_s), "nota.md") << "to this file system it is another name";
}

TEST_F(NoteFileStoreNames, TakesAnythingThatIsThereForTaken) {
    directory.makeDirectory("a.md");
    directory.makeLink("a 2.md", "absent");
    directory.write("a 3.md");
    EXPECT_EQ(unique(u"a"_s), "a 4.md");
}

TEST_F(NoteFileStoreNames, MakesTitlesSafe) {
    const std::pair<QString, QByteArray> cases[] = {
        {u"a/b:c\\d"_s, "a-b-c-d.md"},
        {u"a\r\nb"_s, "a--b.md"},
        {u"..x"_s, "x.md"},
        {u"..."_s, "Senza titolo.md"},
        {u""_s, "Senza titolo.md"},
        {u"  a  "_s, "a.md"},
        {u"/"_s, "-.md"},
        {QString(200, u'x'), QByteArray(120, 'x') + ".md"},
    };
    for (const auto& [title, name] : cases) {
        EXPECT_EQ(unique(title), name);
        EXPECT_EQ(store.uniqueURL(title, u"md", std::nullopt),
                  directory.path((NoteFileStore::sanitizedTitle(title).isEmpty() ? NoteFileStore::fallbackTitle()
                                                                                 : NoteFileStore::sanitizedTitle(title))
                                     .toUtf8() +
                                 ".md"));
    }
}

TEST_F(NoteFileStoreNames, FitsALongTitleIntoAFileName) {
    const QString flag = u"🇮🇹"_s; // eight bytes
    const auto first = store.createNote(flag.repeated(120), NoteFormat::markdown, u"one", std::nullopt);
    const auto second = store.createNote(flag.repeated(120), NoteFormat::markdown, u"two", std::nullopt);
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->fileName(), QString(flag.repeated(31) + u".md"_s));
    EXPECT_EQ(second->fileName(), QString(flag.repeated(31) + u" 2.md"_s));
    EXPECT_EQ(directory.names().size(), 2);
    const auto renamed = store.rename(*first, u"漢"_s.repeated(120));
    ASSERT_TRUE(renamed);
    EXPECT_EQ(renamed->fileName(), QString(u"漢"_s.repeated(84) + u".md"_s));
}

TEST_F(NoteFileStoreNames, TakesTheIgnoredPathInAnyCase) {
    directory.write("Nota.md");
    EXPECT_EQ(unique(u"Nota"_s, u"md"_s, std::nullopt, directory.path("Nota.md")), "Nota.md");
    EXPECT_EQ(unique(u"Nota"_s, u"md"_s, std::nullopt, directory.path("NOTA.md")), "Nota.md");
    EXPECT_EQ(unique(u"Nota"_s, u"md"_s, std::nullopt, directory.path("Altra.md")), "Nota 2.md");
    EXPECT_EQ(unique(u"Nota"_s, u"md"_s, std::nullopt, directory.path("x/../Nota.md")), "Nota.md");
}

TEST_F(NoteFileStoreNames, RenamesANote) {
    directory.makeDirectory("Lavoro");

    struct Case {
        QByteArray from;
        QString title;
        QByteArray to;
    };

    const Case cases[] = {
        {"a.md", u"b"_s, "b.md"},
        {"x.MD", u"y"_s, "y.MD"},
        {"q.sql", u"r"_s, "r.sql"},
        {"Lavoro/a.md", u"b"_s, "Lavoro/b.md"},
        {"c.md", u"d/e"_s, "d-e.md"},
        {"f.md", u"-rf"_s, "-rf.md"},
        {"g.md", QString(200, u'x'), QByteArray(120, 'x') + ".md"},
        {"caf\xE9.md", u"café"_s, "caf\xC3\xA9.md"},
        {"line\nfeed.md", u"line"_s, "line.md"},
        {QByteArray(252, 'n') + ".md", u"n"_s, "n.md"},
        {"Upper.md", u"upper"_s, "upper.md"},
        {"h.md", FilePath::textFromBytes("h\xE9"), "h\xE9.md"},
    };
    for (const auto& [from, title, to] : cases) {
        const FilePath url = directory.write(from, from);
        EXPECT_EQ(relative(store.rename(url, title)), to);
        EXPECT_FALSE(directory.has(from)) << from.constData();
        EXPECT_EQ(directory.read(to), from);
    }
}

TEST_F(NoteFileStoreNames, NumbersARenamedNoteRatherThanReplaceAnother) {
    const FilePath a = directory.write("a.md", "a");
    directory.write("b.md", "b");
    EXPECT_EQ(relative(store.rename(a, u"b")), "b 2.md");
    EXPECT_EQ(directory.read("b.md"), "b");
    EXPECT_EQ(directory.read("b 2.md"), "a");
}

TEST_F(NoteFileStoreNames, RefusesATitleWithNothingUsable) {
    const FilePath a = directory.write("a.md");
    for (const char16_t* const title : {u"", u"...", u"  ", u" .. "}) {
        const auto refused = store.rename(a, title);
        EXPECT_EQ(ownError(refused), NoteStoreError::invalidName());
        EXPECT_EQ(localizedDescription(refused.error()), u"Il nome non è valido."_s);
    }
    EXPECT_TRUE(directory.has("a.md"));
}

TEST_F(NoteFileStoreNames, TouchesNothingWhenTheTitleStays) {
    const FilePath url = directory.write("Nota.md");
    const FileStatus before = *fileStatus(url);
    EXPECT_EQ(relative(store.rename(url, u"Nota")), "Nota.md");
    EXPECT_EQ(relative(store.rename(url, u" Nota ")), "Nota.md");
    EXPECT_EQ(*fileStatus(url), before);
    const FilePath accent = directory.write("\xC3\xA8.md");
    EXPECT_EQ(store.rename(accent, u"e\u0300").value(), accent) << "composed otherwise it is the same name";
}

TEST_F(NoteFileStoreNames, KeepsTwinsThatDifferInNormalisationApart) {
    const FilePath composed = directory.write("\xC3\xA8.md", "composed");
    const FilePath decomposed = directory.write("e\xCC\x80.md", "decomposed");
    EXPECT_EQ(listed().size(), 2);
    ASSERT_TRUE(store.write(u"one", composed));
    ASSERT_TRUE(store.write(u"two", decomposed));
    EXPECT_EQ(*store.read(composed), u"one"_s);
    EXPECT_EQ(*store.read(decomposed), u"two"_s);
    ASSERT_TRUE(store.rename(composed, u"e\u0300"));
    ASSERT_TRUE(store.changeFormat(decomposed, NoteFormat::plain));
    ASSERT_TRUE(store.changeFormat(composed, NoteFormat::plain));
    EXPECT_EQ(directory.read("\xC3\xA8.txt"), "one");
    EXPECT_EQ(directory.read("e\xCC\x80.txt"), "two");
    ASSERT_TRUE(store.moveToTrash(directory.path("e\xCC\x80.txt")));
    EXPECT_EQ(directory.names(), QList<QByteArray>{"\xC3\xA8.txt"});
}

TEST_F(NoteFileStoreNames, DoesNotReplaceANoteOfTheSameLettersInAnotherCase) {
    const FilePath upper = directory.write("Nota.md", "upper");
    directory.write("nota.md", "lower");
    EXPECT_EQ(systemCode(store.rename(upper, u"nota")), EEXIST);
    EXPECT_EQ(directory.read("Nota.md"), "upper");
    EXPECT_EQ(directory.read("nota.md"), "lower");
}

TEST_F(NoteFileStoreNames, ChangesTheCaseOfANameWhereBothSpellingsAreOne) {
    const TestDirectory shown;
    const test::FragileVolume volume(directory.bytes(), shown.bytes(), {.ignoresCase = true});
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    const FilePath nota = directory.write("Nota.md", "text");
    directory.write("Altra.md", "other");
    directory.makeDirectory("Lavoro");
    ASSERT_TRUE(directory.has("nota.md") && directory.has("LAVORO"));

    EXPECT_EQ(relative(store.rename(nota, u"nota")), "nota.md");
    EXPECT_EQ(store.renameFolder(u"Lavoro"_s, u"lavoro").value(), u"lavoro"_s);
    EXPECT_EQ(shown.names(), (QList<QByteArray>{"Altra.md", "lavoro", "nota.md"}));
    EXPECT_EQ(relative(store.rename(directory.path("nota.md"), u"ALTRA")), "ALTRA 2.md");
    EXPECT_EQ(shown.read("ALTRA 2.md"), "text");
    EXPECT_EQ(shown.read("Altra.md"), "other");
}

TEST_F(NoteFileStoreNames, ChangesTheFormatByTheExtension) {
    directory.makeDirectory("Lavoro");

    struct Case {
        QByteArray from;
        NoteFormat format;
        QByteArray to;
    };

    const Case cases[] = {
        {"a.md", NoteFormat::plain, "a.txt"},
        {"b.log", NoteFormat::plain, "b.log"},
        {"c.tsv", NoteFormat::csv, "c.tsv"},
        {"d.MARKDOWN", NoteFormat::markdown, "d.MARKDOWN"},
        {"e.sql", NoteFormat::json, "e.json"},
        {"Lavoro/f.txt", NoteFormat::html, "Lavoro/f.html"},
        {"g.h.txt", NoteFormat::markdown, "g.h.md"},
        {"i:j.txt", NoteFormat::css, "i-j.css"},
        {"caf\xE9.txt", NoteFormat::php, "caf\xE9.php"},
        {QByteArray(130, 'j') + ".txt", NoteFormat::markdown, QByteArray(120, 'j') + ".md"},
    };
    for (const auto& [from, format, to] : cases) {
        EXPECT_EQ(relative(store.changeFormat(directory.write(from, from), format)), to);
        EXPECT_EQ(directory.read(to), from) << "the contents stay";
    }
    directory.write("k.txt", "taken");
    EXPECT_EQ(relative(store.changeFormat(directory.write("k.md", "k"), NoteFormat::plain)), "k 2.txt");
    EXPECT_EQ(directory.read("k.txt"), "taken");
}

TEST_F(NoteFileStoreNames, MovesANoteBetweenFolders) {
    directory.makeDirectory("Lavoro");
    directory.makeDirectory("Casa");
    FilePath url = directory.write("a.md", "a");
    EXPECT_EQ(store.moveNote(url, std::nullopt).value(), url);
    url = store.moveNote(url, u"Lavoro"_s).value();
    EXPECT_EQ(relativePath(url), "Lavoro/a.md");
    EXPECT_EQ(store.moveNote(url, u"Lavoro"_s).value(), url);
    directory.write("Casa/a.md", "taken");
    url = store.moveNote(url, u"Casa"_s).value();
    EXPECT_EQ(relativePath(url), "Casa/a 2.md");
    url = store.moveNote(url, std::nullopt).value();
    EXPECT_EQ(relativePath(url), "a 2.md");
    EXPECT_EQ(directory.read("Casa/a.md"), "taken");
    EXPECT_EQ(relative(store.moveNote(directory.write("x.MD"), u"Casa"_s)), "Casa/x.MD");
    EXPECT_EQ(relative(store.moveNote(directory.write("p:q.md"), u"Casa"_s)), "Casa/p-q.md");
    EXPECT_EQ(relative(store.moveNote(directory.write(QByteArray(130, 'y') + ".md"), u"Casa"_s)),
              "Casa/" + QByteArray(120, 'y') + ".md");
}

TEST_F(NoteFileStoreNames, TellsFoldersThatDifferInNormalisationApartWhereBothAreThere) {
    directory.makeDirectory("Caffe\xCC\x80");
    FilePath url = directory.write("Caffe\xCC\x80/a.md", "a");
    EXPECT_EQ(store.moveNote(url, u"Caff\u00E8"_s).value(), url);
    directory.makeDirectory("Caff\xC3\xA8");
    url = store.moveNote(url, u"Caff\u00E8"_s).value();
    EXPECT_EQ(relativePath(url), "Caff\xC3\xA8/a.md");
    EXPECT_EQ(directory.read("Caff\xC3\xA8/a.md"), "a");
}

TEST_F(NoteFileStoreNames, MakesNoFolderForAMovedNote) {
    const FilePath url = directory.write("a.md", "a");
    EXPECT_EQ(systemCode(store.moveNote(url, u"absent"_s)), ENOENT);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
    EXPECT_EQ(systemCode(store.moveNote(directory.path("gone.md"), std::nullopt)), 0);
    directory.makeDirectory("Lavoro");
    EXPECT_EQ(systemCode(store.moveNote(directory.path("gone.md"), u"Lavoro"_s)), ENOENT);
}

TEST_F(NoteFileStoreNames, LeavesANoteThatMayNotBeMoved) {
    const FilePath url = directory.write("a.md", "a");
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(store.rename(url, u"b")), EACCES);
        EXPECT_EQ(systemCode(store.changeFormat(url, NoteFormat::json)), EACCES);
        EXPECT_EQ(systemCode(store.moveToTrash(url)), EACCES);
    }
    ::chmod(directory.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("a.md"), "a");
}

TEST_F(NoteFileStoreNames, MovesANoteIntoAFolderOnAnotherFileSystem) {
    const auto disk = test::MountedFileSystem::inMemory("size=1m");
    if (!disk.isMounted()) {
        GTEST_SKIP() << test::noMounts;
    }
    const TestDirectory mounted(disk.path());
    const NoteFileStore parent(FilePath::fromBytes(disk.path()).parent());
    const FilePath url = parent.createNote(u"quillary-test-note", NoteFormat::plain, u"text", std::nullopt).value();
    const Moment modified = parent.info(url)->modified;
    const FilePath moved = parent.moveNote(url, FilePath::fromBytes(disk.path()).fileName()).value();
    EXPECT_EQ(TestDirectory::contentsOf(moved), "text");
    EXPECT_EQ(parent.info(moved)->modified, modified);
    EXPECT_FALSE(fileStatus(url));
    EXPECT_EQ(mounted.names(), QList<QByteArray>{"quillary-test-note.txt"});
}

TEST_F(NoteFileStoreNames, ImportsAForeignFile) {
    const TestDirectory outside;

    struct Case {
        QByteArray from, to;
    };

    const Case cases[] = {
        {"photo.JPG", "photo.txt"},   {"Data.CSV", "Data.csv"},
        {"Report.PDF", "Report.txt"}, {"plain", "plain.txt"},
        {".profile", "profile.txt"},  {"a.tar.gz", "a.tar.txt"},
        {"n:o.md", "n-o.md"},         {"caf\xE9.md", "caf\xE9.md"},
        {"photo.txt", "photo 2.txt"}, {QByteArray(130, 'x') + ".md", QByteArray(120, 'x') + ".md"},
    };
    for (const auto& [from, to] : cases) {
        const QByteArray contents = from + QByteArray("\xFF\0\xFE", 3);
        EXPECT_EQ(relative(store.importFile(outside.write(from, contents))), to);
        EXPECT_EQ(directory.read(to), contents);
        EXPECT_EQ(outside.read(from), contents) << "the source stays";
    }
}

TEST_F(NoteFileStoreNames, CarriesTheDatesOfAnImportAlong) {
    const TestDirectory outside;
    const NoteFileStore other(outside.path());
    const FilePath source = outside.write("a.md", "old");
    const Moment created = other.info(source)->created;
    ASSERT_TRUE(other.write(u"new", source));
    TestDirectory::setTimes(source, 1'000'000'000, 42);
    const FilePath imported = store.importFile(source).value();
    EXPECT_EQ(store.info(imported)->modified.time_since_epoch().count(), 1'000'000'000'000'000'042);
    EXPECT_EQ(store.info(imported)->created, created);
    ASSERT_TRUE(store.write(u"newer", imported));
    EXPECT_EQ(store.info(imported)->created, created);
}

TEST_F(NoteFileStoreNames, ImportsIntoADirectoryThatIsNotThereYet) {
    const NoteFileStore fresh(directory.path("one/two"));
    const FilePath source = directory.write("a.md", "a");
    ASSERT_TRUE(fresh.importFile(source));
    EXPECT_EQ(directory.read("one/two/a.md"), "a");
}

TEST_F(NoteFileStoreNames, ReportsWhatCannotBeImported) {
    const TestDirectory outside;
    EXPECT_EQ(systemCode(store.importFile(outside.path("absent.md"))), ENOENT);
    EXPECT_EQ(systemCode(store.importFile(outside.makeDirectory("d.md"))), EISDIR);
    EXPECT_EQ(systemCode(store.importFile(FilePath::fromBytes("/dev/null"))), EINVAL);
    const FilePath large = outside.write("large.md", QByteArray(100'000, 'x'));
    {
        const test::FileSizeLimit limit(50'000);
        EXPECT_EQ(systemCode(store.importFile(large)), EFBIG);
    }
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
}

} // namespace

} // namespace quillary
