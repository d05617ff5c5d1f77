#include "QuillaryCore/Platform/FileMove.h"

#include "QuillaryCore/Platform/FileCopy.h"
#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

Status<SystemError> statusOfCall(int result) {
    if (result != 0) {
        return SystemError::last();
    }
    return Done();
}

/// The end of a move by a second name or by a copy: only one of both stays.
Status<SystemError> removeMoved(int sourceDirectory, const char* source, int destinationDirectory,
                                const char* destination) {
    if (::unlinkat(sourceDirectory, source, 0) == 0) {
        return Done();
    }
    const SystemError error = SystemError::last();
    // Over a network that may be the answer to the second asking, after the first one's was lost.
    if (error.code == ENOENT) {
        return Done();
    }
    // Where the source can't be seen any more, the destination may be all there is.
    if (fileStatus(sourceDirectory, source)) {
        ::unlinkat(destinationDirectory, destination, 0);
    }
    return error;
}

bool differInCaseOnly(const FilePath& source, const FilePath& destination) {
    return source.parent() == destination.parent() &&
           source.fileName().compare(destination.fileName(), Qt::CaseInsensitive) == 0;
}

} // namespace

Status<SystemError> renameByLinking(int sourceDirectory, const char* source, int destinationDirectory,
                                    const char* destination) {
    if (::linkat(sourceDirectory, source, destinationDirectory, destination, 0) != 0) {
        return SystemError::last();
    }
    return removeMoved(sourceDirectory, source, destinationDirectory, destination);
}

Status<SystemError> renameOntoClaim(int sourceDirectory, const char* source, int destinationDirectory,
                                    const char* destination) {
    const auto status = fileStatus(sourceDirectory, source);
    if (!status) {
        return status.error();
    }
    const bool isDirectory = status->kind == FileKind::directory;
    if (isDirectory) {
        if (::mkdirat(destinationDirectory, destination, 0700) != 0) {
            return SystemError::last();
        }
    } else {
        const FileDescriptor claim(
            ::openat(destinationDirectory, destination, O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!claim) {
            return SystemError::last();
        }
    }
    if (::renameat(sourceDirectory, source, destinationDirectory, destination) != 0) {
        const SystemError error = SystemError::last();
        if (fileStatus(sourceDirectory, source)) {
            ::unlinkat(destinationDirectory, destination, isDirectory ? AT_REMOVEDIR : 0);
            return error;
        }
        // Where the source can't be seen any more, it may have been renamed all the same.
        const auto moved = fileStatus(destinationDirectory, destination);
        return moved && moved->isSameFile(*status) ? Status<SystemError>(Done()) : error;
    }
    return Done();
}

Status<SystemError> renameWithoutReplacing(int sourceDirectory, const char* source, int destinationDirectory,
                                           const char* destination) {
    const auto renamed =
        statusOfCall(::renameat2(sourceDirectory, source, destinationDirectory, destination, RENAME_NOREPLACE));
    const bool cannotRename = !renamed && (renamed.error().code == EINVAL || renamed.error().code == ENOSYS ||
                                           renamed.error().code == EOPNOTSUPP);
    if (!cannotRename) {
        return renamed;
    }
    const auto linked = renameByLinking(sourceDirectory, source, destinationDirectory, destination);
    // A file system without second names, or the server behind it, may say so with any other error.
    const bool mayClaim =
        !linked && linked.error().code != EEXIST && linked.error().code != ENOENT && linked.error().code != EXDEV;
    return mayClaim ? renameOntoClaim(sourceDirectory, source, destinationDirectory, destination) : linked;
}

Status<SystemError> renameByWayOfThirdName(const FilePath& source, const FilePath& destination) {
    const QString extension = source.extension();
    const QString third = u"quillary-"_s + QString::number(QRandomGenerator::global()->generate64(), 36) +
                          (extension.isEmpty() ? QString() : u'.' + extension);
    const FilePath between = source.parent().appending(third);
    const auto rename = [](const FilePath& from, const FilePath& to) {
        return renameWithoutReplacing(AT_FDCWD, from.bytes().constData(), AT_FDCWD, to.bytes().constData());
    };
    if (const auto moved = rename(source, between); !moved) {
        return moved;
    }
    const auto moved = rename(between, destination);
    if (!moved) {
        // Taken by a hard link of that name, or by another program meanwhile.
        if (const auto back = rename(between, source); !back) {
            return back;
        }
    }
    return moved;
}

Status<SystemError> moveFile(const FilePath& source, const FilePath& destination) {
    const auto renamed =
        renameWithoutReplacing(AT_FDCWD, source.bytes().constData(), AT_FDCWD, destination.bytes().constData());
    if (renamed) {
        return renamed;
    }
    if (renamed.error().code == EEXIST && differInCaseOnly(source, destination)) {
        const auto from = fileStatus(source);
        const auto to = fileStatus(destination);
        return from && to && from->isSameFile(*to) ? renameByWayOfThirdName(source, destination) : renamed;
    }
    if (renamed.error().code == EXDEV) {
        const auto status = fileStatus(source);
        if (!status || status->kind != FileKind::regular) {
            return renamed;
        }
        if (const auto copied = copyFile(source, destination); !copied) {
            return copied.error();
        }
        return removeMoved(AT_FDCWD, source.bytes().constData(), AT_FDCWD, destination.bytes().constData());
    }
    return renamed;
}

} // namespace quillary
