#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

#include <QtGlobal>

#include <optional>

struct statx;
struct timespec;

namespace quillary {

/// What an entry of a directory is; a symbolic link is a link, whatever it leads to.
enum class FileKind { regular, directory, symbolicLink, other };

/// The facts of one file as the system keeps them, dates to the nanosecond.
struct FileStatus {
    FileKind kind = FileKind::other;
    quint64 device = 0;
    quint64 inode = 0;
    quint32 mode = 0;
    quint32 owner = 0;
    quint32 group = 0;
    qint64 size = 0;
    /// Of the contents, and of the file's entry in the file system; distantPast where unknown.
    Moment modified = distantPast;
    Moment changed = distantPast;
    /// When this very file was made; not every file system keeps it.
    std::optional<Moment> born;

    bool isSameFile(const FileStatus& other) const { return device == other.device && inode == other.inode; }

    friend bool operator==(const FileStatus&, const FileStatus&) = default;
};

/// The facts of the entry at a path; a link is not followed.
Result<FileStatus, SystemError> fileStatus(const FilePath& path);

/// The facts of an entry of an open directory, or of an open file; a link is not followed.
Result<FileStatus, SystemError> fileStatus(int directory, const char* name);
Result<FileStatus, SystemError> fileStatus(int descriptor);

/// The error for an entry that should have been an ordinary file.
SystemError notAnOrdinaryFile(FileKind kind);

/// Between the system's time stamps and moments; what lies outside the range of a moment gives the nearest end.
Moment momentFromTimestamp(qint64 seconds, quint32 nanoseconds);
timespec timestampFromMoment(Moment moment);

} // namespace quillary
