#include "Quillary/Sidebar/SidebarLook.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetrics>
#include <QStyle>

namespace quillary {

namespace {

constexpr double cornerRadius = 6;

} // namespace

SidebarMetrics SidebarMetrics::measured() {
    SidebarMetrics metrics;
    metrics.title = Theme::sidebarTitle();
    metrics.detail = Theme::sidebarDetail();
    metrics.badge = Theme::caption();
    metrics.heading = Theme::caption();
    metrics.heading.setWeight(QFont::DemiBold);
    metrics.titleHeight = QFontMetrics(metrics.title).height();
    metrics.detailHeight = QFontMetrics(metrics.detail).height();
    metrics.noteHeight = metrics.titleHeight + lineGap + metrics.detailHeight + 2 * rowPadding;
    metrics.folderHeight = metrics.titleHeight + 2 * rowPadding;
    metrics.groupHeight = QFontMetrics(metrics.heading).height() + 2 * rowPadding;
    return metrics;
}

int SidebarMetrics::height(SidebarRow::Kind kind) const {
    switch (kind) {
    case SidebarRow::Kind::note:
        return noteHeight;
    case SidebarRow::Kind::folderHeader:
        return folderHeight;
    case SidebarRow::Kind::groupHeader:
        return groupHeight;
    }
    Q_UNREACHABLE();
}

QColor SidebarLook::ground(bool isSelected, bool isHovered) const {
    const QColor background = Theme::sidebarBackground.in(palette);
    if (isSelected) {
        return over(Theme::rowSelection(palette), background);
    }
    return isHovered ? over(Theme::rowHover(palette), background) : background;
}

QColor SidebarLook::accent() const {
    return palette.color(QPalette::Link);
}

void SidebarLook::drawGround(QPainter& painter, const QRect& row, bool isSelected, bool isHovered) const {
    if (isSelected || isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground(isSelected, isHovered));
        painter.drawRoundedRect(inner(row), cornerRadius, cornerRadius);
    }
}

void SidebarLook::drawFrame(QPainter& painter, const QRect& row, bool isFilled) const {
    constexpr double width = 1.5;
    constexpr float fillOpacity = 0.14F;
    QColor fill = accent();
    fill.setAlphaF(fillOpacity);
    painter.setPen(QPen(accent(), width));
    painter.setBrush(isFilled ? QBrush(fill) : QBrush(Qt::NoBrush));
    constexpr double inset = width / 2;
    painter.drawRoundedRect(QRectF(inner(row)).adjusted(inset, inset, -inset, -inset), cornerRadius, cornerRadius);
}

int SidebarLook::drawLine(QPainter& painter, const QRect& rect, const QString& text, const QFont& font,
                          const QColor& color, Qt::Alignment alignment) const {
    if (text.isEmpty()) {
        return 0;
    }
    const QFontMetrics fontMetrics(font);
    const QString shown = fontMetrics.elidedText(text, Qt::ElideRight, rect.width());
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(
        rect, static_cast<int>(QStyle::visualAlignment(direction, alignment) | Qt::AlignVCenter) | Qt::TextSingleLine,
        shown);
    return fontMetrics.horizontalAdvance(shown);
}

QRect SidebarLook::inner(const QRect& row) {
    return row.adjusted(SidebarMetrics::margin, 1, -SidebarMetrics::margin, -1);
}

} // namespace quillary
