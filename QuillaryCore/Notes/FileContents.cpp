#include "QuillaryCore/Notes/FileContents.h"

#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

namespace quillary {

namespace {

/// Reads until `size` bytes are there, or the expected number, or the file ends; negative after a failure. Only a call
/// that gives nothing tells the end: where something further on can't be read, a call gives what is before it, and the
/// next one fails. That a file is empty is never believed: it may just be written, or its size be told by nobody.
qsizetype readAt(int file, char* bytes, qsizetype size, qsizetype offset, std::optional<qint64> expected = {}) {
    qsizetype total = 0;
    while (total < size && (total == 0 || total != expected)) {
        const ssize_t length = ::pread(file, bytes + total, static_cast<std::size_t>(size - total), offset + total);
        if (length == 0) {
            break;
        }
        if (length > 0) {
            total += length;
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return total;
}

} // namespace

Result<QByteArrayView, FileError> readFileContents(const FilePath& path, qint64 limit, SmallFileBuffer& small,
                                                   QByteArray& large, std::optional<qint64> expected) {
    // Without O_NONBLOCK the opening of a pipe would wait for its other end.
    const FileDescriptor file(::open(path.bytes().constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        return FileError(SystemError::last());
    }
    // What is read by position is no pipe: a small note takes no look at its facts.
    const qsizetype length = readAt(file.number(), small.data(), small.size(), 0, expected);
    if (length < 0) {
        return FileError(SystemError::last());
    }
    if (length > 0 && length < qsizetype(small.size())) {
        return QByteArrayView(small.data(), length);
    }

    const auto status = fileStatus(file.number());
    if (!status) {
        return FileError(status.error());
    }
    if (status->kind != FileKind::regular) {
        return FileError(notAnOrdinaryFile(status->kind));
    }
    if (status->size > limit) {
        return FileError(NoteStoreError::fileTooLarge(FilePath::displayText(path.fileName()), status->size));
    }
    if (length == 0) {
        return QByteArrayView(small.data(), qsizetype(0));
    }
    // One byte more than there should be shows a file that grows meanwhile.
    qsizetype capacity = std::max<qsizetype>(status->size, length) + 1;
    large.resize(capacity);
    std::copy(small.begin(), small.begin() + length, large.begin());
    qsizetype total = length;
    for (;;) {
        const qsizetype more = readAt(file.number(), large.data() + total, capacity - total, total);
        if (more < 0) {
            return FileError(SystemError::last());
        }
        total += more;
        if (total > limit) {
            return FileError(NoteStoreError::fileTooLarge(FilePath::displayText(path.fileName()), total));
        }
        if (total < capacity) {
            return QByteArrayView(large.constData(), total);
        }
        capacity = std::min<qsizetype>(capacity * 2, limit + 1);
        large.resize(capacity);
    }
}

} // namespace quillary
