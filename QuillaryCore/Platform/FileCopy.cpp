#include "QuillaryCore/Platform/FileCopy.h"

#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/ExtendedAttributes.h"
#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace quillary {

namespace {

using CopyBuffer = std::array<char, 256 * 1024>;

Status<SystemError> copyContents(int source, AtomicFile& copy) {
    const auto buffer = std::make_unique<CopyBuffer>();
    for (;;) {
        const ssize_t length = ::read(source, buffer->data(), buffer->size());
        if (length == 0) {
            return Done();
        }
        if (length < 0) {
            if (errno == EINTR) {
                continue;
            }
            return SystemError::last();
        }
        if (const auto written = copy.write(QByteArrayView(buffer->data(), length)); !written) {
            return written;
        }
    }
}

} // namespace

Status<SystemError> copyFile(const FilePath& source, const FilePath& destination) {
    // A pipe must not hold the program up.
    const FileDescriptor original(::open(source.bytes().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!original) {
        return SystemError::last();
    }
    const auto status = fileStatus(original.number());
    if (!status) {
        return status.error();
    }
    if (status->kind != FileKind::regular) {
        return notAnOrdinaryFile(status->kind);
    }
    auto copy = AtomicFile::openNew(destination);
    if (!copy) {
        return copy.error();
    }
    if (const auto copied = copyContents(original.number(), *copy); !copied) {
        return copied;
    }
    copyExtendedAttributes(original.number(), copy->descriptor());
    ::fchmod(copy->descriptor(), (status->mode & 0777U) | S_IRUSR | S_IWUSR);
    if (status->modified != distantPast) {
        const timespec stamps[] = {{0, UTIME_OMIT}, timestampFromMoment(status->modified)};
        ::futimens(copy->descriptor(), stamps);
    }
    const Moment created = creation_date::of(original.number(), *status);
    const auto made = copy->create(created == distantPast ? std::nullopt : std::optional(created));
    if (!made) {
        return made.error();
    }
    return Done();
}

} // namespace quillary
