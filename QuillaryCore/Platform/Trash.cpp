#include "QuillaryCore/Platform/Trash.h"

#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/FileMove.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QDateTime>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <utility>

namespace quillary::trash {

namespace {

constexpr QByteArrayView infoSuffix = ".trashinfo";
constexpr qsizetype longestName = 255;

/// One trash directory, and what the paths in it are relative to; nothing if they are absolute.
struct TrashDirectory {
    QByteArray path;
    std::optional<QByteArray> top;
};

/// Makes a directory that is the user's own; one that is there already is good if it is no link. One that comes out as
/// another user's, as where all files of a mount are, goes again.
Status<SystemError> ensureOwnDirectory(const QByteArray& path) {
    const bool isNew = ::mkdir(path.constData(), 0700) == 0;
    if (!isNew && errno != EEXIST) {
        return SystemError::last();
    }
    const auto status = fileStatus(FilePath::fromBytes(path));
    if (!status) {
        return status.error();
    }
    if (status->kind != FileKind::directory || status->owner != ::geteuid()) {
        if (isNew) {
            ::rmdir(path.constData());
        }
        return SystemError{status->kind == FileKind::directory ? EACCES : ENOTDIR};
    }
    return Done();
}

bool ensureDirectoryWithParents(const QByteArray& path) {
    for (qsizetype slash = path.indexOf('/', 1); slash > 0; slash = path.indexOf('/', slash + 1)) {
        if (::mkdir(path.first(slash).constData(), 0700) != 0 && errno != EEXIST && errno != EROFS && errno != EACCES) {
            return false;
        }
    }
    return ::mkdir(path.constData(), 0700) == 0 || errno == EEXIST;
}

QByteArray homeDirectory() {
    const QByteArray home = qgetenv("HOME");
    if (home.startsWith('/')) {
        return home;
    }
    const passwd* const user = ::getpwuid(::getuid());
    return user != nullptr ? QByteArray(user->pw_dir) : QByteArray();
}

std::optional<TrashDirectory> homeTrash() {
    QByteArray data = qgetenv("XDG_DATA_HOME");
    if (!data.startsWith('/')) {
        const QByteArray home = homeDirectory();
        if (!home.startsWith('/')) {
            return std::nullopt;
        }
        data = home + "/.local/share";
    }
    const QByteArray path = FilePath::fromBytes(data + "/Trash").standardized().bytes();
    return ensureDirectoryWithParents(path) ? std::optional(TrashDirectory{path, std::nullopt}) : std::nullopt;
}

/// The device of a directory and, where the system tells it, the mount: one device may be mounted at two places.
std::pair<quint64, quint64> mountOf(const FilePath& directory) {
    struct statx facts {};

    if (::statx(AT_FDCWD, directory.bytes().constData(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &facts) != 0) {
        return {};
    }
    return {makedev(facts.stx_dev_major, facts.stx_dev_minor),
            (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : 0};
}

/// The topmost directory of the mount that holds a directory, whose path is free of links.
QByteArray topOfMount(const FilePath& directory) {
    const auto mount = mountOf(directory);
    FilePath top = directory;
    while (top.bytes() != "/" && mountOf(top.parent()) == mount) {
        top = top.parent();
    }
    return top.bytes();
}

/// The shared trash of a mount is used only if its administrator made it safe; else the user has one of their own.
Result<TrashDirectory, SystemError> mountTrash(const QByteArray& top) {
    const QByteArray prefix = top == "/" ? top : top + '/';
    const QByteArray user = QByteArray::number(::getuid());
    const auto shared = fileStatus(FilePath::fromBytes(prefix + ".Trash"));
    if (shared && shared->kind == FileKind::directory && (shared->mode & S_ISVTX) != 0) {
        const QByteArray path = prefix + ".Trash/" + user;
        if (ensureOwnDirectory(path)) {
            return TrashDirectory{path, prefix};
        }
    }
    const QByteArray path = prefix + ".Trash-" + user;
    if (const auto ready = ensureOwnDirectory(path); !ready) {
        return ready.error();
    }
    return TrashDirectory{path, prefix};
}

/// The name of an entry in the trash, numbered before its extension from the second on, and short enough for the name
/// of its information file.
QByteArray entryName(const QByteArray& name, int number) {
    const qsizetype dot = name.lastIndexOf('.');
    QByteArray base = dot > 0 ? name.first(dot) : name;
    const QByteArray extension = dot > 0 ? name.sliced(dot) : QByteArray();
    const QByteArray tail = (number > 1 ? ' ' + QByteArray::number(number) : QByteArray()) + extension;
    const qsizetype room = longestName - infoSuffix.size() - tail.size();
    if (room <= 0) {
        return entryName(QByteArray(name.first(longestName / 2)).replace('.', '_'), number);
    }
    if (base.size() > room) {
        qsizetype end = room;
        while (end > 1 && (static_cast<unsigned char>(base[end]) & 0xC0) == 0x80) {
            --end;
        }
        base.truncate(end);
    }
    return base + tail;
}

QByteArray information(const QByteArray& originalPath) {
    return "[Trash Info]\nPath=" + originalPath.toPercentEncoding("/") +
           "\nDeletionDate=" + QDateTime::currentDateTime().toString(u"yyyy-MM-ddTHH:mm:ss").toLatin1() + '\n';
}

Status<SystemError> writeWhole(int descriptor, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
        } else if (errno != EINTR) {
            return SystemError::last();
        }
    }
    if (::fsync(descriptor) != 0) {
        return SystemError::last();
    }
    return Done();
}

/// How an entry comes to its free place in a trash.
using Move = Status<SystemError> (*)(const FilePath& source, const FilePath& destination);

Status<SystemError> moveOnDevice(const FilePath& source, const FilePath& destination) {
    return renameWithoutReplacing(AT_FDCWD, source.bytes().constData(), AT_FDCWD, destination.bytes().constData());
}

/// `path` is free of links but for its last component.
Result<FilePath, SystemError> moveInto(const TrashDirectory& trash, const FilePath& path, Move move) {
    const QByteArray files = trash.path + "/files/";
    const QByteArray info = trash.path + "/info/";
    for (const QByteArray& directory : {files, info}) {
        if (::mkdir(directory.constData(), 0700) != 0 && errno != EEXIST) {
            return SystemError::last();
        }
    }
    const QByteArray name = path.bytes().mid(path.bytes().lastIndexOf('/') + 1);
    const QByteArray original = trash.top ? path.bytes().mid(trash.top->size()) : path.bytes();
    for (int number = 1;; ++number) {
        const QByteArray entry = entryName(name, number);
        const QByteArray infoPath = info + entry + infoSuffix;
        // The information file is what reserves the name.
        const FileDescriptor infoFile(
            ::open(infoPath.constData(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!infoFile) {
            if (errno == EEXIST) {
                continue;
            }
            return SystemError::last();
        }
        const FilePath place = FilePath::fromBytes(files + entry);
        auto result = writeWhole(infoFile.number(), information(original));
        if (result) {
            result = move(path, place);
        }
        if (result) {
            return place;
        }
        ::unlink(infoPath.constData());
        if (result.error().code != EEXIST) {
            return result.error();
        }
    }
}

} // namespace

Result<FilePath, SystemError> moveToTrash(const FilePath& given) {
    const FilePath path = given.standardized();
    const std::unique_ptr<char, decltype(&std::free)> realParent(::realpath(path.parent().bytes().constData(), nullptr),
                                                                 &std::free);
    if (!realParent) {
        return SystemError::last();
    }
    const FilePath parent = FilePath::fromBytes(QByteArray(realParent.get()));
    const QByteArray name = path.bytes().mid(path.bytes().lastIndexOf('/') + 1);
    const FilePath real = FilePath::fromBytes((parent.bytes() == "/" ? parent.bytes() : parent.bytes() + '/') + name);
    const auto status = fileStatus(real);
    if (!status) {
        return status.error();
    }
    // Of overlays every file may show another device than its directory, and moves don't depend on it.
    const auto parentStatus = fileStatus(parent);
    if (!parentStatus) {
        return parentStatus.error();
    }

    const std::optional<TrashDirectory> home = homeTrash();
    if (home) {
        const auto homeStatus = fileStatus(FilePath::fromBytes(home->path + '/'));
        if (homeStatus && homeStatus->device == parentStatus->device) {
            auto moved = moveInto(*home, real, &moveOnDevice);
            // Two mounts may show one device.
            if (moved || moved.error().code != EXDEV) {
                return moved;
            }
        }
    }
    const auto ofMount = mountTrash(topOfMount(parent));
    auto moved = ofMount ? moveInto(*ofMount, real, &moveOnDevice) : Result<FilePath, SystemError>(ofMount.error());
    // The top of a mount needn't be the user's, and a mount may be of parts that nothing moves between.
    const bool isWithoutTrash = !ofMount || (!moved && moved.error().code == EXDEV);
    if (isWithoutTrash && home && status->kind == FileKind::regular) {
        return moveInto(*home, real, &moveFile);
    }
    return moved;
}

} // namespace quillary::trash
