#pragma once

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

#include <QByteArrayView>

#include <dirent.h>
#include <memory>
#include <optional>

namespace quillary {

/// Goes through the entries of one directory in the order that the file system gives, without "." and "..".
class DirectoryReader {
public:
    struct Entry {
        /// Ends with a zero byte; valid until the next entry is read.
        QByteArrayView name;
        /// Absent where the file system tells it only with the entry's status.
        std::optional<FileKind> kind;
    };

    /// A link that leads to a directory is followed.
    static Result<DirectoryReader, SystemError> open(const FilePath& directory);

    /// The next entry; none at the end or after a failure, which `error` tells apart.
    std::optional<Entry> next();

    const std::optional<SystemError>& error() const { return m_error; }

    /// The open directory, for calls that take names in it.
    int descriptor() const { return ::dirfd(m_stream.get()); }

private:
    struct Closer {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };

    explicit DirectoryReader(DIR* stream) : m_stream(stream) {}

    std::unique_ptr<DIR, Closer> m_stream;
    std::optional<SystemError> m_error;
};

} // namespace quillary
