#pragma once

#include "Quillary/State/NoteItem.h"

#include <QList>
#include <QString>

#include <variant>

namespace quillary {

/// What is dragged in the sidebar: notes, by their ids, or a folder, by its name.
using SidebarDragItem = std::variant<QList<NoteID>, QString>;

} // namespace quillary
