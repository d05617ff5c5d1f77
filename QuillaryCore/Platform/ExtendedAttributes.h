#pragma once

namespace quillary {

/// Gives an open file the extended attributes of another, access control lists among them. What the file system or the
/// user's rights refuse is left out; so is the creation date, which belongs to one file.
void copyExtendedAttributes(int source, int destination);

} // namespace quillary
