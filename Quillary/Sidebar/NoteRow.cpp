#include "Quillary/Sidebar/NoteRow.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

#include <QStyle>

namespace quillary {

void NoteRow::paint(QPainter& painter, const QRect& row, const SidebarLook& look) const {
    look.drawGround(painter, row, isSelected, isHovered);
    if (isCurrent && look.isListFocused) {
        look.drawFrame(painter, row, false);
    }
    const SidebarMetrics& metrics = look.metrics;
    const QColor ground = look.ground(isSelected, isHovered);
    const QColor text = look.palette.color(QPalette::Text);
    const QColor secondary = readable(Theme::secondaryText(look.palette), ground, text);
    const int indent = indented ? SidebarMetrics::indentation : 0;
    const QRect content = SidebarLook::inner(row).adjusted(SidebarMetrics::padding + indent,
                                                           SidebarMetrics::rowPadding - 1, -SidebarMetrics::padding, 0);
    const auto placed = [&](const QRect& rect) {
        return QStyle::visualRect(look.direction, SidebarLook::inner(row), rect);
    };

    QRect first(content.left(), content.top(), content.width(), metrics.titleHeight);
    const int dateWidth = look.drawLine(painter, placed(first), date, metrics.detail, secondary, Qt::AlignTrailing);
    first.setRight(first.right() - dateWidth - SidebarMetrics::padding);
    look.drawLine(painter, placed(first), title, metrics.title, text);

    QRect second(content.left(), first.bottom() + 1 + SidebarMetrics::lineGap, content.width(), metrics.detailHeight);
    const QColor tint = readable(Theme::formatTint(format, look.palette), ground, text);
    const int badgeWidth =
        look.drawLine(painter, placed(second), badge(format), metrics.badge, tint, Qt::AlignTrailing);
    second.setRight(second.right() - badgeWidth - SidebarMetrics::padding);
    look.drawLine(painter, placed(second), excerpt, metrics.detail, secondary);
}

} // namespace quillary
