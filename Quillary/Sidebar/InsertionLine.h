#pragma once

#include "Quillary/Sidebar/SidebarLook.h"

namespace quillary {

/// Where a dragged note would go, seen from a row.
enum class InsertionEdge {
    above,
    below,
};

/// The small mark at the edge of a row where a drop goes: a ring and a line.
struct InsertionLine {
    /// Draws it along a height of the list, between two edges.
    static void paint(QPainter& painter, int left, int right, int y, const SidebarLook& look);
};

} // namespace quillary
