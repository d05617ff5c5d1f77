#pragma once

#include "Quillary/Sidebar/SidebarLook.h"
#include "QuillaryCore/Notes/FolderColor.h"

#include <QString>

#include <optional>

namespace quillary {

/// The drawing of a folder's header: whether it is open, its colour, its name and the number of its notes.
struct FolderHeader {
    QString name;
    qsizetype count = 0;
    std::optional<FolderColor> color;
    bool isCollapsed = false;
    bool isSelected = false;
    bool isHovered = false;
    /// Whether a drop would go into it.
    bool isTargeted = false;
    /// Whether the name is being edited, in a field over its place.
    bool isRenaming = false;

    void paint(QPainter& painter, const QRect& row, const SidebarLook& look) const;

    /// Where the name stands in a header, for the field that edits it.
    static QRect nameRect(const QRect& row, const SidebarLook& look);
};

} // namespace quillary
