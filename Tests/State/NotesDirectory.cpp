#include "Tests/State/NotesDirectory.h"

#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

Moment moment(double seconds) {
    constexpr std::chrono::seconds first{1'710'000'000};
    return Moment(first + std::chrono::nanoseconds(qRound64(seconds * 1e9)));
}

NotesDirectory::NotesDirectory() : m_path(FilePath::fromText(m_parent.filePath(u"Note"_s))) {
    QDir().mkpath(m_path.text());
}

NotesDirectory::~NotesDirectory() = default;

QString NotesDirectory::absolute(const QString& name) const {
    return m_path.text() + u'/' + name;
}

void NotesDirectory::write(const QString& name, const QByteArray& bytes) const {
    QFile file(absolute(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(file.errorString());
    ASSERT_EQ(file.write(bytes), bytes.size());
}

void NotesDirectory::replace(const QString& name, const QByteArray& bytes) const {
    write(u".neu"_s, bytes);
    ASSERT_EQ(::rename(qPrintable(absolute(u".neu"_s)), qPrintable(absolute(name))), 0);
}

void NotesDirectory::setModified(const QString& name, Moment date) const {
    // Both, as most programs do; the modification date alone would count as a write that goes on.
    const timespec times[] = {timestampFromMoment(date), timestampFromMoment(date)};
    ASSERT_EQ(utimensat(AT_FDCWD, qPrintable(absolute(name)), times, 0), 0);
}

void NotesDirectory::setCreated(const QString& name, Moment date) const {
    const int descriptor = open(qPrintable(absolute(name)), O_RDWR | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    EXPECT_TRUE(creation_date::store(descriptor, date));
    close(descriptor);
}

void NotesDirectory::makeFolder(const QString& name) const {
    ASSERT_TRUE(QDir().mkdir(absolute(name)));
}

void NotesDirectory::rename(const QString& from, const QString& to) const {
    ASSERT_TRUE(QFile::rename(absolute(from), absolute(to)));
}

void NotesDirectory::remove(const QString& name) const {
    const QFileInfo info(absolute(name));
    ASSERT_TRUE(info.isDir() ? QDir(absolute(name)).removeRecursively() : QFile::remove(absolute(name)));
}

bool NotesDirectory::exists(const QString& name) const {
    return QFile::exists(absolute(name));
}

QByteArray NotesDirectory::contents(const QString& name) const {
    QFile file(absolute(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Moment NotesDirectory::modified(const QString& name) const {
    const auto status = fileStatus(path(name));
    return status ? status->modified : distantPast;
}

} // namespace quillary::test
