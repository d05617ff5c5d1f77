#include "QuillaryCore/Platform/CreationDate.h"

#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/FileCopy.h"

#include "Tests/Support/SystemConditions.h"
#include "Tests/Support/TestDirectory.h"

#include <QProcess>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

constexpr Moment somewhen{std::chrono::nanoseconds(1'234'567'890'123'456'789)};

Moment createdOf(const FilePath& path) {
    return creation_date::of(path, *fileStatus(path));
}

void save(const FilePath& path, const QByteArray& contents) {
    auto file = AtomicFile::open(path);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write(contents));
    ASSERT_TRUE(file->replace(creation_date::of(path, *file->replaced())));
}

void makeWithDate(const FilePath& path, Moment created) {
    auto file = AtomicFile::open(path);
    ASSERT_TRUE(file && file->create(created));
}

class CreationDate : public testing::Test {
protected:
    void SetUp() override {
        const FilePath probe = directory.write("probe");
        if (!fileStatus(probe)->born || !TestDirectory::setAttribute(probe, "user.probe", "x")) {
            GTEST_SKIP() << test::noAttributes;
        }
        ::unlink(probe.bytes().constData());
    }

    const TestDirectory directory;
};

TEST_F(CreationDate, IsTheBirthTimeOfAFileThatWasNeverSaved) {
    const FilePath path = directory.write("a.md", "text");
    EXPECT_EQ(createdOf(path), fileStatus(path)->born);
}

TEST_F(CreationDate, StaysToTheNanosecondThroughSaves) {
    const FilePath path = directory.write("a.md", "text");
    const Moment created = createdOf(path);
    for (const char* const contents : {"one", "two", "three"}) {
        save(path, contents);
        EXPECT_EQ(createdOf(path), created) << contents;
    }
    EXPECT_NE(fileStatus(path)->born, created);
}

TEST_F(CreationDate, IsReadByDescriptorToo) {
    const FilePath path = directory.path("a.md");
    makeWithDate(path, somewhen);
    const int descriptor = ::open(path.bytes().constData(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(creation_date::of(descriptor, *fileStatus(descriptor)), somewhen);
    ::close(descriptor);
}

TEST_F(CreationDate, StaysThroughRenamesAndRewritesInPlace) {
    const FilePath path = directory.path("a.md");
    makeWithDate(path, somewhen);
    const FilePath moved = directory.path("b.md");
    ASSERT_EQ(::rename(path.bytes().constData(), moved.bytes().constData()), 0);
    EXPECT_EQ(createdOf(moved), somewhen);
    directory.write("b.md", "rewritten by another program");
    EXPECT_EQ(createdOf(moved), somewhen);
}

TEST_F(CreationDate, IsNewForACopyEvenWithAllAttributes) {
    const FilePath path = directory.path("a.md");
    makeWithDate(path, somewhen);
    for (const QStringList& options : {QStringList{}, QStringList{u"-a"_s}, QStringList{u"--preserve=all"_s}}) {
        const FilePath copy = directory.path("copy.md");
        ::unlink(copy.bytes().constData());
        ASSERT_EQ(QProcess::execute(u"cp"_s, options + QStringList{path.text(), copy.text()}), 0);
        EXPECT_EQ(createdOf(copy), fileStatus(copy)->born) << options.join(u' ').toStdString();
    }
    EXPECT_EQ(createdOf(path), somewhen);
}

TEST_F(CreationDate, IsNewForAFileThatAnotherProgramPutInItsPlace) {
    const FilePath path = directory.path("a.md");
    makeWithDate(path, somewhen);
    const FilePath replacement = directory.write("new", "text");
    ASSERT_EQ(::rename(replacement.bytes().constData(), path.bytes().constData()), 0);
    EXPECT_EQ(createdOf(path), fileStatus(path)->born);
}

TEST_F(CreationDate, TakesNoNoticeOfAnAttributeThatIsNotItsOwn) {
    const FilePath path = directory.path("a.md");
    makeWithDate(path, somewhen);
    const FileStatus status = *fileStatus(path);
    const Moment born = *status.born;
    FileStatus other = status;
    ++other.inode;
    FileStatus older = status;
    older.born = born - std::chrono::nanoseconds(1);
    const QByteArray own = creation_date::encoded(somewhen, status);
    const QByteArray foreign[] = {
        "",
        "x",
        "1234567890.123456789",
        "2009-02-13T23:31:30Z",
        creation_date::encoded(somewhen, other),
        creation_date::encoded(somewhen, older),
        own + ' ',
        own + '\0',
        ' ' + own,
        own.chopped(1),
        QByteArray(own).replace(own.indexOf(' '), 1, "  "),
        QByteArray(own).replace(0, 1, "x"),
        QByteArray(100'0, '9'),
    };
    for (const QByteArray& value : foreign) {
        ASSERT_TRUE(TestDirectory::setAttribute(path, creation_date::attributeName, value));
        EXPECT_EQ(createdOf(path), born) << value.constData();
    }
    ASSERT_TRUE(TestDirectory::setAttribute(path, creation_date::attributeName, own));
    EXPECT_EQ(createdOf(path), somewhen);
}

TEST_F(CreationDate, LetsTheFileAgeEnoughToBeAskedForItsAttribute) {
    for (int i = 0; i < 5; ++i) {
        const FilePath path = directory.path("a" + QByteArray::number(i));
        makeWithDate(path, somewhen);
        const FileStatus status = *fileStatus(path);
        EXPECT_GE(status.changed - *status.born, creation_date::leastAge);
        EXPECT_EQ(createdOf(path), somewhen);
    }
}

TEST(CreationDateCoding, TurnsDatesIntoBytesAndBack) {
    FileStatus status;
    status.inode = 18'446'744'073'709'551'615ULL;
    status.born = Moment(std::chrono::nanoseconds(1'772'701'620'000'000'001));
    EXPECT_EQ(creation_date::encoded(somewhen, status),
              "1234567890.123456789 18446744073709551615 1772701620.000000001");
    for (const qint64 count : {qint64(0), qint64(-1), qint64(-1'000'000'000), qint64(1'772'701'620'123'456'789)}) {
        const Moment created{std::chrono::nanoseconds(count)};
        EXPECT_EQ(creation_date::decoded(creation_date::encoded(created, status), status), created) << count;
    }
    status.born.reset();
    EXPECT_EQ(creation_date::encoded(somewhen, status), "1234567890.123456789 18446744073709551615 -");
    EXPECT_EQ(creation_date::decoded(creation_date::encoded(somewhen, status), status), somewhen);
}

TEST(CreationDateCoding, IsUnknownWhereTheFileSystemKeepsNeitherDateNorAttribute) {
    const TestDirectory directory;
    const FilePath path = directory.write("a.md");
    FileStatus status = *fileStatus(path);
    status.born.reset();
    EXPECT_EQ(creation_date::of(path, status), distantPast);
}

} // namespace

} // namespace quillary
