#pragma once

namespace quillary {

/// Gives an open file the extended attributes of another, access control lists among them: a list that it has itself
/// goes, also if the other has none. What the file system or the user's rights refuse is left out; so is the creation
/// date, which belongs to one file.
void copyExtendedAttributes(int source, int destination);

} // namespace quillary
