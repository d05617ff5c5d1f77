#pragma once

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

namespace quillary::trash {

/// Moves a file or a directory, whole, to the user's trash as the freedesktop.org Trash specification 1.0 lays it out:
/// the home trash, or that of the mount which holds the file; their directories are made when missing. Where the mount
/// can have none, an ordinary file goes to the home trash by a copy. The result is the place in the trash. A failure
/// leaves the file where it is; nothing is ever deleted instead.
Result<FilePath, SystemError> moveToTrash(const FilePath& path);

} // namespace quillary::trash
