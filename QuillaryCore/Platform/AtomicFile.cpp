#include "QuillaryCore/Platform/AtomicFile.h"

#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/ExtendedAttributes.h"
#include "QuillaryCore/Platform/FileMove.h"

#include <QRandomGenerator>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace quillary {

namespace {

constexpr QByteArrayView hiddenPrefix = ".quillary-";
constexpr QByteArrayView hiddenSuffix = ".tmp";
constexpr std::chrono::seconds ageOfAbandoned{60};

/// A file without a name gets one through the process's own directory of open files.
QByteArray openFilePath(int descriptor) {
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

bool canNameOpenFiles() {
    static const bool can = ::access("/proc/self/fd", X_OK) == 0;
    return can;
}

QByteArray newHiddenName() {
    return hiddenPrefix + QByteArray::number(QRandomGenerator::global()->generate64(), 36) + hiddenSuffix;
}

} // namespace

Result<AtomicFile, SystemError> AtomicFile::open(const FilePath& target, Waiting waiting) {
    AtomicFile file;
    if (const auto opened = file.openDirectory(target); !opened) {
        return opened.error();
    }
    if (const auto status = fileStatus(file.m_directory.number(), file.m_name.constData())) {
        if (status->kind != FileKind::regular) {
            return notAnOrdinaryFile(status->kind);
        }
        if (::faccessat(file.m_directory.number(), file.m_name.constData(), W_OK, AT_EACCESS) != 0) {
            return SystemError::last();
        }
        file.m_replaced = *status;
    } else if (status.error().code != ENOENT) {
        return status.error();
    }
    // What takes the place of a private file is private from the start.
    if (const auto opened = file.openFile(file.m_replaced ? 0600 : 0666, waiting); !opened) {
        return opened.error();
    }
    return file;
}

Result<AtomicFile, SystemError> AtomicFile::openNew(const FilePath& target, Waiting waiting) {
    AtomicFile file;
    if (const auto opened = file.openDirectory(target); !opened) {
        return opened.error();
    }
    if (const auto opened = file.openFile(0666, waiting); !opened) {
        return opened.error();
    }
    return file;
}

AtomicFile::~AtomicFile() {
    if (!m_hiddenName.isEmpty() && m_directory) {
        ::unlinkat(m_directory.number(), m_hiddenName.constData(), 0);
    }
}

Status<SystemError> AtomicFile::openDirectory(const FilePath& target) {
    const QByteArray directory = target.parent().bytes();
    m_name = target.bytes().mid(target.bytes().lastIndexOf('/') + 1);
    m_directory = FileDescriptor(::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_directory && errno == EACCES) {
        // A directory that may be written but not listed.
        m_directory = FileDescriptor(::open(directory.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    if (!m_directory) {
        return SystemError::last();
    }
    return Done();
}

Status<SystemError> AtomicFile::openFile(quint32 mode, Waiting waiting) {
    if (waiting == Waiting::withoutName && canNameOpenFiles()) {
        m_file = FileDescriptor(::openat(m_directory.number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
    }
    if (m_file) {
        return Done();
    }
    return openHidden(mode);
}

Status<SystemError> AtomicFile::openHidden(quint32 mode) {
    do {
        m_hiddenName = newHiddenName();
        m_file = FileDescriptor(::openat(m_directory.number(), m_hiddenName.constData(),
                                         O_CREAT | O_EXCL | O_RDWR | O_NOFOLLOW | O_CLOEXEC, mode));
    } while (!m_file && errno == EEXIST);
    if (!m_file) {
        const SystemError error = SystemError::last();
        m_hiddenName.clear();
        return error;
    }
    // Tells other processes that the file is in use.
    ::flock(m_file.number(), LOCK_EX | LOCK_NB);
    return Done();
}

Status<SystemError> AtomicFile::giveHiddenName() {
    ::flock(m_file.number(), LOCK_EX | LOCK_NB);
    while (m_hiddenName.isEmpty()) {
        const QByteArray name = newHiddenName();
        if (::linkat(AT_FDCWD, openFilePath(m_file.number()).constData(), m_directory.number(), name.constData(),
                     AT_SYMLINK_FOLLOW) == 0) {
            m_hiddenName = name;
        } else if (errno != EEXIST) {
            return SystemError::last();
        }
    }
    return Done();
}

Status<SystemError> AtomicFile::write(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(m_file.number(), bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
        } else if (errno != EINTR) {
            return SystemError::last();
        }
    }
    return Done();
}

void AtomicFile::copyAttributes() const {
    const FileDescriptor old(
        ::openat(m_directory.number(), m_name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (old) {
        copyExtendedAttributes(old.number(), m_file.number());
    }
}

void AtomicFile::takeOwnerAndMode() const {
    quint32 mode = m_replaced->mode;
    const auto status = fileStatus(m_file.number());
    const bool isSameOwner = status && status->owner == m_replaced->owner && status->group == m_replaced->group;
    if (!isSameOwner && ::fchown(m_file.number(), m_replaced->owner, m_replaced->group) != 0 &&
        ::fchown(m_file.number(), static_cast<uid_t>(-1), m_replaced->group) != 0) {
        // The rights of the old group must not become those of another one.
        mode = (mode & ~quint32(02070)) | ((mode & 07) << 3);
    }
    ::fchmod(m_file.number(), mode);
}

Result<FileStatus, SystemError> AtomicFile::replace(const std::optional<Moment>& created) {
    if (m_replaced) {
        copyAttributes();
        takeOwnerAndMode();
    }
    if (created) {
        creation_date::store(m_file.number(), *created);
    }
    if (::fsync(m_file.number()) != 0) {
        return SystemError::last();
    }
    if (const auto named = giveHiddenName(); !named) {
        return named.error();
    }
    if (::renameat(m_directory.number(), m_hiddenName.constData(), m_directory.number(), m_name.constData()) != 0) {
        return SystemError::last();
    }
    m_hiddenName.clear();
    ::fsync(m_directory.number());
    return fileStatus(m_file.number());
}

Result<FileStatus, SystemError> AtomicFile::create(const std::optional<Moment>& created) {
    if (created) {
        creation_date::store(m_file.number(), *created);
    }
    if (::fsync(m_file.number()) != 0) {
        return SystemError::last();
    }
    if (m_hiddenName.isEmpty()) {
        if (::linkat(AT_FDCWD, openFilePath(m_file.number()).constData(), m_directory.number(), m_name.constData(),
                     AT_SYMLINK_FOLLOW) != 0) {
            return SystemError::last();
        }
    } else {
        if (const auto moved = renameWithoutReplacing(m_directory.number(), m_hiddenName.constData(),
                                                      m_directory.number(), m_name.constData());
            !moved) {
            return moved.error();
        }
        m_hiddenName.clear();
    }
    ::fsync(m_directory.number());
    return fileStatus(m_file.number());
}

void AtomicFile::removeIfAbandoned(int directory, const char* name, Moment now) {
    const QByteArrayView view(name);
    if (!view.startsWith(hiddenPrefix) || !view.endsWith(hiddenSuffix)) {
        return;
    }
    const auto status = fileStatus(directory, name);
    if (!status || status->kind != FileKind::regular || now - status->changed < ageOfAbandoned) {
        return;
    }
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    // On NFS only a file that is open for writing can be locked for one alone.
    FileDescriptor file(::openat(directory, name, O_RDWR | flags));
    if (!file && (errno == EACCES || errno == EROFS)) {
        file = FileDescriptor(::openat(directory, name, O_RDONLY | flags));
    }
    if (file && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0) {
        ::unlinkat(directory, name, 0);
    }
}

} // namespace quillary
