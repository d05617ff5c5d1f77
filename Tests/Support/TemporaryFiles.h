#pragma once

namespace quillary::test {

/// Moves the temporary directory of this program to one whose file system keeps birth times and extended attributes, if
/// its own, which may be in memory, doesn't: to the working directory or to /var/tmp. Without such a directory all
/// stays as it is.
void useTemporaryFilesWithAttributes();

} // namespace quillary::test
