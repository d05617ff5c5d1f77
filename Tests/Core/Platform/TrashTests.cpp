#include "QuillaryCore/Platform/Trash.h"

#include "QuillaryCore/Platform/FileStatus.h"

#include "Tests/Support/SystemConditions.h"
#include "Tests/Support/TestDirectory.h"

#include <QDateTime>

#include <cerrno>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

struct TrashInfo {
    QByteArray path;
    QDateTime date;
};

TrashInfo infoIn(const QByteArray& bytes) {
    const QList<QByteArray> lines = bytes.split('\n');
    EXPECT_EQ(lines.size(), 4) << bytes.constData();
    EXPECT_EQ(lines.value(0), "[Trash Info]");
    EXPECT_TRUE(lines.value(1).startsWith("Path=")) << bytes.constData();
    EXPECT_TRUE(lines.value(2).startsWith("DeletionDate=")) << bytes.constData();
    EXPECT_EQ(lines.value(3), "");
    return {lines.value(1).mid(5),
            QDateTime::fromString(QString::fromLatin1(lines.value(2).mid(13)), u"yyyy-MM-ddTHH:mm:ss"_s)};
}

class Trash : public testing::Test {
protected:
    Trash() { qputenv("XDG_DATA_HOME", data()); }

    ~Trash() override {
        qputenv("XDG_DATA_HOME", m_dataBefore);
        qputenv("HOME", m_homeBefore);
    }

    QByteArray data() const { return home.bytes() + "/.local/share"; }

    const TestDirectory home;
    const TestDirectory notes;

private:
    const QByteArray m_dataBefore = qgetenv("XDG_DATA_HOME");
    const QByteArray m_homeBefore = qgetenv("HOME");
};

TEST_F(Trash, MovesAFileToTheHomeTrashAndMakesItsDirectories) {
    const FilePath note = notes.write("a b.md", "text");
    const qint64 inode = qint64(fileStatus(note)->inode);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-2);
    const auto trashed = trash::moveToTrash(note);
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a b.md");
    EXPECT_EQ(TestDirectory::contentsOf(*trashed), "text");
    EXPECT_EQ(fileStatus(*trashed)->inode, inode);
    EXPECT_FALSE(notes.has("a b.md"));

    const TrashInfo info = infoIn(home.read(".local/share/Trash/info/a b.md.trashinfo"));
    EXPECT_EQ(info.path, notes.bytes() + "/a%20b.md");
    EXPECT_GE(info.date, before);
    EXPECT_LE(info.date, QDateTime::currentDateTime());
    for (const char* const directory :
         {".local", ".local/share", ".local/share/Trash", ".local/share/Trash/files", ".local/share/Trash/info"}) {
        EXPECT_EQ(fileStatus(home.path(directory))->mode & 0077U, 0U) << directory;
    }
}

TEST_F(Trash, WritesThePathPercentEncoded) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"50%.md", "50%25.md"},
        {"a\nb.md", "a%0Ab.md"},
        {"\xC3\xA8.md", "%C3%A8.md"},
        {"caf\xE9.md", "caf%E9.md"},
        {"a=b;c#d?.md", "a%3Db%3Bc%23d%3F.md"},
        {"-._~.md", "-._~.md"},
    };
    for (const auto& [name, encoded] : cases) {
        ASSERT_TRUE(trash::moveToTrash(notes.write(name)));
        EXPECT_EQ(infoIn(home.read(".local/share/Trash/info/" + name + ".trashinfo")).path,
                  notes.bytes() + '/' + encoded);
    }
}

TEST_F(Trash, NumbersWhatHasTheNameOfSomethingInTheTrash) {
    const QByteArray names[] = {"a.md", "a 2.md", "a 3.md"};
    for (const QByteArray& name : names) {
        const auto trashed = trash::moveToTrash(notes.write("a.md", name));
        ASSERT_TRUE(trashed);
        EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/" + name);
        EXPECT_EQ(infoIn(home.read(".local/share/Trash/info/" + name + ".trashinfo")).path, notes.bytes() + "/a.md");
    }
    for (const QByteArray& name : names) {
        EXPECT_EQ(home.read(".local/share/Trash/files/" + name), name);
    }
}

TEST_F(Trash, PassesOverAFileWithoutInformationAndInformationWithoutAFile) {
    home.makeDirectory(".local");
    home.makeDirectory(".local/share");
    home.makeDirectory(".local/share/Trash");
    home.makeDirectory(".local/share/Trash/files");
    home.makeDirectory(".local/share/Trash/info");
    home.write(".local/share/Trash/files/a.md", "orphan");
    home.write(".local/share/Trash/info/a 2.md.trashinfo", "orphan");
    const auto trashed = trash::moveToTrash(notes.write("a.md", "text"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a 3.md");
    EXPECT_EQ(home.read(".local/share/Trash/files/a.md"), "orphan");
    EXPECT_EQ(TestDirectory::namesIn(home.path(".local/share/Trash/info")),
              (QList<QByteArray>{"a 2.md.trashinfo", "a 3.md.trashinfo"}));
}

TEST_F(Trash, TakesADirectoryWithEverythingInIt) {
    const FilePath folder = notes.makeDirectory("Lavoro");
    notes.write("Lavoro/a.md", "a");
    notes.makeDirectory("Lavoro/deep");
    notes.write("Lavoro/deep/.hidden", "h");
    ASSERT_TRUE(trash::moveToTrash(folder));
    EXPECT_FALSE(notes.has("Lavoro"));
    EXPECT_EQ(home.read(".local/share/Trash/files/Lavoro/a.md"), "a");
    EXPECT_EQ(home.read(".local/share/Trash/files/Lavoro/deep/.hidden"), "h");
    EXPECT_EQ(infoIn(home.read(".local/share/Trash/info/Lavoro.trashinfo")).path, notes.bytes() + "/Lavoro");
}

TEST_F(Trash, TakesTheLongestNamesAndShortensThemBetweenCharacters) {
    const QByteArray longest = QByteArray(252, 'n') + ".md";
    const QByteArray accents = "x" + QByteArray("\xC3\xA8").repeated(125) + ".md";
    const QByteArray extension = "x." + QByteArray(253, 'e');
    for (const QByteArray& name : {longest, accents, extension}) {
        for (int i = 0; i < 2; ++i) {
            const auto trashed = trash::moveToTrash(notes.write(name, name));
            ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
            EXPECT_EQ(TestDirectory::contentsOf(*trashed), name);
            EXPECT_EQ(QString::fromUtf8(trashed->bytes()).toUtf8(), trashed->bytes());
            const QByteArray entry = trashed->bytes().mid(trashed->bytes().lastIndexOf('/') + 1);
            EXPECT_EQ(infoIn(home.read(".local/share/Trash/info/" + entry + ".trashinfo")).path,
                      notes.bytes() + '/' + name.toPercentEncoding());
        }
    }
}

TEST_F(Trash, TakesALinkAndNotWhatItLeadsTo) {
    notes.write("target.md", "text");
    ASSERT_TRUE(trash::moveToTrash(notes.makeLink("link.md", notes.bytes() + "/target.md")));
    EXPECT_EQ(notes.names(), QList<QByteArray>{"target.md"});
    EXPECT_EQ(fileStatus(home.path(".local/share/Trash/files/link.md"))->kind, FileKind::symbolicLink);
}

TEST_F(Trash, UsesTheHomeDirectoryWhereNothingElseIsSaid) {
    for (const char* const unusable : {"", "relative/path"}) {
        qputenv("XDG_DATA_HOME", unusable);
        qputenv("HOME", home.bytes());
        const auto trashed = trash::moveToTrash(notes.write("a.md"));
        ASSERT_TRUE(trashed) << unusable;
        EXPECT_TRUE(trashed->bytes().startsWith(QByteArray(home.bytes() + "/.local/share/Trash/files/a")));
    }
}

TEST_F(Trash, GoesByTheDeviceOfTheDirectory) {
    const auto lower = test::MountedFileSystem::inMemory("size=1m");
    const auto upper = test::MountedFileSystem::inMemory("size=1m");
    const TestDirectory below(lower.path());
    below.write("a.md", "text");
    const auto overlay = test::MountedFileSystem::overlayOf(lower.path(), upper.path());
    if (!overlay.isMounted()) {
        GTEST_SKIP() << test::noOverlay;
    }
    const TestDirectory all(overlay.path());
    ASSERT_NE(fileStatus(all.path("a.md"))->device, fileStatus(all.path())->device);
    qputenv("XDG_DATA_HOME", all.makeDirectory("data").bytes());
    const auto trashed = trash::moveToTrash(all.path("a.md"));
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), all.bytes() + "/data/Trash/files/a.md");
    EXPECT_EQ(all.names(), QList<QByteArray>{"data"});
}

TEST_F(Trash, ReportsWhatIsNotThere) {
    EXPECT_EQ(trash::moveToTrash(notes.path("absent.md")).error().code, ENOENT);
    EXPECT_EQ(trash::moveToTrash(notes.path("no/a.md")).error().code, ENOENT);
    if (home.has(".local/share/Trash/info")) {
        EXPECT_EQ(TestDirectory::namesIn(home.path(".local/share/Trash/info")), QList<QByteArray>{});
    }
}

TEST_F(Trash, LeavesNoInformationAboutAFileThatMayNotBeMoved) {
    ::chmod(notes.bytes().constData(), 0755);
    ::chmod(home.bytes().constData(), 0777);
    const FilePath closed = notes.makeDirectory("closed");
    const FilePath note = notes.write("closed/a.md", "text");
    ::chmod(closed.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(trash::moveToTrash(note).error().code, EACCES);
        EXPECT_EQ(TestDirectory::namesIn(home.path(".local/share/Trash/info")), QList<QByteArray>{});
    }
    ::chmod(closed.bytes().constData(), 0755);
    EXPECT_EQ(notes.read("closed/a.md"), "text");
}

class MountTrash : public Trash {
protected:
    void SetUp() override {
        if (!disk.isMounted()) {
            GTEST_SKIP() << test::noMounts;
        }
    }

    const test::MountedFileSystem disk = test::MountedFileSystem::inMemory("size=4m,mode=0755");
    const TestDirectory top{disk.path()};
    const QByteArray user = QByteArray::number(::getuid());
};

TEST_F(MountTrash, IsTheUsersOwnAtTheTopOfTheMount) {
    top.makeDirectory("deep");
    top.makeDirectory("deep/notes");
    const FilePath note = top.write("deep/notes/a b.md", "text");
    const auto trashed = trash::moveToTrash(note);
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), top.bytes() + "/.Trash-" + user + "/files/a b.md");
    EXPECT_EQ(TestDirectory::contentsOf(*trashed), "text");
    EXPECT_EQ(infoIn(top.read(".Trash-" + user + "/info/a b.md.trashinfo")).path, "deep/notes/a%20b.md");
    EXPECT_EQ(fileStatus(top.path(".Trash-" + user))->mode, 0700U);
    EXPECT_FALSE(home.has(".local/share/Trash/files/a b.md"));
}

TEST_F(MountTrash, IsTheSharedOneIfThatIsSafe) {
    top.makeDirectory(".Trash");
    ::chmod(top.path(".Trash").bytes().constData(), 01777);
    const auto trashed = trash::moveToTrash(top.write("a.md"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), top.bytes() + "/.Trash/" + user + "/files/a.md");
    EXPECT_EQ(infoIn(top.read(".Trash/" + user + "/info/a.md.trashinfo")).path, "a.md");
    EXPECT_EQ(fileStatus(top.path(".Trash/" + user))->mode, 0700U);
}

TEST_F(MountTrash, IsNotASharedOneThatAnybodyCouldEmptyOrThatIsALink) {
    top.makeDirectory(".Trash");
    ::chmod(top.path(".Trash").bytes().constData(), 0777);
    ASSERT_TRUE(trash::moveToTrash(top.write("a.md")));
    EXPECT_TRUE(top.has(".Trash-" + user + "/files/a.md"));
    EXPECT_EQ(TestDirectory::namesIn(top.path(".Trash")), QList<QByteArray>{});

    ASSERT_EQ(::rmdir(top.path(".Trash").bytes().constData()), 0);
    top.makeDirectory("elsewhere");
    ::chmod(top.path("elsewhere").bytes().constData(), 01777);
    top.makeLink(".Trash", "elsewhere");
    ASSERT_TRUE(trash::moveToTrash(top.write("b.md")));
    EXPECT_TRUE(top.has(".Trash-" + user + "/files/b.md"));
    EXPECT_EQ(TestDirectory::namesIn(top.path("elsewhere")), QList<QByteArray>{});
}

TEST_F(MountTrash, IsNoLink) {
    top.makeDirectory("elsewhere");
    top.makeLink(".Trash-" + user, "elsewhere");
    const FilePath folder = top.makeDirectory("notes");
    EXPECT_EQ(trash::moveToTrash(folder).error().code, ENOTDIR);
    const auto trashed = trash::moveToTrash(top.write("notes/a.md", "text"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a.md");
    EXPECT_TRUE(top.has("notes"));
    EXPECT_EQ(TestDirectory::namesIn(top.path("elsewhere")), QList<QByteArray>{});
}

TEST_F(MountTrash, IsNoDirectoryOfAnotherUser) {
    if (!test::canMakeFilesOfOthers()) {
        GTEST_SKIP() << test::noOtherOwner;
    }
    const FilePath others = top.makeDirectory(".Trash-" + user);
    ASSERT_EQ(::chown(others.bytes().constData(), 12345, 12345), 0);
    const FilePath folder = top.makeDirectory("notes");
    EXPECT_EQ(trash::moveToTrash(folder).error().code, EACCES);
    const auto trashed = trash::moveToTrash(top.write("notes/a.md", "text"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a.md");
    EXPECT_TRUE(top.has("notes"));
    EXPECT_EQ(TestDirectory::namesIn(others), QList<QByteArray>{});
}

/// A mount whose top belongs to somebody else, and what becomes of a note in a directory on it that is the user's.
class NoMountTrash : public MountTrash {
protected:
    void SetUp() override {
        MountTrash::SetUp();
        if (IsSkipped()) {
            return;
        }
        ::chmod(home.bytes().constData(), 0777);
        ::chmod(folder.bytes().constData(), 0777);
        TestDirectory::setTimes(note, 1'000'000'000, 5);
        ::chmod(top.bytes().constData(), 0555);
    }

    /// That the trash failed without a trace.
    void expectNothingChanged() const {
        EXPECT_EQ(TestDirectory::contentsOf(note), text);
        EXPECT_EQ(top.names(), QList<QByteArray>{"notes"});
        EXPECT_EQ(TestDirectory::namesIn(home.path(".local/share/Trash/info")), QList<QByteArray>{});
        EXPECT_EQ(TestDirectory::namesIn(home.path(".local/share/Trash/files")), QList<QByteArray>{});
    }

    const QByteArray text = QByteArray(10'000, 'x');
    const FilePath folder = top.makeDirectory("notes");
    const FilePath note = top.write("notes/a b.md", text);
};

TEST_F(NoMountTrash, GivesTheHomeTrashACopyOfANote) {
    const test::WithoutPrivileges nobody;
    const auto trashed = trash::moveToTrash(note);
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a b.md");
    EXPECT_EQ(TestDirectory::contentsOf(*trashed), text);
    EXPECT_EQ(fileStatus(*trashed)->modified.time_since_epoch().count(), 1'000'000'000'000'000'005);
    EXPECT_EQ(infoIn(home.read(".local/share/Trash/info/a b.md.trashinfo")).path, top.bytes() + "/notes/a%20b.md");
    EXPECT_EQ(TestDirectory::namesIn(folder), QList<QByteArray>{});
    EXPECT_EQ(top.names(), QList<QByteArray>{"notes"});
}

TEST_F(NoMountTrash, NumbersTheCopyOfANote) {
    const test::WithoutPrivileges nobody;
    ASSERT_TRUE(trash::moveToTrash(note));
    const auto trashed = trash::moveToTrash(top.write("notes/a b.md", "another"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a b 2.md");
    EXPECT_EQ(TestDirectory::contentsOf(*trashed), "another");
}

TEST_F(NoMountTrash, LeavesAFolderWhereItIs) {
    const test::WithoutPrivileges nobody;
    EXPECT_EQ(trash::moveToTrash(folder).error().code, EACCES);
    expectNothingChanged();
}

TEST_F(NoMountTrash, LeavesANoteWhereItIsThatCannotBeCopied) {
    const test::WithoutPrivileges nobody;
    {
        const test::FileSizeLimit limit(5000);
        EXPECT_EQ(trash::moveToTrash(note).error().code, EFBIG);
    }
    expectNothingChanged();
}

TEST_F(NoMountTrash, LeavesANoteWhereItIsThatMayNotBeRemoved) {
    ::chmod(folder.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges nobody;
        EXPECT_EQ(trash::moveToTrash(note).error().code, EACCES);
    }
    ::chmod(folder.bytes().constData(), 0777);
    expectNothingChanged();
}

TEST_F(NoMountTrash, LeavesANoteWhereItIsIfThereIsNoHomeTrashEither) {
    qputenv("XDG_DATA_HOME", "/dev/null/data");
    const test::WithoutPrivileges nobody;
    EXPECT_EQ(trash::moveToTrash(note).error().code, EACCES);
    expectNothingChanged();
}

TEST_F(NoMountTrash, IsWhatANewDirectoryOfAnotherUserIsToo) {
    if (!test::canMakeFilesOfOthers()) {
        GTEST_SKIP() << test::noOtherOwner;
    }
    // As where all files of a mount are the superuser's: what this thread makes isn't the user's own.
    ::chmod(top.bytes().constData(), 0777);
    const test::WithoutPrivileges nobody;
    const auto trashed = trash::moveToTrash(note);
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a b.md");
    EXPECT_EQ(top.names(), QList<QByteArray>{"notes"}) << "and none of it stays";
}

TEST_F(NoMountTrash, IsWhatADirectoryOnAnotherDeviceIsToo) {
    ::chmod(top.bytes().constData(), 0755);
    top.makeDirectory(".Trash-" + user);
    top.makeLink(".Trash-" + user + "/files", notes.bytes());
    const auto trashed = trash::moveToTrash(note);
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), data() + "/Trash/files/a b.md");
    EXPECT_EQ(TestDirectory::namesIn(top.path(".Trash-" + user + "/info")), QList<QByteArray>{});
    EXPECT_EQ(notes.names(), QList<QByteArray>{});
}

TEST_F(MountTrash, IsThatOfTheRealPlaceOfANoteReachedByALink) {
    top.makeDirectory("notes");
    top.write("notes/a.md", "text");
    notes.makeLink("way", top.bytes() + "/notes");
    const auto trashed = trash::moveToTrash(notes.path("way/a.md"));
    ASSERT_TRUE(trashed);
    EXPECT_EQ(trashed->bytes(), top.bytes() + "/.Trash-" + user + "/files/a.md");
    EXPECT_EQ(infoIn(top.read(".Trash-" + user + "/info/a.md.trashinfo")).path, "notes/a.md");
}

TEST_F(MountTrash, ServesASecondViewOfTheHomeDevice) {
    const auto view = test::MountedFileSystem::viewOf(notes.bytes());
    ASSERT_TRUE(view.isMounted());
    const TestDirectory seen(view.path());
    const auto trashed = trash::moveToTrash(seen.write("a.md", "text"));
    ASSERT_TRUE(trashed) << trashed.error().localizedDescription().toStdString();
    EXPECT_EQ(trashed->bytes(), seen.bytes() + "/.Trash-" + user + "/files/a.md");
}

} // namespace

} // namespace quillary
