#include "QuillaryCore/Platform/FileStatus.h"

#include "QuillaryCore/Platform/DirectoryReader.h"

#include "Tests/Support/TestDirectory.h"

#include <QMap>

#include <cerrno>
#include <limits>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

TEST(FileStatus, TellsKindSizeModeAndDatesToTheNanosecond) {
    const TestDirectory directory;
    const FilePath file = directory.write("a.md", "12345");
    ::chmod(file.bytes().constData(), 0640);
    TestDirectory::setTimes(file, 1'772'701'620, 123'456'789);

    const auto status = fileStatus(file);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->kind, FileKind::regular);
    EXPECT_EQ(status->size, 5);
    EXPECT_EQ(status->mode, 0640U);
    EXPECT_EQ(status->owner, ::geteuid());
    EXPECT_EQ(status->modified.time_since_epoch().count(), 1'772'701'620'123'456'789);
    EXPECT_NE(status->inode, 0U);
}

TEST(FileStatus, DoesNotFollowLinks) {
    const TestDirectory directory;
    directory.write("a.md", "12345");
    directory.makeDirectory("d");
    const std::pair<FilePath, FileKind> cases[] = {
        {directory.makeLink("link", "a.md"), FileKind::symbolicLink},
        {directory.makeLink("nowhere", "absent"), FileKind::symbolicLink},
        {directory.path("d"), FileKind::directory},
        {FilePath::fromBytes("/dev/null"), FileKind::other},
    };
    for (const auto& [path, kind] : cases) {
        const auto status = fileStatus(path);
        ASSERT_TRUE(status) << path.bytes().constData();
        EXPECT_EQ(status->kind, kind) << path.bytes().constData();
    }
}

TEST(FileStatus, ReportsTheSystemsFailure) {
    const TestDirectory directory;
    const auto absent = fileStatus(directory.path("absent"));
    ASSERT_FALSE(absent);
    EXPECT_EQ(absent.error().code, ENOENT);
    EXPECT_EQ(absent.error().localizedDescription(), qt_error_string(ENOENT));
    EXPECT_EQ(fileStatus(-1).error().code, EBADF);
}

TEST(FileStatus, NamesTheErrorOfWhatIsNoOrdinaryFile) {
    EXPECT_EQ(notAnOrdinaryFile(FileKind::directory).code, EISDIR);
    EXPECT_EQ(notAnOrdinaryFile(FileKind::symbolicLink).code, ELOOP);
    EXPECT_EQ(notAnOrdinaryFile(FileKind::other).code, EINVAL);
}

TEST(FileStatus, MomentsBeyondTheRangeStopAtItsEnds) {
    EXPECT_EQ(momentFromTimestamp(0, 0).time_since_epoch().count(), 0);
    EXPECT_EQ(momentFromTimestamp(-1, 999'999'999).time_since_epoch().count(), -1);
    EXPECT_EQ(momentFromTimestamp(15'000'000'000, 5), Moment::max());
    EXPECT_EQ(momentFromTimestamp(-15'000'000'000, 5), Moment::min());
    EXPECT_EQ(momentFromTimestamp(std::numeric_limits<qint64>::max(), 0), Moment::max());
}

TEST(FileStatus, TimestampsTurnIntoMomentsAndBack) {
    for (const qint64 count : {qint64(0), qint64(-1), qint64(1'772'701'620'123'456'789), qint64(-86'400'000'000'001)}) {
        const Moment moment{std::chrono::nanoseconds(count)};
        const timespec stamp = timestampFromMoment(moment);
        EXPECT_GE(stamp.tv_nsec, 0);
        EXPECT_EQ(momentFromTimestamp(stamp.tv_sec, static_cast<quint32>(stamp.tv_nsec)), moment);
    }
}

TEST(DirectoryReader, GivesEveryEntryButTheTwoDots) {
    const TestDirectory directory;
    directory.write("a.md");
    directory.write(".hidden");
    directory.write("...");
    directory.makeDirectory("d");
    directory.makeLink("link", "a.md");
    auto reader = DirectoryReader::open(directory.path());
    ASSERT_TRUE(reader);
    QMap<QByteArray, FileKind> kinds;
    while (const auto entry = reader->next()) {
        const auto status = fileStatus(reader->descriptor(), entry->name.data());
        ASSERT_TRUE(status);
        EXPECT_EQ(entry->kind.value_or(status->kind), status->kind);
        kinds.insert(entry->name.toByteArray(), status->kind);
    }
    EXPECT_FALSE(reader->error());
    EXPECT_EQ(kinds, (QMap<QByteArray, FileKind>{{"a.md", FileKind::regular},
                                                 {".hidden", FileKind::regular},
                                                 {"...", FileKind::regular},
                                                 {"d", FileKind::directory},
                                                 {"link", FileKind::symbolicLink}}));
}

TEST(DirectoryReader, ReportsWhatIsNoDirectory) {
    const TestDirectory directory;
    EXPECT_EQ(DirectoryReader::open(directory.write("a.md")).error().code, ENOTDIR);
    EXPECT_EQ(DirectoryReader::open(directory.path("absent")).error().code, ENOENT);
}

} // namespace

} // namespace quillary
