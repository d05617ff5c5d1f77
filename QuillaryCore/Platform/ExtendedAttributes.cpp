#include "QuillaryCore/Platform/ExtendedAttributes.h"

#include "QuillaryCore/Platform/CreationDate.h"

#include <QByteArray>

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

namespace quillary {

namespace {

constexpr char accessControlList[] = "system.posix_acl_access";

/// What a call gives that first tells how much room it needs; the amount may grow between two calls.
template <typename Read>
QByteArray readGrowing(Read read) {
    QByteArray bytes;
    for (;;) {
        const ssize_t needed = read(nullptr, 0);
        if (needed <= 0) {
            return {};
        }
        bytes.resize(needed);
        const ssize_t length = read(bytes.data(), static_cast<std::size_t>(needed));
        if (length >= 0) {
            bytes.truncate(length);
            return bytes;
        }
        if (errno != ERANGE) {
            return {};
        }
    }
}

} // namespace

void copyExtendedAttributes(int source, int destination) {
    // A new file may have one from its directory, which names people who have no rights to the source.
    ::fremovexattr(destination, accessControlList);
    const QByteArray names =
        readGrowing([source](char* bytes, std::size_t size) { return ::flistxattr(source, bytes, size); });
    for (const char* name = names.constBegin(); name < names.constEnd(); name += std::strlen(name) + 1) {
        if (std::strcmp(name, creation_date::attributeName) == 0) {
            continue;
        }
        const QByteArray value = readGrowing(
            [source, name](char* bytes, std::size_t size) { return ::fgetxattr(source, name, bytes, size); });
        ::fsetxattr(destination, name, value.constData(), static_cast<std::size_t>(value.size()), 0);
    }
}

} // namespace quillary
