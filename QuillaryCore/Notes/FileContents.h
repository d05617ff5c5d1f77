#pragma once

#include "QuillaryCore/Notes/FileError.h"
#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Result.h"

#include <QByteArrayView>

#include <array>
#include <optional>
#include <type_traits>

namespace quillary {

/// Room for the contents of most notes, so that reading one allocates nothing but its text.
using SmallFileBuffer = std::array<char, 64 * 1024>;

/// The bytes of an ordinary file, in `small` if they fit in, else in `large`. A file of more than `limit` bytes is
/// refused with fileTooLarge. A size that is expected, as it was a moment ago, saves a call where it is still true and
/// not zero.
Result<QByteArrayView, FileError> readFileContents(const FilePath& path, qint64 limit, SmallFileBuffer& small,
                                                   QByteArray& large, std::optional<qint64> expected = {});

/// What `use` makes of the bytes of an ordinary file.
template <typename Use>
auto withFileContents(const FilePath& path, qint64 limit, Use use, std::optional<qint64> expected = {})
    -> Result<std::invoke_result_t<Use, QByteArrayView>, FileError> {
    SmallFileBuffer small;
    QByteArray large;
    const auto bytes = readFileContents(path, limit, small, large, expected);
    if (!bytes) {
        return bytes.error();
    }
    return use(*bytes);
}

} // namespace quillary
