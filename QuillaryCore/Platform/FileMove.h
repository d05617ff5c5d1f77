#pragma once

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

namespace quillary {

/// Moves a file or a directory to a path at which nothing is; otherwise the failure is EEXIST, also when another
/// program takes the name at the last moment. A change of letter case alone is carried out on file systems that take
/// both spellings for one name. An ordinary file moves to another file system too, with its dates; a directory doesn't.
/// A failure leaves the source where it is, and no copy of it, unless the source can't be seen any more.
Status<SystemError> moveFile(const FilePath& source, const FilePath& destination);

/// The move within one file system, of names in open directories.
Status<SystemError> renameWithoutReplacing(int sourceDirectory, const char* source, int destinationDirectory,
                                           const char* destination);

/// How the same is done where the file system can't do it in one step: an ordinary file gets its second name before it
/// loses its first; for what can't have two names the destination is claimed first and then replaced by the source.
Status<SystemError> renameByLinking(int sourceDirectory, const char* source, int destinationDirectory,
                                    const char* destination);
Status<SystemError> renameOntoClaim(int sourceDirectory, const char* source, int destinationDirectory,
                                    const char* destination);

/// How a change of letter case is carried out where both spellings lead to one file, so that the destination is never
/// free: by way of a third name. That one can be seen and keeps the extension, so that the file isn't lost should the
/// program end there. If the destination is taken after all, the file keeps its name and the failure is EEXIST.
Status<SystemError> renameByWayOfThirdName(const FilePath& source, const FilePath& destination);

} // namespace quillary
