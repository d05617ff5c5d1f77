#include "Quillary/Previews/JSONRowView.h"

#include "Quillary/Previews/JSONRowsModel.h"
#include "Quillary/Previews/PreviewText.h"
#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <cmath>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr double rowHeightFactor = 1.65;
constexpr double fontFactor = 0.95;
constexpr qsizetype shownUnits = 500;

JSONTreeRow rowOf(const QModelIndex& index) {
    return static_cast<const JSONRowsModel*>(index.model())->row(index.row());
}

/// The mark of a container: a small angle that points down if it is open.
void drawMark(QPainter& painter, QRectF place, bool isOpen, const QColor& color) {
    constexpr double greatestReach = 3.6;
    const double reach = std::min(place.height() * 0.13, greatestReach);
    QPainterPath angle;
    angle.moveTo(-reach * 0.6, -reach);
    angle.lineTo(reach * 0.6, 0);
    angle.lineTo(-reach * 0.6, reach);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center().x() - 1, place.center().y());
    painter.rotate(isOpen ? 90 : 0);
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(angle);
    painter.restore();
}

int contentLeft(const JSONTreeRow& row) {
    return JSONRowView::padding + static_cast<int>(row.depth()) * JSONRowView::indent + JSONRowView::markWidth;
}

} // namespace

QString JSONRowView::labelText(const JSONTreeRow& row) {
    const JSONTreeRow::Label label = row.label();
    if (const auto* const key = std::get_if<QString>(&label)) {
        return PreviewText::oneLine(*key, shownUnits) + u": "_s;
    }
    if (const auto* const index = std::get_if<qint64>(&label)) {
        return QString::number(*index) + u": "_s;
    }
    return {};
}

QString JSONRowView::valueText(const JSONTreeRow& row) {
    const JSONValue value = row.value();
    switch (value.kind()) {
    case JSONValue::Kind::string: {
        const QString text = value.string();
        const bool isCut = text.size() > shownUnits;
        QStringView beginning = QStringView(text).first(std::min(text.size(), shownUnits));
        if (isCut && beginning.back().isHighSurrogate()) {
            beginning.chop(1);
        }
        const QString quoted = JSONFormatter::quoted(beginning);
        return PreviewText::oneLine(isCut ? quoted.chopped(1) + QChar(0x2026) : quoted, quoted.size() + 1);
    }
    case JSONValue::Kind::number:
        return PreviewText::oneLine(value.number(), shownUnits);
    case JSONValue::Kind::boolean:
        return value.boolean() ? u"true"_s : u"false"_s;
    case JSONValue::Kind::null:
        return u"null"_s;
    case JSONValue::Kind::object:
        return value.childCount() == 0 ? u"{ }"_s : u"{ %1 }"_s.arg(value.childCount());
    case JSONValue::Kind::array:
        return value.childCount() == 0 ? u"[ ]"_s : u"[ %1 ]"_s.arg(value.childCount());
    }
    Q_UNREACHABLE();
}

QColor JSONRowView::valueColor(JSONValue::Kind kind, const QPalette& palette, bool isSelected) {
    const auto shown = [&](const QColor& color) {
        return isSelected ? readable(color, palette.color(QPalette::Highlight), palette.color(QPalette::Text)) : color;
    };
    switch (kind) {
    case JSONValue::Kind::string:
        return shown(Theme::jsonString.in(palette));
    case JSONValue::Kind::number:
        return shown(Theme::jsonNumber.in(palette));
    case JSONValue::Kind::boolean:
    case JSONValue::Kind::null:
        return shown(Theme::jsonLiteral.in(palette));
    case JSONValue::Kind::object:
    case JSONValue::Kind::array:
        return shown(Theme::secondaryText(palette));
    }
    Q_UNREACHABLE();
}

QSize JSONRowView::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {m_rowWidth, static_cast<int>(std::lround(m_baseSize * rowHeightFactor * Theme::textScale()))};
}

void JSONRowView::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const JSONTreeRow row = rowOf(index);
    const QPalette& palette = option.palette;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected) {
        painter->fillRect(option.rect, palette.color(QPalette::Highlight));
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        painter->fillRect(option.rect, Theme::rowHover(palette));
    }
    QRect rest = option.rect.adjusted(contentLeft(row), 0, -padding, 0);
    const JSONValue value = row.value();
    if (value.isContainer()) {
        drawMark(*painter, QRectF(rest.left() - markWidth, rest.top(), markWidth, rest.height()), row.isExpanded(),
                 valueColor(value.kind(), palette, isSelected));
    }
    painter->setFont(Theme::font(m_baseSize * fontFactor));
    const QFontMetrics metrics = painter->fontMetrics();
    const auto draw = [&](const QString& part, const QColor& color) {
        painter->setPen(color);
        painter->drawText(rest, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                          metrics.elidedText(part, Qt::ElideRight, rest.width()));
        rest.setLeft(std::min(rest.left() + metrics.horizontalAdvance(part), rest.right() + 1));
    };
    draw(labelText(row), palette.color(QPalette::Text));
    if (rest.width() > 0) {
        draw(valueText(row), valueColor(value.kind(), palette, isSelected));
    }
}

bool JSONRowView::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                            const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const JSONTreeRow row = rowOf(index);
    const QFontMetrics metrics(Theme::font(m_baseSize * fontFactor));
    const QString shown = labelText(row) + valueText(row);
    const bool isWhole = metrics.horizontalAdvance(shown) <= option.rect.width() - contentLeft(row) - padding;
    if (row.value().isContainer() || isWhole) {
        QToolTip::hideText();
        return false;
    }
    QToolTip::showText(event->globalPos(), PreviewText::toolTip(JSONTree::valueToCopy(row.value())), view->viewport(),
                       option.rect);
    return true;
}

} // namespace quillary
