#include "QuillaryCore/Platform/DirectoryReader.h"

#include <cerrno>

namespace quillary {

namespace {

std::optional<FileKind> kindOfEntry(unsigned char type) {
    switch (type) {
    case DT_UNKNOWN:
        return std::nullopt;
    case DT_REG:
        return FileKind::regular;
    case DT_DIR:
        return FileKind::directory;
    case DT_LNK:
        return FileKind::symbolicLink;
    default:
        return FileKind::other;
    }
}

} // namespace

Result<DirectoryReader, SystemError> DirectoryReader::open(const FilePath& directory) {
    DIR* const stream = ::opendir(directory.bytes().constData());
    if (stream == nullptr) {
        return SystemError::last();
    }
    return DirectoryReader(stream);
}

std::optional<DirectoryReader::Entry> DirectoryReader::next() {
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(m_stream.get());
        if (entry == nullptr) {
            if (errno != 0) {
                m_error = SystemError::last();
            }
            return std::nullopt;
        }
        const QByteArrayView name(entry->d_name);
        if (name != "." && name != "..") {
            return Entry{name, kindOfEntry(entry->d_type)};
        }
    }
}

} // namespace quillary
