#include "QuillaryCore/Platform/FileMove.h"

#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/FileCopy.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include "Tests/Support/FragileVolume.h"
#include "Tests/Support/SystemConditions.h"
#include "Tests/Support/TestDirectory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

using Rename = Status<SystemError> (*)(int, const char*, int, const char*);

struct Way {
    const char* name;
    Rename rename;
    bool takesDirectories;
};

void PrintTo(const Way& way, std::ostream* stream) {
    *stream << way.name;
}

/// The ways of moving, of which the file system decides in everyday life.
class FileMoveWay : public testing::TestWithParam<Way> {
protected:
    Status<SystemError> move(const QByteArray& from, const QByteArray& to) const {
        return GetParam().rename(AT_FDCWD, directory.path(from).bytes().constData(), AT_FDCWD,
                                 directory.path(to).bytes().constData());
    }

    const TestDirectory directory;
};

INSTANTIATE_TEST_SUITE_P(All, FileMoveWay,
                         testing::Values(Way{"InOneStep", &renameWithoutReplacing, true},
                                         Way{"ByLinking", &renameByLinking, false},
                                         Way{"OntoAClaim", &renameOntoClaim, true}),
                         [](const auto& way) { return way.param.name; });

TEST_P(FileMoveWay, MovesToAFreeName) {
    directory.write("a.md", "text");
    const quint64 inode = fileStatus(directory.path("a.md"))->inode;
    ASSERT_TRUE(move("a.md", "b.md"));
    EXPECT_EQ(directory.names(), QList<QByteArray>{"b.md"});
    EXPECT_EQ(fileStatus(directory.path("b.md"))->inode, inode);
}

TEST_P(FileMoveWay, NeverReplaces) {
    directory.write("a.md", "a");
    directory.write("b.md", "b");
    directory.makeDirectory("d");
    directory.makeLink("link", "absent");
    const QList<QByteArray> names = directory.names();
    for (const char* const taken : {"b.md", "d", "link"}) {
        EXPECT_EQ(move("a.md", taken).error().code, EEXIST) << taken;
    }
    EXPECT_EQ(directory.names(), names);
    EXPECT_EQ(directory.read("a.md"), "a");
    EXPECT_EQ(directory.read("b.md"), "b");
}

TEST_P(FileMoveWay, FailsWithoutATrace) {
    directory.write("a.md", "a");
    EXPECT_EQ(move("absent.md", "b.md").error().code, ENOENT);
    EXPECT_EQ(move("a.md", "no/b.md").error().code, ENOENT);
    EXPECT_EQ(move("a.md", QByteArray(256, 'x')).error().code, ENAMETOOLONG);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_P(FileMoveWay, MovesADirectoryWithItsContentsIfItCan) {
    directory.makeDirectory("d");
    directory.write("d/a.md", "a");
    if (!GetParam().takesDirectories) {
        EXPECT_EQ(move("d", "e").error().code, EPERM);
        EXPECT_EQ(directory.names(), QList<QByteArray>{"d"});
        return;
    }
    directory.makeDirectory("taken");
    EXPECT_EQ(move("d", "taken").error().code, EEXIST) << "an empty one isn't replaced either";
    ASSERT_TRUE(move("d", "e"));
    EXPECT_EQ(directory.read("e/a.md"), "a");
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"e", "taken"}));
}

TEST_P(FileMoveWay, LetsOneOfManyHaveAName) {
    constexpr int count = 8;
    for (int i = 0; i < count; ++i) {
        directory.write(QByteArray::number(i), QByteArray::number(i));
    }
    std::array<bool, count> won{};
    {
        std::vector<std::jthread> threads;
        threads.reserve(count);
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([this, i, &won] { won[size_t(i)] = move(QByteArray::number(i), "name").hasValue(); });
        }
    }
    ASSERT_EQ(std::count(won.begin(), won.end(), true), 1);
    const auto winner = std::find(won.begin(), won.end(), true) - won.begin();
    EXPECT_EQ(directory.read("name"), QByteArray::number(qint64(winner)));
    EXPECT_EQ(directory.names().size(), count);
}

TEST(FileMove, ClaimsANameWhereverThereAreNoSecondNames) {
    // Servers say that in many ways.
    const std::pair<int, int> refusals[] = {
        {EINVAL, EPERM}, {EINVAL, EACCES}, {EINVAL, EIO}, {ENOSYS, ENOSYS}, {EOPNOTSUPP, EOPNOTSUPP},
    };
    for (const auto& [renameError, linkError] : refusals) {
        const TestDirectory shown;
        const TestDirectory directory;
        const test::FragileVolume volume(directory.bytes(), shown.bytes(),
                                         {.renameWithoutReplacingError = renameError, .linkError = linkError});
        if (!volume.isMounted()) {
            GTEST_SKIP() << test::noVolume;
        }
        auto made = AtomicFile::openNew(directory.path("a.md"));
        ASSERT_TRUE(made && made->write("text"));
        EXPECT_TRUE(made->create()) << renameError << ' ' << linkError;
        directory.write("taken.md", "taken");
        directory.makeDirectory("d");
        EXPECT_TRUE(moveFile(directory.path("a.md"), directory.path("b.md"))) << renameError << ' ' << linkError;
        EXPECT_TRUE(moveFile(directory.path("d"), directory.path("e"))) << renameError << ' ' << linkError;
        EXPECT_EQ(moveFile(directory.path("b.md"), directory.path("taken.md")).error().code, EEXIST);
        EXPECT_EQ(shown.names(), (QList<QByteArray>{"b.md", "e", "taken.md"}));
        EXPECT_EQ(shown.read("b.md"), "text");
        EXPECT_EQ(shown.read("taken.md"), "taken");
    }
}

TEST(FileMove, KeepsTheSecondNameOfAFileWhoseFirstIsGone) {
    const TestDirectory shown;
    const TestDirectory directory;
    const test::FragileVolume volume(directory.bytes(), shown.bytes(),
                                     {.renameWithoutReplacingError = EINVAL, .linkError = 0, .repeatsRemovals = true});
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    EXPECT_TRUE(moveFile(directory.write("a.md", "text"), directory.path("b.md")));
    EXPECT_EQ(shown.names(), QList<QByteArray>{"b.md"});
    EXPECT_EQ(shown.read("b.md"), "text");

    const TestDirectory other;
    EXPECT_TRUE(moveFile(directory.path("b.md"), other.path("c.md")));
    EXPECT_EQ(shown.names(), QList<QByteArray>{});
    EXPECT_EQ(other.read("c.md"), "text");
}

TEST(FileMove, KeepsAFileThatWasRenamedOntoItsClaimAlthoughTheAnswerWasAnother) {
    const TestDirectory shown;
    const TestDirectory directory;
    const test::FragileVolume volume(directory.bytes(), shown.bytes(),
                                     {.renameWithoutReplacingError = EINVAL, .repeatsRenamings = true});
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    EXPECT_TRUE(moveFile(directory.write("a.md", "text"), directory.path("b.md")));
    EXPECT_EQ(shown.names(), QList<QByteArray>{"b.md"});
    EXPECT_EQ(shown.read("b.md"), "text");
}

TEST(FileMove, ChangesTheCaseOfANameThatIsFree) {
    const TestDirectory directory;
    directory.write("Nota.md", "text");
    ASSERT_TRUE(moveFile(directory.path("Nota.md"), directory.path("nota.md")));
    EXPECT_EQ(directory.names(), QList<QByteArray>{"nota.md"});
}

TEST(FileMove, GoesByWayOfAThirdNameWhereBothSpellingsAreOne) {
    const TestDirectory directory;
    const FilePath file = directory.write("Nota.md", "text");
    ASSERT_TRUE(renameByWayOfThirdName(file, directory.path("nota.md")));
    EXPECT_EQ(directory.names(), QList<QByteArray>{"nota.md"});
    directory.makeDirectory("Lavoro");
    ASSERT_TRUE(renameByWayOfThirdName(directory.path("Lavoro"), directory.path("lavoro")));
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"lavoro", "nota.md"}));

    directory.write("taken.md", "taken");
    EXPECT_EQ(renameByWayOfThirdName(directory.path("nota.md"), directory.path("taken.md")).error().code, EEXIST);
    EXPECT_EQ(renameByWayOfThirdName(directory.path("absent.md"), directory.path("a.md")).error().code, ENOENT);
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"lavoro", "nota.md", "taken.md"}));
    EXPECT_EQ(directory.read("nota.md"), "text");
    EXPECT_EQ(directory.read("taken.md"), "taken");
}

TEST(FileMove, LeavesBothNamesOfAFileThatHasThem) {
    // As on a file system that takes both spellings for one name both lead to one file, but here each is a name.
    const TestDirectory directory;
    const FilePath file = directory.write("Nota.md", "text");
    ASSERT_EQ(::link(file.bytes().constData(), directory.path("nota.md").bytes().constData()), 0);
    EXPECT_EQ(moveFile(file, directory.path("nota.md")).error().code, EEXIST);
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"Nota.md", "nota.md"}));
}

TEST(FileMove, DoesNotReplaceAnotherFileOfTheSameLetters) {
    const TestDirectory directory;
    directory.write("Nota.md", "upper");
    directory.write("nota.md", "lower");
    EXPECT_EQ(moveFile(directory.path("Nota.md"), directory.path("nota.md")).error().code, EEXIST);
    EXPECT_EQ(directory.read("Nota.md"), "upper");
    EXPECT_EQ(directory.read("nota.md"), "lower");
}

TEST(FileMove, TakesAFileWithItsDatesToAnotherFileSystem) {
    const auto disk = test::MountedFileSystem::inMemory("size=1m");
    if (!disk.isMounted()) {
        GTEST_SKIP() << test::noMounts;
    }
    const TestDirectory directory;
    const TestDirectory other(disk.path());
    const FilePath file = directory.write("a.md", "text");
    TestDirectory::setTimes(file, 1'000'000'000, 5);
    const Moment created = creation_date::of(file, *fileStatus(file));
    other.write("taken.md", "other");

    EXPECT_EQ(moveFile(file, other.path("taken.md")).error().code, EEXIST);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
    EXPECT_EQ(other.read("taken.md"), "other");

    ASSERT_TRUE(moveFile(file, other.path("a.md")));
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
    EXPECT_EQ(other.read("a.md"), "text");
    EXPECT_EQ(fileStatus(other.path("a.md"))->modified.time_since_epoch().count(), 1'000'000'000'000'000'005);
    if (!TestDirectory::attribute(other.path("a.md"), creation_date::attributeName).isNull()) {
        EXPECT_EQ(creation_date::of(other.path("a.md"), *fileStatus(other.path("a.md"))), created);
    }

    directory.makeDirectory("d");
    EXPECT_EQ(moveFile(directory.path("d"), other.path("d")).error().code, EXDEV);
    EXPECT_TRUE(directory.has("d"));
    directory.write("large.md", QByteArray(2'000'000, 'x'));
    EXPECT_EQ(moveFile(directory.path("large.md"), other.path("large.md")).error().code, ENOSPC);
    EXPECT_EQ(directory.read("large.md").size(), 2'000'000);
    EXPECT_FALSE(other.has("large.md"));
}

TEST(FileMove, LeavesNoCopyOfAFileThatMayNotBeRemoved) {
    const auto disk = test::MountedFileSystem::inMemory("size=1m");
    if (!disk.isMounted()) {
        GTEST_SKIP() << test::noMounts;
    }
    const TestDirectory directory;
    const TestDirectory other(disk.path());
    const FilePath file = directory.write("a.md", "text");
    ::chmod(directory.bytes().constData(), 0555);
    ::chmod(other.bytes().constData(), 0777);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(moveFile(file, other.path("a.md")).error().code, EACCES);
    }
    ::chmod(directory.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("a.md"), "text");
    EXPECT_EQ(other.names(), QList<QByteArray>{});
}

TEST(FileCopy, CarriesContentsModeDatesAndAttributesAlong) {
    const TestDirectory directory;
    const FilePath source = directory.path("source.md");
    constexpr Moment created{std::chrono::nanoseconds(1'234'567'890'123'456'789)};
    auto file = AtomicFile::open(source);
    const QByteArray contents(700'001, 'x');
    ASSERT_TRUE(file && file->write(contents) && file->create(created));
    ::chmod(source.bytes().constData(), 0640);
    const bool hasAttributes = TestDirectory::setAttribute(source, "user.tags", "red");
    TestDirectory::setTimes(source, 1'300'000'000, 987'654'321);

    const FilePath copy = directory.path("copy.md");
    ASSERT_TRUE(copyFile(source, copy));
    EXPECT_EQ(directory.read("copy.md"), contents);
    const FileStatus status = *fileStatus(copy);
    EXPECT_EQ(status.mode, 0640U);
    EXPECT_EQ(status.modified.time_since_epoch().count(), 1'300'000'000'987'654'321);
    if (hasAttributes) {
        EXPECT_EQ(TestDirectory::attribute(copy, "user.tags"), "red");
        EXPECT_EQ(creation_date::of(copy, status), created);
    }
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"copy.md", "source.md"}));
}

TEST(FileCopy, GivesAFileOfACopyThatItsOwnerCanWrite) {
    const TestDirectory directory;
    const FilePath source = directory.write("source.md", "text");
    ::chmod(source.bytes().constData(), 0444);
    ASSERT_TRUE(copyFile(source, directory.path("copy.md")));
    EXPECT_EQ(fileStatus(directory.path("copy.md"))->mode, 0644U);
}

TEST(FileCopy, CopiesWhatALinkLeadsTo) {
    const TestDirectory directory;
    directory.write("source.md", "text");
    ASSERT_TRUE(copyFile(directory.makeLink("link.md", "source.md"), directory.path("copy.md")));
    EXPECT_EQ(fileStatus(directory.path("copy.md"))->kind, FileKind::regular);
    EXPECT_EQ(directory.read("copy.md"), "text");
}

TEST(FileCopy, FailsWithoutATrace) {
    const TestDirectory directory;
    const FilePath source = directory.write("source.md", QByteArray(300'000, 'x'));
    directory.write("taken.md", "taken");
    directory.makeDirectory("d");
    ASSERT_EQ(::mkfifo(directory.path("pipe").bytes().constData(), 0600), 0);
    const QList<QByteArray> names = directory.names();
    const std::tuple<const char*, const char*, int> cases[] = {
        {"source.md", "taken.md", EEXIST}, {"source.md", "d", EEXIST},  {"absent.md", "copy.md", ENOENT},
        {"d", "copy.md", EISDIR},          {"pipe", "copy.md", EINVAL}, {"source.md", "no/copy.md", ENOENT},
    };
    for (const auto& [from, to, code] : cases) {
        EXPECT_EQ(copyFile(directory.path(from), directory.path(to)).error().code, code) << from << " to " << to;
    }
    {
        const test::FileSizeLimit limit(100'000);
        EXPECT_EQ(copyFile(source, directory.path("copy.md")).error().code, EFBIG);
    }
    EXPECT_EQ(directory.names(), names);
    EXPECT_EQ(directory.read("taken.md"), "taken");
}

} // namespace

} // namespace quillary
