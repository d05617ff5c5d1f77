#pragma once

#include "Tests/Support/OwnMounts.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
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

/// Whether there can be a file of a user who isn't this one.
inline bool canMakeFilesOfOthers() {
    return ::geteuid() == 0;
}

/// What tests that are skipped say.
inline constexpr const char* noOtherOwner =
    "only the superuser can make a file that belongs to somebody else: run as the superuser";
inline constexpr const char* noAttributes =
    "neither the temporary directory nor the working directory nor /var/tmp keeps birth times and extended attributes "
    "(user.*): set TMPDIR to a directory on a file system that does, as ext4, XFS and Btrfs do";

inline constexpr const char* noOverlay = "overlays are refused here: they need the kernel's module overlay, and mounts";

/// Another file system in a fresh directory, seen by this program alone. Where it can't be had, the tests that need it
/// are skipped; see `enterOwnMounts`.
class MountedFileSystem {
public:
    static MountedFileSystem inMemory(const QByteArray& options) { return {"tmpfs", "tmpfs", 0, options}; }

    /// A second view of a directory: the same device, but another mount.
    static MountedFileSystem viewOf(const QByteArray& directory) { return {directory, QByteArray(), MS_BIND, {}}; }

    /// What is in `lower`, with changes kept in `upper/changes`; both are tops of file systems of their own, so that
    /// each file shows another device than its directory.
    static MountedFileSystem overlayOf(const QByteArray& lower, const QByteArray& upper) {
        const QByteArray changes = upper + "/changes";
        const QByteArray work = upper + "/work";
        ::mkdir(changes.constData(), 0777);
        ::mkdir(work.constData(), 0777);
        return {"overlay", "overlay", 0,
                "lowerdir=" + lower + ",upperdir=" + changes + ",workdir=" + work + ",xino=off"};
    }

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
