#include "Quillary/Sidebar/SectionHeader.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

namespace quillary {

void SectionHeader::paint(QPainter& painter, const QRect& row, const SidebarLook& look) const {
    if (isTargeted) {
        look.drawFrame(painter, row, true);
    }
    constexpr int indent = SidebarMetrics::margin + SidebarMetrics::padding;
    // The text stands nearer to what it heads than to what ends above it.
    constexpr int drop = SidebarMetrics::rowPadding - 2;
    const QColor color =
        readable(Theme::secondaryText(look.palette), look.ground(false, false), look.palette.color(QPalette::Text));
    look.drawLine(painter, row.adjusted(indent, drop, -indent, 0), title, look.metrics.heading, color);
}

} // namespace quillary
