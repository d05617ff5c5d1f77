#include "Quillary/SendPanel/AgentRow.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

namespace {

constexpr int rowPadding = 10;
constexpr int planeSize = 16;

QFont fontOf(const QModelIndex& index) {
    return index.data(AgentRow::isHeadingRole).toBool() ? Theme::font(11, QFont::DemiBold) : Theme::font(12.5);
}

} // namespace

void AgentRow::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool isHeading = index.data(isHeadingRole).toBool();
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool isCurrent = option.state.testFlag(QStyle::State_HasFocus);
    const bool isHovered = !isHeading && isEnabled && (option.state.testFlag(QStyle::State_MouseOver) || isCurrent);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isHovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(isCurrent ? Theme::rowSelection(option.palette) : Theme::rowHover(option.palette));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(3, 1, -3, -1), 6, 6);
        const QRectF place(option.rect.right() - rowPadding - planeSize,
                           option.rect.center().y() - planeSize / 2.0 + 0.5, planeSize, planeSize);
        drawSymbol(*painter, Symbol::send, place, option.palette.color(QPalette::Text));
    }
    painter->setFont(fontOf(index));
    painter->setPen(isHeading
                        ? Theme::secondaryText(option.palette)
                        : option.palette.color(isEnabled ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    const QRect text = option.rect.adjusted(rowPadding, isHeading ? 6 : 0, -2 * rowPadding - planeSize, 0);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, text.width()));
    painter->restore();
}

QSize AgentRow::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    return {0, QFontMetrics(fontOf(index)).height() + (index.data(isHeadingRole).toBool() ? 12 : 10)};
}

} // namespace quillary
