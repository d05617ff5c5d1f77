#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace quillary::test {

/// For as long as it lives, this thread's file accesses are those of a user without privileges.
class WithoutPrivileges {
public:
    static constexpr unsigned nobody = 65534;

    WithoutPrivileges() {
        if (::geteuid() == 0) {
            ::setfsgid(nobody);
            ::setfsuid(nobody);
        }
    }

    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

    ~WithoutPrivileges() {
        if (::geteuid() == 0) {
            ::setfsuid(0);
            ::setfsgid(0);
        }
    }
};

/// For as long as it lives, no file can grow beyond so many bytes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

/// Another file system in a fresh directory. Only the superuser can have one; the tests that need it are skipped for
/// others.
class MountedFileSystem {
public:
    static MountedFileSystem inMemory(const QByteArray& options) { return {"tmpfs", "tmpfs", 0, options}; }

    /// A second view of a directory: the same device, but another mount.
    static MountedFileSystem viewOf(const QByteArray& directory) { return {directory, QByteArray(), MS_BIND, {}}; }

    MountedFileSystem(const MountedFileSystem&) = delete;
    MountedFileSystem& operator=(const MountedFileSystem&) = delete;

    ~MountedFileSystem() {
        if (m_isMounted) {
            ::umount2(m_path.constData(), MNT_DETACH);
        }
    }

    bool isMounted() const { return m_isMounted; }

    const QByteArray& path() const { return m_path; }

private:
    MountedFileSystem(const QByteArray& source, const QByteArray& type, unsigned long flags, const QByteArray& options)
        : m_path(QFile::encodeName(m_directory.path())),
          m_isMounted(::mount(source.constData(), m_path.constData(), type.isEmpty() ? nullptr : type.constData(),
                              flags, options.isEmpty() ? nullptr : options.constData()) == 0) {}

    QTemporaryDir m_directory;
    QByteArray m_path;
    bool m_isMounted;
};

} // namespace quillary::test
