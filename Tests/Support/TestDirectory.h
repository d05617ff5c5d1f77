#pragma once

#include "QuillaryCore/Platform/FilePath.h"

#include "Tests/Support/TemporaryDirectory.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillary::test {

/// A directory of its own for one test, whose files are made and looked at by the system's own calls, by exact bytes.
class TestDirectory {
public:
    TestDirectory() : TestDirectory(QByteArray()) {}

    /// Within another directory, as one on another file system; that one cleans up.
    explicit TestDirectory(const QByteArray& path)
        : m_path(path.isEmpty() ? QFile::encodeName(m_temporary.path()) : path) {}

    const QByteArray& bytes() const { return m_path; }

    FilePath path() const { return FilePath::fromBytes(m_path); }

    FilePath path(const QByteArray& name) const { return FilePath::fromBytes(m_path + '/' + name); }

    FilePath write(const QByteArray& name, const QByteArray& contents = {}) const {
        const FilePath file = path(name);
        const int descriptor = ::open(file.bytes().constData(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0644);
        EXPECT_GE(descriptor, 0) << name.constData() << ": " << std::strerror(errno);
        EXPECT_EQ(::write(descriptor, contents.constData(), size_t(contents.size())), contents.size());
        ::close(descriptor);
        return file;
    }

    FilePath makeDirectory(const QByteArray& name) const {
        const FilePath directory = path(name);
        EXPECT_EQ(::mkdir(directory.bytes().constData(), 0755), 0) << name.constData();
        return directory;
    }

    FilePath makeLink(const QByteArray& name, const QByteArray& target) const {
        const FilePath link = path(name);
        EXPECT_EQ(::symlink(target.constData(), link.bytes().constData()), 0) << name.constData();
        return link;
    }

    QByteArray read(const QByteArray& name) const { return contentsOf(path(name)); }

    bool has(const QByteArray& name) const {
        struct stat facts {};

        return ::lstat(path(name).bytes().constData(), &facts) == 0;
    }

    /// The names in it, hidden ones among them, in the order of their bytes.
    QList<QByteArray> names() const { return namesIn(path()); }

    static QByteArray contentsOf(const FilePath& file) {
        QByteArray contents;
        const int descriptor = ::open(file.bytes().constData(), O_RDONLY | O_CLOEXEC);
        EXPECT_GE(descriptor, 0) << file.bytes().constData() << ": " << std::strerror(errno);
        char buffer[65536];
        for (ssize_t length; (length = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
            contents.append(buffer, length);
        }
        ::close(descriptor);
        return contents;
    }

    static QList<QByteArray> namesIn(const FilePath& directory) {
        QList<QByteArray> names;
        if (DIR* const stream = ::opendir(directory.bytes().constData())) {
            while (const dirent* const entry = ::readdir(stream)) {
                if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
                    names.append(entry->d_name);
                }
            }
            ::closedir(stream);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    static bool setAttribute(const FilePath& file, const char* name, const QByteArray& value) {
        return ::lsetxattr(file.bytes().constData(), name, value.constData(), size_t(value.size()), 0) == 0;
    }

    static QByteArray attribute(const FilePath& file, const char* name) {
        char value[4096];
        const ssize_t length = ::lgetxattr(file.bytes().constData(), name, value, sizeof value);
        return length < 0 ? QByteArray() : QByteArray(value, length);
    }

    /// Sets access and modification times, in seconds and nanoseconds since 1970.
    static void setTimes(const FilePath& file, qint64 seconds, long nanoseconds = 0) {
        const timespec stamps[] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        EXPECT_EQ(::utimensat(AT_FDCWD, file.bytes().constData(), stamps, AT_SYMLINK_NOFOLLOW), 0);
    }

private:
    TemporaryDirectory m_temporary;
    QByteArray m_path;
};

} // namespace quillary::test
