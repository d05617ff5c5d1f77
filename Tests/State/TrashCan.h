#pragma once

#include "QuillaryCore/Platform/FilePath.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillary::test {

/// An entry of the user's trash, as the desktop's file manager finds it.
struct TrashedItem {
    /// The file or directory where it lies now.
    FilePath path;

    /// The record beside it, byte by byte.
    QByteArray record;

    /// The bytes of the file, or of one in the directory.
    QByteArray contents(const QString& name = {}) const;
};

/// What was trashed last from a path; none if nothing was.
std::optional<TrashedItem> trashedFrom(const FilePath& path);

} // namespace quillary::test
