#pragma once

#include "Quillary/Sidebar/SidebarLook.h"

#include <QString>

namespace quillary {

/// The drawing of a group's heading.
struct SectionHeader {
    QString title;
    /// Whether a drop would bring notes to the top level.
    bool isTargeted = false;

    void paint(QPainter& painter, const QRect& row, const SidebarLook& look) const;
};

} // namespace quillary
