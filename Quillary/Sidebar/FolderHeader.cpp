#include "Quillary/Sidebar/FolderHeader.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

#include <QPainterPath>
#include <QStyle>

namespace quillary {

namespace {

constexpr int markWidth = 14;
constexpr int symbolWidth = 22;
constexpr int nameStart = SidebarMetrics::padding - 2 + markWidth + symbolWidth;

void drawDisclosure(QPainter& painter, const QRect& rect, bool isCollapsed, bool isMirrored, const QColor& color) {
    const QPointF center = QRectF(rect).center();
    constexpr double arm = 3;
    QPainterPath path;
    if (isCollapsed) {
        const double tip = isMirrored ? -arm / 2 : arm / 2;
        path.moveTo(center + QPointF(-tip, -arm));
        path.lineTo(center + QPointF(tip, 0));
        path.lineTo(center + QPointF(-tip, arm));
    } else {
        path.moveTo(center + QPointF(-arm, -arm / 2));
        path.lineTo(center + QPointF(0, arm / 2));
        path.lineTo(center + QPointF(arm, -arm / 2));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

void drawFolderSymbol(QPainter& painter, const QRect& rect, const QColor& color) {
    const QRectF body = QRectF(QPointF(), QSizeF(14, 10)).translated(QRectF(rect).center() - QPointF(9, 4.5));
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(body, 1.8, 1.8);
    path.addRoundedRect(QRectF(body.topLeft() + QPointF(0, -2), QSizeF(6, 5)), 1.5, 1.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(path);
}

} // namespace

void FolderHeader::paint(QPainter& painter, const QRect& row, const SidebarLook& look) const {
    look.drawGround(painter, row, isSelected, isHovered);
    if (isTargeted || (isSelected && look.isListFocused)) {
        look.drawFrame(painter, row, isTargeted);
    }
    const SidebarMetrics& metrics = look.metrics;
    const QRect inner = SidebarLook::inner(row);
    const QColor text = look.palette.color(QPalette::Text);
    const QColor ground = look.ground(isSelected, isHovered);
    const QColor secondary = readable(Theme::secondaryText(look.palette), ground, text);
    const auto placed = [&](const QRect& rect) { return QStyle::visualRect(look.direction, inner, rect); };

    QRect rest = inner.adjusted(SidebarMetrics::padding - 2, 0, -SidebarMetrics::padding, 0);
    drawDisclosure(painter, placed({rest.left(), rest.top(), markWidth, rest.height()}), isCollapsed,
                   look.direction == Qt::RightToLeft, secondary);
    rest.setLeft(rest.left() + markWidth);
    drawFolderSymbol(painter, placed({rest.left(), rest.top(), symbolWidth, rest.height()}),
                     color ? readable(Theme::folderColor(*color, look.palette), ground, text, markContrast)
                           : secondary);
    rest.setLeft(inner.left() + nameStart);
    if (isRenaming) {
        return;
    }
    const int countWidth =
        look.drawLine(painter, placed(rest), QString::number(count), metrics.detail, secondary, Qt::AlignTrailing);
    rest.setRight(rest.right() - countWidth - SidebarMetrics::padding);
    look.drawLine(painter, placed(rest), name, metrics.title, text);
}

QRect FolderHeader::nameRect(const QRect& row, const SidebarLook& look) {
    const QRect inner = SidebarLook::inner(row);
    constexpr int frame = 4;
    return QStyle::visualRect(look.direction, inner, inner.adjusted(nameStart - frame, 2, -2, -2));
}

} // namespace quillary
