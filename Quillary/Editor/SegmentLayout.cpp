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

bool isJoiner(char16_t unit) {
    return unit == 0x200C || unit == 0x200D;
}

/// Whether a unit takes no room on the screen although it says something: marks of direction, blanks of no width, soft
/// hyphens, signs of invisible operations.
bool isHidden(char16_t unit) {
    return unit == 0xAD || unit == 0x61C || unit == 0x180E || (unit >= 0x200B && unit <= 0x200F) ||
           (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF ||
           (unit >= 0xFFF9 && unit <= 0xFFFB);
}

/// A joiner does its ordinary work between the letters of a script that joins, and between emoji.
bool joinsItsNeighbours(const QString& text, qsizetype position) {
    constexpr char16_t firstOfJoiningScripts = 0x590;
    const auto isJoining = [&](qsizetype at) {
        return at >= 0 && at < text.size() && text[at].unicode() >= firstOfJoiningScripts &&
               !isHidden(text[at].unicode());
    };
    return isJoining(position - 1) && isJoining(position + 1);
}

std::vector<int> hiddenCharactersIn(const QString& text) {
    std::vector<int> positions;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (isHidden(unit) && !(isJoiner(unit) && joinsItsNeighbours(text, i))) {
            positions.push_back(static_cast<int>(i));
        }
    }
    return positions;
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
    m_hiddenCharacters = hiddenCharactersIn(all);
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
                             std::span<const ColorRanges::Span> colors, const QColor& hiddenCharacters) const {
    const QTextLine line = this->line(row);
    const QPointF origin(baseline.x(), baseline.y() - line.ascent());
    drawGlyphs(painter, line, origin, colors);
    if (!m_hiddenCharacters.empty()) {
        drawHiddenCharacters(painter, line, origin, hiddenCharacters);
    }
}

void SegmentLayout::drawGlyphs(QPainter& painter, const QTextLine& line, QPointF origin,
                               std::span<const ColorRanges::Span> colors) const {
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

/// Each is a thin upright with a head, at the place where the character stands between its neighbours: nothing moves
/// for it, and the text keeps the order that the character gives it.
void SegmentLayout::drawHiddenCharacters(QPainter& painter, const QTextLine& line, QPointF origin,
                                         const QColor& color) const {
    constexpr int headSize = 3;
    const int end = line.textStart() + line.textLength();
    const auto first = std::lower_bound(m_hiddenCharacters.begin(), m_hiddenCharacters.end(), line.textStart());
    for (auto position = first; position != m_hiddenCharacters.end() && *position < end; ++position) {
        const int x = qRound(origin.x() + line.cursorToX(*position));
        const int top = qRound(origin.y());
        painter.fillRect(QRect(x, top, 1, qRound(line.height())), color);
        painter.fillRect(QRect(x - headSize / 2, top, headSize, headSize), color);
    }
}

} // namespace quillary
