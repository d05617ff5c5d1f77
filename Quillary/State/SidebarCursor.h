#pragma once

#include "Quillary/State/NoteItem.h"

#include <QString>

#include <variant>

namespace quillary {

/// A stop of the keyboard's cursor in the sidebar: the header of a folder, by its name, or a note, by its id.
using SidebarCursor = std::variant<QString, NoteID>;

} // namespace quillary
