#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr double beyond = 40;

QColor withOpacity(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

/// The pixel's edge that is nearest. Places that differ by what sums of heights are rounded by have the same one.
double settled(double place) {
    return std::floor(place + 0.5 + 1e-6);
}

/// A box to tick: empty, or filled with a tick in the ground's colour.
void drawTaskBox(QPainter& painter, const QRectF& place, bool isDone, const QPalette& palette) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = std::max(place.width() * 0.09, 1.0);
    const QRectF box = place.adjusted(line / 2, line / 2, -line / 2, -line / 2);
    const double radius = place.width() * 0.22;
    if (isDone) {
        const QColor accent = palette.color(QPalette::Link);
        painter.setPen(QPen(accent, line));
        painter.setBrush(accent);
        painter.drawRoundedRect(box, radius, radius);
        QPainterPath tick;
        tick.moveTo(place.left() + place.width() * 0.26, place.top() + place.height() * 0.53);
        tick.lineTo(place.left() + place.width() * 0.44, place.top() + place.height() * 0.70);
        tick.lineTo(place.left() + place.width() * 0.75, place.top() + place.height() * 0.32);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette.color(QPalette::Base), line * 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(tick);
    } else {
        painter.setPen(QPen(Theme::secondaryText(palette), line));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box, radius, radius);
    }
    painter.restore();
}

} // namespace

void MarkdownPreview::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRectF clip(event->rect());
    if (rowCount() == 0) {
        return;
    }
    double top = -m_anchor.offset;
    for (qsizetype index = m_anchor.row; index < rowCount() && top < clip.bottom(); ++index) {
        const double height = heightOf(index);
        if (top + height >= clip.top()) {
            const MarkdownRow& painted = row(index);
            const double gap = m_style.gap(painted.gap);
            paintRow(painter, index, {contentLeft(painted), top + gap, contentWidth(painted), height - gap}, clip);
        }
        top += height;
    }
    if (nextToLayOut()) {
        m_aheadTimer.start(0, this);
    }
}

QPointF MarkdownPreview::textOrigin(qsizetype index, const QRectF& content) const {
    const MarkdownRow& placed = row(index);
    return {content.left() - sideways(placed), content.top()};
}

void MarkdownPreview::paintRow(QPainter& painter, qsizetype index, const QRectF& content, const QRectF& clip) const {
    const MarkdownRow& painted = row(index);
    const MarkdownRowLayout& layout = layoutOf(index);
    paintFrames(painter, index, content);
    const bool isBoxed = painted.kind == MarkdownRow::Kind::code || painted.kind == MarkdownRow::Kind::table;
    if (isBoxed) {
        paintBox(painter, painted, content);
    } else if (painted.kind == MarkdownRow::Kind::rule) {
        painter.fillRect(QRectF(content.left(), std::round(content.top() + m_style.ruleMargin), content.width(),
                                Hairline::thicknessOn(*this)),
                         Theme::separator(palette()));
        return;
    } else if (painted.kind == MarkdownRow::Kind::heading && MarkdownStyle::hasLine(painted.level) && painted.isLast) {
        painter.fillRect(QRectF(content.left(), content.bottom() - MarkdownStyle::hairline, content.width(),
                                Hairline::thicknessOn(*this)),
                         Theme::separator(palette()));
    }

    const bool isQuoted = [&] {
        for (qint32 frame = painted.frame; frame >= 0;) {
            const MarkdownFrame& around = m_rows.frames[static_cast<std::size_t>(frame)];
            if (around.isQuote()) {
                return true;
            }
            frame = around.parent;
        }
        return false;
    }();
    painter.save();
    QRectF textClip = clip;
    if (isBoxed) {
        textClip = clip.intersected(content.adjusted(1, 0, -1, 0));
        painter.setClipRect(textClip);
    }
    painter.setPen(isQuoted ? Theme::secondaryText(palette()) : palette().color(QPalette::Text));
    const QPointF origin = textOrigin(index, content);
    layout.draw(painter, origin, textClip, selectionIn(index), palette());
    paintLinks(painter, index, origin);
    painter.restore();

    if (const QRectF thumb = sidewaysThumb(index); !thumb.isNull()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(withOpacity(palette().color(QPalette::Text), m_draggedThumb == index ? 0.5F : 0.22F));
        painter.drawRoundedRect(thumb, thumb.height() / 2, thumb.height() / 2);
        painter.restore();
    }
}

/// The bars of the quotes that a row lies in, and the markers of the items that begin with it.
void MarkdownPreview::paintFrames(QPainter& painter, qsizetype index, const QRectF& content) const {
    const double page = pageLeft();
    const MarkdownRow& painted = row(index);
    qint32 begun = painted.begun;
    for (qint32 frame = painted.frame; frame >= 0; --begun) {
        const MarkdownFrame& around = m_rows.frames[static_cast<std::size_t>(frame)];
        const double contentLeft = page + m_style.left(m_rows, frame, pageWidth());
        if (around.isQuote()) {
            // From the quote's first row on the bar goes through the gaps between its rows.
            const double top = begun > 0 ? content.top() : content.top() - m_style.gap(painted.gap);
            const double left = contentLeft - m_style.indent(around);
            // Half a pixel has half the colour, so that all bars look alike; rows meet at whole ones.
            painter.save();
            painter.setRenderHint(QPainter::Antialiasing);
            painter.fillRect(QRectF(QPointF(left, settled(top)),
                                    QPointF(left + MarkdownStyle::quoteBarWidth, settled(content.bottom()))),
                             withOpacity(Theme::secondaryText(palette()), MarkdownStyle::quoteBarOpacity));
            painter.restore();
        } else if (begun > 0) {
            const MarkdownRowLayout& layout = layoutOf(index);
            const double baseline = layout.firstBaseline() > 0 ? layout.firstBaseline() : m_style.lineHeight * 0.8;
            paintMarker(painter, around, contentLeft, content.top() + baseline);
        }
        frame = around.parent;
    }
}

void MarkdownPreview::paintMarker(QPainter& painter, const MarkdownFrame& frame, double contentLeft,
                                  double baseline) const {
    const double gap = m_style.baseSize * 0.5;
    const double right = contentLeft - gap;
    if (frame.marker == MarkdownFrame::Marker::open || frame.marker == MarkdownFrame::Marker::done) {
        const double size = std::round(m_style.boxSize);
        const double top = std::round(baseline - size * 0.88);
        drawTaskBox(painter, {std::round(right - size), top, size, size}, frame.marker == MarkdownFrame::Marker::done,
                    palette());
        return;
    }
    const bool isNumber = frame.marker == MarkdownFrame::Marker::number;
    const QString text = isNumber ? QString::number(frame.number) + u'.' : QString(QChar(0x2022));
    painter.setFont(m_style.body);
    painter.setPen(isNumber ? palette().color(QPalette::Text) : Theme::secondaryText(palette()));
    const QFontMetricsF metrics(m_style.body);
    painter.drawText(QPointF(right - metrics.horizontalAdvance(text), baseline), text);
}

/// The slice of a code block's or a table's box that a row has.
void MarkdownPreview::paintBox(QPainter& painter, const MarkdownRow& boxed, const QRectF& content) const {
    painter.save();
    painter.setClipRect(content);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isTable = boxed.kind == MarkdownRow::Kind::table;
    QRectF box = content.adjusted(0, boxed.isFirst ? 0 : -beyond, 0, boxed.isLast ? 0 : beyond);
    if (isTable) {
        box.setWidth(std::min(columnsOf(boxed).total(), content.width()));
    }
    const double radius = isTable ? 4 : MarkdownStyle::codeRadius;
    const QColor line = Theme::separator(palette());
    const double border = Hairline::thicknessOn(*this);
    painter.setPen(QPen(line, border));
    painter.setBrush(isTable ? Qt::NoBrush : QBrush(Theme::subtleFill(palette())));
    painter.drawRoundedRect(box.adjusted(border / 2, border / 2, -border / 2, -border / 2), radius, radius);
    if (!isTable) {
        const MarkdownRows::Code& code = m_rows.codes[static_cast<std::size_t>(boxed.part.source)];
        if (boxed.isFirst && !code.language.isEmpty()) {
            painter.setFont(m_style.language);
            painter.setPen(Theme::secondaryText(palette()));
            const QRectF place = content.adjusted(MarkdownStyle::codePadding, 6, -MarkdownStyle::codePadding, 0);
            painter.drawText(place, Qt::AlignTop | Qt::AlignLeft | Qt::TextSingleLine,
                             painter.fontMetrics().elidedText(code.language.left(100), Qt::ElideRight,
                                                              static_cast<int>(place.width())));
        }
    } else {
        painter.setRenderHint(QPainter::Antialiasing, false);
        if (boxed.part.start == 0) {
            painter.fillRect(box.intersected(content).adjusted(1, 1, -1, 0), Theme::subtleFill(palette()));
        }
        const MarkdownTableColumns& columns = columnsOf(boxed);
        const double offset = sideways(boxed);
        for (qsizetype column = columns.columnAt(offset) + 1;
             column < columns.count() && columns.left(column) - offset < box.width(); ++column) {
            painter.fillRect(
                QRectF(std::round(content.left() + columns.left(column) - offset), content.top(), 1, content.height()),
                line);
        }
        if (!boxed.isLast && !boxed.isCut) {
            painter.fillRect(QRectF(box.left(), content.bottom() - 1, box.width(), 1), line);
        }
    }
    painter.restore();
}

/// A line below the link under the mouse, and a frame around the one that has the focus.
void MarkdownPreview::paintLinks(QPainter& painter, qsizetype index, QPointF origin) const {
    const MarkdownRowLayout& layout = layoutOf(index);
    const QColor color = palette().color(QPalette::Link);
    if (m_hoveredLink && m_hoveredLink->row == index) {
        for (const QRectF& rect : layout.rectsOfLink(m_hoveredLink->place)) {
            const QRectF place = rect.translated(origin);
            painter.fillRect(QRectF(place.left(), std::round(place.bottom() - 1), place.width(), 1), color);
        }
    }
    if (m_focusedLink && m_focusedLink->row == index && hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 1.5));
        painter.setBrush(Qt::NoBrush);
        for (const QRectF& rect : layout.rectsOfLink(m_focusedLink->place)) {
            painter.drawRoundedRect(rect.translated(origin).adjusted(-2, -0.5, 2, 0.5), 3, 3);
        }
    }
}

} // namespace quillary
