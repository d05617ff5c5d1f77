#include "Quillary/Comparison/DiffLineView.h"

#include "Quillary/Comparison/DiffChunks.h"
#include "Quillary/Comparison/Hatching.h"
#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr float markOpacity = 0.26F;
constexpr float removedOpacity = 0.085F;
constexpr float addedOpacity = 0.095F;
constexpr float numberOpacity = 0.8F;
constexpr int tabUnits = 4;

QColor withOpacity(QColor color, float opacity) {
    color.setAlphaF(opacity);
    return color;
}

/// The sign that stands for a unit without one, such as a control character.
QChar signOf(QChar unit) {
    const char16_t value = unit.unicode();
    constexpr char16_t controlSigns = 0x2400;
    if (value < u' ') {
        return value == u'\t' ? unit : QChar(static_cast<char16_t>(controlSigns + value));
    }
    switch (value) {
    case 0x7F:
        return QChar(u'\u2421');
    case 0x85:
    case 0x2028:
    case 0x2029:
        return QChar(u'\u2424');
    case 0xFFFC:
        return QChar(QChar::ReplacementCharacter);
    default:
        return unit;
    }
}

} // namespace

QString DiffLineView::shown(QStringView text) {
    if (text.isEmpty()) {
        return QString(u' ');
    }
    QString result = text.toString();
    for (QChar& unit : result) {
        unit = signOf(unit);
    }
    return result;
}

qsizetype DiffLineView::chunkCount() const {
    return segments ? DiffChunks::count(segments->line()) : 1;
}

std::unique_ptr<QTextLayout> DiffLineView::layout(const DiffMetrics& metrics, double textWidth, qsizetype chunk) const {
    const QStringView line = segments ? segments->line() : QStringView();
    const TextRange range = DiffChunks::range(line, chunk);
    auto result = std::make_unique<QTextLayout>(shown(line.sliced(range.location, range.length)), metrics.textFont);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(tabUnits * metrics.unitWidth);
    result->setTextOption(option);
    result->setCacheEnabled(true);
    result->beginLayout();
    double y = metrics.textTop;
    for (QTextLine row = result->createLine(); row.isValid(); row = result->createLine()) {
        row.setLineWidth(textWidth);
        row.setPosition(QPointF(0, y));
        y += metrics.pitch;
    }
    result->endLayout();
    return result;
}

int DiffLineView::estimatedHeight(const DiffMetrics& metrics, double textWidth, qsizetype chunk) const {
    const QStringView line = segments ? segments->line() : QStringView();
    const qsizetype length = std::min(line.size() - chunk * DiffChunks::length, DiffChunks::length);
    const double rows = std::ceil(static_cast<double>(length) * metrics.unitWidth / textWidth);
    return metrics.pitch * std::max(1, static_cast<int>(rows));
}

QList<QTextLayout::FormatRange> DiffLineView::marks(const TextRange& chunk, const QPalette& palette) const {
    QTextCharFormat format;
    format.setBackground(withOpacity(tone == Tone::removed ? Theme::diffRemoved.in(palette)
                                     : tone == Tone::added ? Theme::diffAdded.in(palette)
                                                           : Theme::secondaryText(palette),
                                     markOpacity));
    QList<QTextLayout::FormatRange> result;
    qsizetype start = chunk.location;
    for (qsizetype i = segments->indexAt(start); i < segments->size() && start < chunk.end(); ++i) {
        const DiffSegment segment = (*segments)[i];
        const qsizetype end = std::min(segment.text.data() + segment.text.size() - segments->line().data(),
                                       static_cast<std::ptrdiff_t>(chunk.end()));
        if (segment.isChanged) {
            result.append({static_cast<int>(start - chunk.location), static_cast<int>(end - start), format});
        }
        start = end;
    }
    return result;
}

QColor DiffLineView::numberColor(const QPalette& palette) {
    // Half as dim as other secondary texts: at its opacity it is read on every ground that a line can have.
    const QColor dimmed = over(withOpacity(palette.color(QPalette::Text), 0.5F), Theme::secondaryText(palette));
    return withOpacity(dimmed, numberOpacity);
}

void DiffLineView::paintNumbers(QPainter& painter, const QRect& rect, const DiffMetrics& metrics,
                                const QPalette& palette) const {
    painter.setPen(numberColor(palette));
    for (qsizetype column = 0; column < numbers.size(); ++column) {
        if (!numbers[column]) {
            continue;
        }
        const QString text = QString::number(*numbers[column]);
        const QRectF place(rect.left() + DiffMetrics::gutterInset + static_cast<double>(column) * metrics.gutterColumn,
                           rect.top(), metrics.gutterColumn, metrics.pitch);
        // Numbers of six digits and more are set smaller, so that none runs into its neighbour.
        QFont font = metrics.gutterFont;
        const double width = QFontMetricsF(font).horizontalAdvance(text);
        if (width > place.width()) {
            font.setPointSizeF(font.pointSizeF() * place.width() / width);
        }
        painter.setFont(font);
        painter.drawText(place, int(Qt::AlignRight | Qt::AlignVCenter) | Qt::TextSingleLine, text);
    }
}

void DiffLineView::paintGround(QPainter& painter, const QRect& rect, const QPalette& palette) const {
    switch (tone) {
    case Tone::neutral:
        break;
    case Tone::removed:
        painter.fillRect(rect, withOpacity(Theme::diffRemoved.in(palette), removedOpacity));
        break;
    case Tone::added:
        painter.fillRect(rect, withOpacity(Theme::diffAdded.in(palette), addedOpacity));
        break;
    case Tone::empty:
        Hatching::paint(painter, rect, palette);
        break;
    }
}

void DiffLineView::paintText(QPainter& painter, const QRect& rect, const DiffMetrics& metrics,
                             const QTextLayout& layout, qsizetype chunk, const QPalette& palette) const {
    if (chunk == 0) {
        paintNumbers(painter, rect, metrics, palette);
    }
    if (segments && segments->size() > 0) {
        painter.setPen(palette.color(QPalette::Text));
        const TextRange range = DiffChunks::range(segments->line(), chunk);
        layout.draw(&painter, QPointF(rect.left() + metrics.textLeft(numbers.size()), rect.top()),
                    marks(range, palette), rect);
    }
}

} // namespace quillary
