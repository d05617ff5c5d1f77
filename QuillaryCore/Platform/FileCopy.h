#pragma once

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

namespace quillary {

/// Copies an ordinary file to a path at which nothing is (otherwise the failure is EEXIST), with its mode, creation and
/// modification dates and extended attributes. The copy appears whole or not at all, and its owner can write it.
Status<SystemError> copyFile(const FilePath& source, const FilePath& destination);

} // namespace quillary
