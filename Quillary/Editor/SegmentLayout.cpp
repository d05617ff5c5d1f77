#include "Quillary/Editor/SegmentLayout.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>

namespace quillary {

namespace {

constexpr char16_t firstRightToLeft = 0x590;
constexpr char16_t objectReplacement = 0xFFFC;
constexpr char16_t hollowSquare = 0x25A1;

/// The unit that stands on the screen for one that QTextLayout draws badly or not at all: U+FFFC gets a negative width
/// from it, and control characters would be invisible.
char16_t standIn(char16_t unit) {
    if (unit < 0x20) {
        return unit == u'\t' ? unit : static_cast<char16_t>(0x2400 + unit);
    }
    if (unit == 0x7F) {
        return 0x2421;
    }
    return (unit >= 0x80 && unit < 0xA0) || unit == objectReplacement ? hollowSquare : unit;
}

QString shown(const QString& text) {
    const auto isReplaced = [](QChar unit) { return standIn(unit.unicode()) != unit.unicode(); };
    if (std::none_of(text.cbegin(), text.cend(), isReplaced)) {
        return text;
    }
    QString result = text;
    for (QChar& unit : result) {
        unit = QChar(standIn(unit.unicode()));
    }
    return result;
}

bool isPlainlyLeftToRight(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.unicode() < firstRightToLeft; });
}

void addSpan(std::vector<HorizontalSpan>& spans, qreal x1, qreal x2) {
    if (x1 != x2) {
        spans.push_back({std::min(x1, x2), std::max(x1, x2)});
    }
}

/// Sorts spans and joins those that touch.
void join(std::vector<HorizontalSpan>& spans) {
    constexpr qreal tolerance = 0.5;
    std::sort(spans.begin(), spans.end(), [](const auto& a, const auto& b) { return a.left < b.left; });
    std::size_t count = 0;
    for (const HorizontalSpan& span : spans) {
        if (count > 0 && span.left <= spans[count - 1].right + tolerance) {
            spans[count - 1].right = std::max(spans[count - 1].right, span.right);
        } else {
            spans[count++] = span;
        }
    }
    spans.resize(count);
}

} // namespace

SegmentLayout::SegmentLayout(const QString& text, const QFont& font, const QTextOption& option,
                             const Preedit* preedit) {
    QString all = text;
    if (preedit) {
        m_preeditAt = preedit->position;
        m_preeditLength = preedit->text.size();
        m_preeditCaret = preedit->caret;
        all.insert(m_preeditAt, preedit->text);
        QList<QTextLayout::FormatRange> formats = preedit->formats;
        for (QTextLayout::FormatRange& format : formats) {
            format.start += static_cast<int>(m_preeditAt);
        }
        m_layout.setFormats(formats);
    }
    m_layout.setText(shown(all));
    m_layout.setFont(font);
    m_layout.setTextOption(option);
    // Without the cache every question would shape the text again.
    m_layout.setCacheEnabled(true);
    m_isLeftToRight = option.textDirection() == Qt::LeftToRight && isPlainlyLeftToRight(all);
}

void SegmentLayout::layOutAsOneRow() {
    m_layout.beginLayout();
    QTextLine line = m_layout.createLine();
    if (line.isValid()) {
        line.setNumColumns(static_cast<int>(m_layout.text().size()));
        line.setPosition({0, 0});
    }
    m_layout.endLayout();
}

qsizetype SegmentLayout::layOutInRows(qreal width, qsizetype target, bool isWhole) {
    const qsizetype end = m_layout.text().size() - m_preeditLength;
    qsizetype used = 0;
    m_unusedRows = 0;
    m_layout.beginLayout();
    for (;;) {
        QTextLine line = m_layout.createLine();
        if (!line.isValid()) {
            break;
        }
        line.setLineWidth(width);
        line.setPosition({0, 0});
        const qsizetype rowEnd = fromLayout(line.textStart() + line.textLength());
        const bool isIncomplete = !isWhole && rowEnd >= end;
        const bool isTooFar = !(isWhole && rowEnd >= end) && rowEnd > target && rowEnd - target > target - used;
        if (used > 0 && (isIncomplete || isTooFar)) {
            m_unusedRows = 1;
            break;
        }
        used = rowEnd;
        if (rowEnd >= target && rowEnd < end) {
            break;
        }
    }
    m_layout.endLayout();
    return used;
}

qreal SegmentLayout::width() const {
    return m_layout.lineCount() > 0 ? m_layout.lineAt(0).naturalTextWidth() : 0;
}

qsizetype SegmentLayout::toLayout(qsizetype position) const {
    if (m_preeditLength == 0 || position < m_preeditAt) {
        return position;
    }
    return position + (position == m_preeditAt ? m_preeditCaret : m_preeditLength);
}

qsizetype SegmentLayout::fromLayout(qsizetype position) const {
    return position <= m_preeditAt ? position : std::max(m_preeditAt, position - m_preeditLength);
}

TextRange SegmentLayout::row(qsizetype row) const {
    const QTextLine line = this->line(row);
    const qsizetype start = fromLayout(line.textStart());
    return {start, fromLayout(line.textStart() + line.textLength()) - start};
}

qsizetype SegmentLayout::rowHolding(qsizetype position) const {
    const qsizetype inLayout = toLayout(position);
    qsizetype low = 0;
    qsizetype high = rowCount() - 1;
    while (low < high) {
        const qsizetype middle = (low + high + 1) / 2;
        if (line(middle).textStart() <= inLayout) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return low;
}

qreal SegmentLayout::xOf(qsizetype row, qsizetype position) const {
    return line(row).cursorToX(static_cast<int>(toLayout(position)));
}

qsizetype SegmentLayout::positionAt(qsizetype row, qreal x) const {
    return fromLayout(line(row).xToCursor(x));
}

std::vector<HorizontalSpan> SegmentLayout::spansOf(qsizetype row, TextRange range) const {
    const QTextLine line = this->line(row);
    const qsizetype from = toLayout(range.location);
    const qsizetype to = toLayout(range.end());
    std::vector<HorizontalSpan> spans;
    if (m_isLeftToRight) {
        addSpan(spans, line.cursorToX(static_cast<int>(from)), line.cursorToX(static_cast<int>(to)));
        return spans;
    }
    for (const QGlyphRun& run : line.glyphRuns(static_cast<int>(from), static_cast<int>(to - from))) {
        const QRectF bounds = run.boundingRect();
        addSpan(spans, bounds.left(), bounds.right());
    }
    // Tabs have no glyphs.
    const QString text = m_layout.text();
    for (qsizetype tab = text.indexOf(u'\t', from); tab >= 0 && tab < to; tab = text.indexOf(u'\t', tab + 1)) {
        addSpan(spans, line.cursorToX(static_cast<int>(tab)),
                line.cursorToX(static_cast<int>(tab), QTextLine::Trailing));
    }
    join(spans);
    return spans;
}

void SegmentLayout::drawText(QPainter& painter, qsizetype row, QPointF baseline,
                             std::span<const ColorRanges::Span> colors) const {
    const QTextLine line = this->line(row);
    const QPointF origin(baseline.x(), baseline.y() - line.ascent());
    // The line itself draws what an input method asked for, underlines for instance.
    if (colors.empty() || m_preeditLength > 0) {
        line.draw(&painter, origin);
        return;
    }
    const auto drawRange = [&](qsizetype from, qsizetype to) {
        if (from < to) {
            for (const QGlyphRun& run : line.glyphRuns(static_cast<int>(from), static_cast<int>(to - from))) {
                painter.drawGlyphRun(origin, run);
            }
        }
    };
    const QPen plain = painter.pen();
    qsizetype done = line.textStart();
    const qsizetype end = done + line.textLength();
    for (const ColorRanges::Span& span : colors) {
        const qsizetype from = std::max(done, span.range.location);
        const qsizetype to = std::min(end, span.range.end());
        drawRange(done, from);
        painter.setPen(QColor::fromRgba(span.attribute));
        drawRange(from, to);
        painter.setPen(plain);
        done = std::max(done, to);
    }
    drawRange(done, end);
}

} // namespace quillary
