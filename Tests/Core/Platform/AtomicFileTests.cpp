#include "QuillaryCore/Platform/AtomicFile.h"

#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/UTF8Writer.h"

#include "Tests/Support/FragileVolume.h"
#include "Tests/Support/SystemConditions.h"
#include "Tests/Support/TestDirectory.h"

#include <cerrno>
#include <sys/file.h>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

/// The system's form of an access control list that names a user beside the owner.
QByteArray accessControlList(quint16 named) {
    struct Entry {
        quint16 tag, rights;
        quint32 user;
    };

    constexpr quint32 version = 2;
    constexpr quint32 nobody = 0xFFFFFFFF;
    // In the order of linux/posix_acl.h: owner, one user, owning group, mask, all others.
    const Entry entries[] = {
        {0x01, 7, nobody}, {0x02, named, ::geteuid()}, {0x04, 0, nobody}, {0x10, 6, nobody}, {0x20, 0, nobody}};
    QByteArray bytes(reinterpret_cast<const char*>(&version), sizeof version);
    return bytes.append(reinterpret_cast<const char*>(entries), sizeof entries);
}

/// What a test that is skipped says.
constexpr const char* noAccessLists =
    "the temporary directory keeps no access control lists: set TMPDIR to one on ext4, XFS or Btrfs (without noacl)";
constexpr char accessList[] = "system.posix_acl_access";
constexpr char listOfNewFiles[] = "system.posix_acl_default";

class AtomicFileTest : public testing::TestWithParam<AtomicFile::Waiting> {
protected:
    static Result<AtomicFile, SystemError> open(const FilePath& path) { return AtomicFile::open(path, GetParam()); }

    static Result<AtomicFile, SystemError> openNew(const FilePath& path) {
        return AtomicFile::openNew(path, GetParam());
    }

    static Result<FileStatus, SystemError> replaceContents(const FilePath& path, const QByteArray& contents) {
        auto file = open(path);
        if (!file) {
            return file.error();
        }
        if (const auto written = file->write(contents); !written) {
            return written.error();
        }
        return file->replace();
    }
};

INSTANTIATE_TEST_SUITE_P(Waiting, AtomicFileTest,
                         testing::Values(AtomicFile::Waiting::withoutName, AtomicFile::Waiting::underHiddenName),
                         [](const auto& waiting) {
                             return waiting.param == AtomicFile::Waiting::withoutName ? "WithoutName"
                                                                                      : "UnderHiddenName";
                         });

TEST_P(AtomicFileTest, MakesAFileWhereThereIsNone) {
    const TestDirectory directory;
    const mode_t mask = ::umask(0027);
    const auto status = replaceContents(directory.path("a.md"), "new");
    ::umask(mask);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->size, 3);
    EXPECT_EQ(status->mode, 0640U);
    EXPECT_EQ(directory.read("a.md"), "new");
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(AtomicFileTest, PutsAWholeNewFileInTheOldOnesPlace) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    const int reader = ::open(path.bytes().constData(), O_RDONLY | O_CLOEXEC);
    const quint64 inode = fileStatus(path)->inode;

    const auto status = replaceContents(path, "new");
    ASSERT_TRUE(status);
    EXPECT_NE(status->inode, inode);
    EXPECT_EQ(*fileStatus(path), *status);
    EXPECT_EQ(directory.read("a.md"), "new");

    char bytes[8];
    EXPECT_EQ(::read(reader, bytes, sizeof bytes), 3) << "who has the old file open goes on reading it";
    EXPECT_EQ(QByteArray(bytes, 3), "old");
    ::close(reader);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(AtomicFileTest, ShowsNothingOfTheNewContentsBeforeTheEnd) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    auto file = open(path);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write(QByteArray(1'000'000, 'x')));
    EXPECT_EQ(directory.read("a.md"), "old");
    for (const QByteArray& name : directory.names()) {
        EXPECT_TRUE(name == "a.md" || name.startsWith('.')) << name.constData();
    }
}

TEST_P(AtomicFileTest, LeavesNothingBehindWhenDropped) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    {
        auto file = open(path);
        ASSERT_TRUE(file);
        ASSERT_TRUE(file->write("half"));
    }
    EXPECT_EQ(directory.read("a.md"), "old");
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(AtomicFileTest, KeepsModeAndExtendedAttributes) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    for (const mode_t mode : {0600, 0640, 0666, 0755}) {
        ::chmod(path.bytes().constData(), mode);
        ASSERT_TRUE(replaceContents(path, "new"));
        EXPECT_EQ(fileStatus(path)->mode, mode);
    }
    if (!TestDirectory::setAttribute(path, "user.tags", "red\0blue")) {
        GTEST_SKIP() << test::noAttributes;
    }
    TestDirectory::setAttribute(path, "user.empty", "");
    TestDirectory::setAttribute(path, "user.long", QByteArray(1000, 'x'));
    ASSERT_TRUE(replaceContents(path, "newer"));
    EXPECT_EQ(TestDirectory::attribute(path, "user.tags"), "red\0blue");
    EXPECT_EQ(TestDirectory::attribute(path, "user.long"), QByteArray(1000, 'x'));
    EXPECT_EQ(TestDirectory::attribute(path, "user.empty"), "");
    EXPECT_FALSE(TestDirectory::attribute(path, "user.empty").isNull());
}

TEST_P(AtomicFileTest, GivesNobodyRightsToAPrivateFileThatNewFilesOfItsDirectoryGive) {
    const TestDirectory directory;
    const FilePath privateFile = directory.write("private.md", "old");
    ::chmod(privateFile.bytes().constData(), 0640);
    const FilePath sharedFile = directory.write("shared.md", "old");
    const QByteArray own = accessControlList(4);
    if (!TestDirectory::setAttribute(sharedFile, accessList, own) ||
        !TestDirectory::setAttribute(directory.path(), listOfNewFiles, accessControlList(6))) {
        GTEST_SKIP() << noAccessLists;
    }
    ASSERT_TRUE(replaceContents(privateFile, "new"));
    EXPECT_TRUE(TestDirectory::attribute(privateFile, accessList).isNull());
    EXPECT_EQ(fileStatus(privateFile)->mode, 0640U);
    ASSERT_TRUE(replaceContents(sharedFile, "new"));
    EXPECT_EQ(TestDirectory::attribute(sharedFile, accessList), own);

    ASSERT_TRUE(replaceContents(directory.path("fresh.md"), "new"));
    EXPECT_FALSE(TestDirectory::attribute(directory.path("fresh.md"), accessList).isNull());
}

TEST_P(AtomicFileTest, KeepsTheOwner) {
    if (!test::canMakeFilesOfOthers()) {
        GTEST_SKIP() << test::noOtherOwner;
    }
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    ASSERT_EQ(::chown(path.bytes().constData(), 12345, 23456), 0);
    ::chmod(path.bytes().constData(), 0640);
    const auto status = replaceContents(path, "new");
    ASSERT_TRUE(status);
    EXPECT_EQ(status->owner, 12345U);
    EXPECT_EQ(status->group, 23456U);
    EXPECT_EQ(status->mode, 0640U);
}

TEST_P(AtomicFileTest, GivesAForeignGroupsRightsToNoOtherGroup) {
    if (!test::canMakeFilesOfOthers()) {
        GTEST_SKIP() << test::noOtherOwner;
    }
    const TestDirectory directory;
    ::chmod(directory.bytes().constData(), 0777);
    const FilePath path = directory.write("a.md", "old");
    ASSERT_EQ(::chown(path.bytes().constData(), 12345, 23456), 0);
    ::chmod(path.bytes().constData(), 0666 | 0070);
    const test::WithoutPrivileges user;
    const auto status = replaceContents(path, "new");
    ASSERT_TRUE(status);
    EXPECT_EQ(status->owner, test::WithoutPrivileges::nobody);
    EXPECT_EQ(status->mode, 0666U);
}

TEST_P(AtomicFileTest, TakesALongNameAndAnyBytes) {
    const TestDirectory directory;
    const QByteArray names[] = {QByteArray(252, 'n') + ".md",
                                "-rf.md",
                                "a\nb.md",
                                "caf\xE9.md",
                                "\xC3\xA8.md",
                                "e\xCC\x80.md",
                                ".hidden.md",
                                " .md"};
    for (const QByteArray& name : names) {
        const FilePath path = directory.write(name, "old");
        ASSERT_TRUE(replaceContents(path, "new " + name)) << name.constData();
        EXPECT_EQ(directory.read(name), "new " + name);
    }
    EXPECT_EQ(directory.names().size(), 8);
}

TEST_P(AtomicFileTest, RefusesWhatIsNoOrdinaryFile) {
    const TestDirectory directory;
    directory.write("target.md", "target");
    directory.makeDirectory("directory.md");
    directory.makeLink("link.md", "target.md");
    directory.makeLink("nowhere.md", "absent.md");
    ASSERT_EQ(::mkfifo(directory.path("pipe.md").bytes().constData(), 0600), 0);
    const QList<QByteArray> names = directory.names();
    const std::pair<const char*, int> cases[] = {
        {"directory.md", EISDIR}, {"link.md", ELOOP},  {"nowhere.md", ELOOP},
        {"pipe.md", EINVAL},      {"no/a.md", ENOENT}, {"target.md/a.md", ENOTDIR},
    };
    for (const auto& [name, code] : cases) {
        const auto refused = replaceContents(directory.path(name), "new");
        ASSERT_FALSE(refused) << name;
        EXPECT_EQ(refused.error().code, code) << name;
    }
    EXPECT_EQ(directory.read("target.md"), "target");
    EXPECT_EQ(directory.names(), names);
    EXPECT_EQ(open(directory.path(QByteArray(256, 'x'))).error().code, ENAMETOOLONG);
}

TEST_P(AtomicFileTest, RefusesAFileAndADirectoryThatMayNotBeWritten) {
    const TestDirectory directory;
    ::chmod(directory.bytes().constData(), 0777);
    const FilePath file = directory.write("readonly.md", "old");
    ::chmod(file.bytes().constData(), 0444);
    const FilePath closed = directory.makeDirectory("closed");
    const FilePath inside = directory.write("closed/a.md", "old");
    ::chmod(inside.bytes().constData(), 0666);
    ::chmod(closed.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(replaceContents(file, "new").error().code, EACCES);
        EXPECT_EQ(replaceContents(inside, "new").error().code, EACCES);
        EXPECT_EQ(replaceContents(closed.appending(u"b.md"), "new").error().code, EACCES);
    }
    ::chmod(closed.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("readonly.md"), "old");
    EXPECT_EQ(TestDirectory::namesIn(closed), QList<QByteArray>{"a.md"});
    EXPECT_EQ(directory.read("closed/a.md"), "old");
}

TEST_P(AtomicFileTest, SavesInADirectoryThatMayNotBeListed) {
    const TestDirectory directory;
    ::chmod(directory.bytes().constData(), 0755);
    const FilePath blind = directory.makeDirectory("blind");
    const FilePath path = directory.write("blind/a.md", "old");
    ::chmod(path.bytes().constData(), 0666);
    ::chmod(blind.bytes().constData(), 0333);
    {
        const test::WithoutPrivileges user;
        EXPECT_TRUE(replaceContents(path, "new"));
    }
    ::chmod(blind.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("blind/a.md"), "new");
}

TEST_P(AtomicFileTest, LeavesTheOldFileWholeWhenAFileMayNotGrow) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    {
        const test::FileSizeLimit limit(100'000);
        EXPECT_EQ(replaceContents(path, QByteArray(1'000'000, 'x')).error().code, EFBIG);
        EXPECT_EQ(replaceContents(directory.path("b.md"), QByteArray(1'000'000, 'x')).error().code, EFBIG);
    }
    EXPECT_EQ(directory.read("a.md"), "old");
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(AtomicFileTest, LeavesTheOldFileWholeOnAFullDisk) {
    const auto disk = test::MountedFileSystem::inMemory("size=1m");
    if (!disk.isMounted()) {
        GTEST_SKIP() << test::noMounts;
    }
    const TestDirectory directory(disk.path());
    const QByteArray old(300'000, 'o');
    const FilePath path = directory.write("a.md", old);
    EXPECT_EQ(replaceContents(path, QByteArray(900'000, 'x')).error().code, ENOSPC);
    EXPECT_EQ(directory.read("a.md"), old);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
    EXPECT_TRUE(replaceContents(path, QByteArray(500'000, 'x')));
    EXPECT_EQ(directory.read("a.md").size(), 500'000);
}

TEST_P(AtomicFileTest, RefusesAReadOnlyFileSystem) {
    const auto disk = test::MountedFileSystem::inMemory("size=1m,ro");
    if (!disk.isMounted()) {
        GTEST_SKIP() << test::noMounts;
    }
    EXPECT_EQ(replaceContents(TestDirectory(disk.path()).path("a.md"), "new").error().code, EROFS);
}

TEST_P(AtomicFileTest, CreatesOnlyWhereNothingIs) {
    const TestDirectory directory;
    {
        auto file = openNew(directory.path("a.md"));
        ASSERT_TRUE(file && file->write("new"));
        directory.write("a.md", "another program's");
        EXPECT_EQ(file->create().error().code, EEXIST);
    }
    EXPECT_EQ(directory.read("a.md"), "another program's");

    directory.makeDirectory("directory");
    directory.makeLink("link", "absent");
    for (const char* const name : {"a.md", "directory", "link"}) {
        auto taken = openNew(directory.path(name));
        ASSERT_TRUE(taken) << name;
        EXPECT_EQ(taken->create().error().code, EEXIST) << name;
    }
    ::unlink(directory.path("link").bytes().constData());
    ::rmdir(directory.path("directory").bytes().constData());

    auto free = openNew(directory.path("b.md"));
    ASSERT_TRUE(free && free->write("b") && free->create());
    EXPECT_EQ(directory.read("b.md"), "b");
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"a.md", "b.md"}));
}

TEST_P(AtomicFileTest, ReplacesAFileThatVanishedMeanwhile) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    auto file = open(path);
    ASSERT_TRUE(file && file->write("new"));
    ::unlink(path.bytes().constData());
    EXPECT_TRUE(file->replace());
    EXPECT_EQ(directory.read("a.md"), "new");
}

TEST_P(AtomicFileTest, FailsWholeWhenTheFileBecameADirectoryMeanwhile) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md", "old");
    {
        auto file = open(path);
        ASSERT_TRUE(file && file->write("new"));
        ::unlink(path.bytes().constData());
        directory.makeDirectory("a.md");
        EXPECT_EQ(file->replace().error().code, EISDIR);
    }
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(AtomicFileTest, RemovesOnlyOldHiddenFilesThatNobodyWrites) {
    const TestDirectory directory;
    constexpr qint64 longAgo = 1'000'000'000;
    directory.write(".quillary-abc.tmp", "left by a killed process");
    directory.write(".quillary-held.tmp", "of a running process");
    directory.write(".quillary.json", "{}");
    directory.write(".quillary-abc", "x");
    directory.write("quillary-abc.tmp", "x");
    directory.makeDirectory(".quillary-directory.tmp");
    directory.makeLink(".quillary-link.tmp", "quillary-abc.tmp");
    const QList<QByteArray> all = directory.names();
    const int held = ::open(directory.path(".quillary-held.tmp").bytes().constData(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    const int descriptor = ::open(directory.bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto removeAll = [&](Moment now) {
        for (const QByteArray& name : all) {
            AtomicFile::removeIfAbandoned(descriptor, name.constData(), now);
        }
    };

    removeAll(now());
    EXPECT_EQ(directory.names(), all) << "a young one may be another process's";
    TestDirectory::setTimes(directory.path(".quillary-abc.tmp"), longAgo);
    removeAll(now() + std::chrono::minutes(2));
    QList<QByteArray> expected = all;
    expected.removeOne(".quillary-abc.tmp");
    EXPECT_EQ(directory.names(), expected);
    ::close(held);
    ::close(descriptor);
}

TEST(AbandonedFile, IsFoundOutWhereOnlyAWriterCanLockIt) {
    const TestDirectory shown;
    const TestDirectory directory;
    const test::FragileVolume volume(directory.bytes(), shown.bytes(), {.locksBytes = true});
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    shown.write(".quillary-abc.tmp", "left by a killed process");
    auto held = AtomicFile::openNew(directory.path("a.md"));
    ASSERT_TRUE(held && held->write("of a running process"));
    const QList<QByteArray> all = directory.names();
    ASSERT_EQ(all.size(), 2);
    const FileDescriptor opened(::open(directory.bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (const QByteArray& name : all) {
        AtomicFile::removeIfAbandoned(opened.number(), name.constData(), now() + std::chrono::minutes(2));
    }
    EXPECT_FALSE(directory.has(".quillary-abc.tmp"));
    EXPECT_EQ(directory.names().size(), 1);
}

TEST(AbandonedFile, GoesAlsoIfItMayNotBeWritten) {
    const TestDirectory directory;
    ::chmod(directory.bytes().constData(), 0777);
    ::chmod(directory.write(".quillary-abc.tmp").bytes().constData(), 0444);
    const FileDescriptor opened(::open(directory.bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const test::WithoutPrivileges user;
    AtomicFile::removeIfAbandoned(opened.number(), ".quillary-abc.tmp", now() + std::chrono::minutes(2));
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
}

TEST(UTF8Writer, WritesTextInPiecesOfAnySize) {
    const QString text = QString(40'000, u'è') + u"a😀b\u0000c\uFFFE"_s + QString(70'000, u'x') + u"😀"_s;
    for (const qsizetype size : {qsizetype(1), qsizetype(2), qsizetype(3), qsizetype(1000), text.size()}) {
        const TestDirectory directory;
        auto file = AtomicFile::open(directory.path("a.md"));
        ASSERT_TRUE(file);
        UTF8Writer writer(*file);
        for (qsizetype at = 0; at < text.size(); at += size) {
            ASSERT_TRUE(writer.write(QStringView(text).sliced(at, std::min(size, text.size() - at))));
        }
        ASSERT_TRUE(writer.finish() && file->replace());
        EXPECT_EQ(directory.read("a.md"), text.toUtf8()) << size;
    }
}

TEST(UTF8Writer, KeepsAPairThatStandsAcrossAPieceOfItsOwn) {
    const QString text = QString(64 * 1024 - 1, u'x') + u"😀😀"_s;
    const TestDirectory directory;
    auto file = AtomicFile::open(directory.path("a.md"));
    ASSERT_TRUE(file);
    UTF8Writer writer(*file);
    ASSERT_TRUE(writer.write(text) && writer.finish() && file->replace());
    EXPECT_EQ(directory.read("a.md"), text.toUtf8());
}

TEST(UTF8Writer, WritesReplacementCharactersForLoneSurrogates) {
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const QByteArray replacement = "\xEF\xBF\xBD";
    const std::pair<QStringList, QByteArray> cases[] = {
        {{u"a"_s + high + u"b"_s}, "a" + replacement + "b"},
        {{u"a"_s + low + u"b"_s}, "a" + replacement + "b"},
        {{u"a"_s + high}, "a" + replacement},
        {{u"a"_s + high, u"b"_s}, "a" + replacement + "b"},
        {{u"a"_s + high, QString(), QString(low) + u"b"_s},
         "a\xF0\x9F\x98\x80"
         "b"},
        {{QString(high), QString(high), QString(low)}, replacement + "\xF0\x9F\x98\x80"},
        {{QString(low), QString(high)}, replacement + replacement},
    };
    for (const auto& [pieces, expected] : cases) {
        const TestDirectory directory;
        auto file = AtomicFile::open(directory.path("a.md"));
        ASSERT_TRUE(file);
        UTF8Writer writer(*file);
        for (const QString& piece : pieces) {
            ASSERT_TRUE(writer.write(piece));
        }
        ASSERT_TRUE(writer.finish() && file->replace());
        EXPECT_EQ(directory.read("a.md").toHex(), expected.toHex());
    }
}

} // namespace

} // namespace quillary
