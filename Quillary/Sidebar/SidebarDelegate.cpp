#include "Quillary/Sidebar/SidebarDelegate.h"

#include "Quillary/Sidebar/SidebarModel.h"
#include "Quillary/Theme/Theme.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 8;
constexpr int padding = 8;
constexpr int indentation = 14;
constexpr int lineGap = 3;
constexpr int rowPadding = 7;

void fillRow(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect) {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    if (!selected && !hovered) {
        return;
    }
    constexpr double radius = 6;
    painter->setPen(Qt::NoPen);
    painter->setBrush(selected ? Theme::rowSelection(option.palette) : Theme::rowHover(option.palette));
    painter->drawRoundedRect(rect, radius, radius);
    if (selected && option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(Theme::separator(option.palette), 1));
        painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
}

/// Draws a text in one line, cut with an ellipsis, and gives the width that it took.
int drawLine(QPainter* painter, const QRect& rect, const QString& text, const QFont& font, const QColor& color,
             Qt::Alignment alignment = Qt::AlignLeading) {
    const QFontMetrics metrics(font);
    const QString shown = metrics.elidedText(text, Qt::ElideRight, rect.width());
    painter->setFont(font);
    painter->setPen(color);
    painter->drawText(rect, int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
    return metrics.horizontalAdvance(shown);
}

int lineHeight(const QFont& font) {
    return QFontMetrics(font).height();
}

void drawDisclosure(QPainter* painter, const QRect& rect, bool collapsed, const QColor& color) {
    const QPointF center = QRectF(rect).center();
    constexpr double arm = 3;
    QPainterPath path;
    if (collapsed) {
        path.moveTo(center + QPointF(-arm / 2, -arm));
        path.lineTo(center + QPointF(arm / 2, 0));
        path.lineTo(center + QPointF(-arm / 2, arm));
    } else {
        path.moveTo(center + QPointF(-arm, -arm / 2));
        path.lineTo(center + QPointF(0, arm / 2));
        path.lineTo(center + QPointF(arm, -arm / 2));
    }
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(color, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(path);
}

void drawFolder(QPainter* painter, const QRect& rect, const QColor& color) {
    const QRectF body = QRectF(QPointF(), QSizeF(14, 10)).translated(QRectF(rect).center() - QPointF(7, 4.5));
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(body, 1.8, 1.8);
    path.addRoundedRect(QRectF(body.topLeft() + QPointF(0, -2), QSizeF(6, 5)), 1.5, 1.5);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    painter->drawPath(path);
}

} // namespace

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (index.data(SidebarModel::kindRole).value<SidebarRow::Kind>()) {
    case SidebarRow::Kind::note:
        paintNote(painter, option, index);
        break;
    case SidebarRow::Kind::folderHeader:
        paintFolder(painter, option, index);
        break;
    case SidebarRow::Kind::groupHeader:
        paintGroup(painter, option, index);
        break;
    }
    painter->restore();
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    switch (index.data(SidebarModel::kindRole).value<SidebarRow::Kind>()) {
    case SidebarRow::Kind::note:
        return {0, rowHeights().note};
    case SidebarRow::Kind::folderHeader:
        return {0, rowHeights().folder};
    case SidebarRow::Kind::groupHeader:
        return {0, rowHeights().group};
    }
    Q_UNREACHABLE();
}

/// The list asks for the size of every row; fonts are measured once and not ten thousand times.
const SidebarDelegate::RowHeights& SidebarDelegate::rowHeights() const {
    const QFont font = QGuiApplication::font();
    if (!m_rowHeights || m_rowHeights->font != font) {
        const int title = lineHeight(Theme::sidebarTitle());
        m_rowHeights = {font, title + lineGap + lineHeight(Theme::sidebarDetail()) + 2 * rowPadding,
                        title + 2 * rowPadding, lineHeight(Theme::caption()) + 2 * rowPadding};
    }
    return *m_rowHeights;
}

void SidebarDelegate::paintNote(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QRect row = option.rect.adjusted(margin, 1, -margin, -1);
    fillRow(painter, option, row);
    const int indent = index.data(SidebarModel::indentedRole).toBool() ? indentation : 0;
    const QRect content = row.adjusted(padding + indent, rowPadding - 1, -padding, -(rowPadding - 1));
    const QColor text = option.palette.color(QPalette::Text);
    const QColor secondary = Theme::secondaryText(option.palette);

    QRect first(content.left(), content.top(), content.width(), lineHeight(Theme::sidebarTitle()));
    const QString date = index.data(SidebarModel::dateRole).toString();
    const int dateWidth =
        drawLine(painter, first, date, Theme::sidebarDetail(), secondary, Qt::AlignTrailing | Qt::AlignAbsolute);
    first.setRight(first.right() - dateWidth - padding);
    drawLine(painter, first, index.data(Qt::DisplayRole).toString(), Theme::sidebarTitle(), text);

    QRect second(content.left(), first.bottom() + 1 + lineGap, content.width(), lineHeight(Theme::sidebarDetail()));
    const auto& model = *static_cast<const SidebarModel*>(index.model());
    const NoteItem& note = *model.row(index).note;
    const int badgeWidth =
        drawLine(painter, second, index.data(SidebarModel::badgeRole).toString(), Theme::caption(),
                 Theme::formatTint(note.format(), option.palette), Qt::AlignTrailing | Qt::AlignAbsolute);
    second.setRight(second.right() - badgeWidth - padding);
    const QString snippet = index.data(SidebarModel::snippetRole).toString();
    const bool isEmpty = snippet.isEmpty() && note.document() != nullptr;
    drawLine(painter, second, isEmpty ? tr("Vuota") : snippet, Theme::sidebarDetail(), secondary);
}

void SidebarDelegate::paintFolder(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const QRect row = option.rect.adjusted(margin, 1, -margin, -1);
    fillRow(painter, option, row);
    const auto& model = *static_cast<const SidebarModel*>(index.model());
    const QColor secondary = Theme::secondaryText(option.palette);
    constexpr int markWidth = 14;
    constexpr int folderWidth = 18;
    QRect rest = row.adjusted(padding - 2, 0, -padding, 0);

    drawDisclosure(painter, QRect(rest.left(), rest.top(), markWidth, rest.height()),
                   index.data(SidebarModel::collapsedRole).toBool(), secondary);
    rest.setLeft(rest.left() + markWidth);

    const auto& colors = model.store().folderColors();
    const auto color = colors.constFind(model.row(index).title);
    drawFolder(painter, QRect(rest.left(), rest.top(), folderWidth, rest.height()),
               color == colors.constEnd() ? secondary : Theme::folderColor(*color, option.palette));
    rest.setLeft(rest.left() + folderWidth + 4);

    const int countWidth =
        drawLine(painter, rest, option.locale.toString(index.data(SidebarModel::countRole).toLongLong()),
                 Theme::sidebarDetail(), secondary, Qt::AlignTrailing | Qt::AlignAbsolute);
    rest.setRight(rest.right() - countWidth - padding);
    drawLine(painter, rest, index.data(Qt::DisplayRole).toString(), Theme::sidebarTitle(),
             option.palette.color(QPalette::Text));
}

void SidebarDelegate::paintGroup(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    QFont font = Theme::caption();
    font.setWeight(QFont::DemiBold);
    const QRect content = option.rect.adjusted(margin + padding, rowPadding, -(margin + padding), 0);
    drawLine(painter, content, index.data(Qt::DisplayRole).toString(), font, Theme::secondaryText(option.palette));
}

} // namespace quillary
