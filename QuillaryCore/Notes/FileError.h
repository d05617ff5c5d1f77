#pragma once

#include "QuillaryCore/Notes/NoteStoreError.h"
#include "QuillaryCore/Platform/SystemError.h"

#include <QString>

#include <variant>

namespace quillary {

/// Why an operation on note files failed: the file layer's own reasons, or what the operating system reports.
using FileError = std::variant<NoteStoreError, SystemError>;

/// What a person reads about it; the system's failures keep the system's text.
QString localizedDescription(const FileError& error);

} // namespace quillary
