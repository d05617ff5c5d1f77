#pragma once

#include "Quillary/Sidebar/SidebarLook.h"
#include "QuillaryCore/Notes/NoteFormat.h"

#include <QString>

namespace quillary {

/// The drawing of a note's row: title and date, and below them the beginning of its text and the mark of its format.
struct NoteRow {
    QString title;
    QString date;
    QString excerpt;
    NoteFormat format = NoteFormat::plain;
    bool isSelected = false;
    /// Whether the keyboard's cursor stands here.
    bool isCurrent = false;
    bool isHovered = false;
    bool indented = false;

    void paint(QPainter& painter, const QRect& row, const SidebarLook& look) const;
};

} // namespace quillary
