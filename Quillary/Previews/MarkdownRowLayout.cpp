#include "Quillary/Previews/MarkdownRowLayout.h"

#include "Quillary/Previews/MarkdownCellBound.h"
#include "Quillary/Previews/MarkdownFormats.h"
#include "Quillary/Previews/MarkdownTableColumns.h"
#include "Quillary/Previews/PreviewText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace quillary {

namespace {

constexpr double unlimitedWidth = 1e6;

Qt::Alignment alignmentOf(MarkdownTable::Alignment alignment) {
    switch (alignment) {
    case MarkdownTable::Alignment::leading:
        return Qt::AlignLeft;
    case MarkdownTable::Alignment::center:
        return Qt::AlignHCenter;
    case MarkdownTable::Alignment::trailing:
        return Qt::AlignRight;
    }
    Q_UNREACHABLE();
}

} // namespace

MarkdownRowLayout::MarkdownRowLayout(const MarkdownRow& row, const Context& context) : m_naturalWidth(context.width) {
    switch (row.kind) {
    case MarkdownRow::Kind::heading:
    case MarkdownRow::Kind::paragraph:
        layOutText(row, context);
        break;
    case MarkdownRow::Kind::code:
        layOutCode(row, context);
        break;
    case MarkdownRow::Kind::table:
        layOutTable(row, context);
        break;
    case MarkdownRow::Kind::rule:
        m_height = 2 * context.style.ruleMargin + MarkdownStyle::hairline;
        break;
    case MarkdownRow::Kind::blank:
        m_height = context.style.lineHeight;
        m_firstBaseline = QFontMetricsF(context.style.body).ascent();
        break;
    }
    m_height = std::ceil(m_height);
}

void MarkdownRowLayout::layOutText(const MarkdownRow& row, const Context& context) {
    const MarkdownStyle& style = context.style;
    const bool isHeading = row.kind == MarkdownRow::Kind::heading;
    const bool hasLine = isHeading && MarkdownStyle::hasLine(row.level);
    const double top = hasLine && row.isFirst ? style.headingMargin : 0;
    Piece& piece = addPiece(context.rows.styledText(row), isHeading ? style.headingFont(row.level) : style.body,
                            context, {0, top});
    piece.right = context.width;
    piece.isSelectable = !context.rows.mayHoldLink(row);
    piece.width = context.width;
    piece.spacing = isHeading ? 0 : style.lineSpacing;
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    piece.layout->setTextOption(option);
    m_height = top + heightOfFirst();
    if (!isHeading && !row.isLast) {
        m_height += style.lineSpacing;
    }
    if (hasLine && row.isLast) {
        m_height += MarkdownStyle::headingLineGap + MarkdownStyle::hairline;
    }
}

void MarkdownRowLayout::layOutCode(const MarkdownRow& row, const Context& context) {
    const MarkdownStyle& style = context.style;
    const MarkdownRows::Code& code = context.rows.codes[static_cast<std::size_t>(row.part.source)];
    double top = row.isFirst ? MarkdownStyle::codePadding : 0;
    if (row.isFirst && !code.language.isEmpty()) {
        top += style.languageHeight;
    }
    Piece& piece = addPiece(context.rows.styledText(row), style.code, context, {MarkdownStyle::codePadding, top});
    if (context.tokens) {
        piece.layout->setFormats(
            MarkdownFormats::ofCode(*context.tokens, row.part.start, context.rows.lengthOf(row), context.palette));
    }
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTabStopDistance(style.codeAdvance * 4);
    piece.width = unlimitedWidth;
    piece.spacing = style.codeLineSpacing;
    piece.layout->setTextOption(option);
    m_height = top + heightOfFirst();
    m_height += row.isLast ? MarkdownStyle::codePadding : style.codeLineSpacing;
    double width = static_cast<double>(code.longestLine) * style.codeAdvance;
    for (int i = 0; i < piece.layout->lineCount(); ++i) {
        width = std::max(width, piece.layout->lineAt(i).naturalTextWidth());
    }
    piece.right = MarkdownStyle::codePadding + width;
    m_naturalWidth = width + 2 * MarkdownStyle::codePadding;
}

void MarkdownRowLayout::layOutTable(const MarkdownRow& row, const Context& context) {
    const MarkdownStyle& style = context.style;
    const MarkdownTableColumns& columns = *context.columns;
    const MarkdownTable& table = context.rows.tables[static_cast<std::size_t>(row.part.source)];
    qsizetype first = 0;
    qsizetype last = columns.count() - 1;
    if (columns.areMany()) {
        first = columns.columnAt(context.viewLeft);
        last = columns.columnAt(context.viewLeft + context.width);
        m_firstColumn = first;
    }
    m_viewLeft = context.viewLeft;
    m_viewWidth = context.width;
    const QFont& font = row.part.start == 0 ? style.headerCell : style.cell;
    const double padding = MarkdownStyle::cellPaddingAcross;
    const double top = row.piece == 0 ? MarkdownStyle::cellPaddingAlong : 0;
    std::vector<double> bounds;
    for (qsizetype column = first; column <= last; ++column) {
        if (!m_pieces.empty()) {
            m_text += u'\t';
        }
        MarkdownStyledText styled = context.rows.cellText(row, column);
        QString unshown;
        if (columns.areMany() && styled.text.size() > 1000) {
            unshown = styled.text.sliced(1000);
            styled = styled.sliced(0, 1000);
        }
        Piece& piece = addPiece(styled, font, context, {columns.left(column) + padding, top}, column);
        m_text += unshown;
        piece.left = columns.left(column);
        piece.right = columns.left(column + 1);
        piece.width = columns.width(column) - 2 * padding;
        piece.isSelectable = !context.rows.mayHoldLink(row, column);
        piece.isCutOff = columns.areMany();
        QTextOption option(alignmentOf(table.alignment(column)));
        option.setWrapMode(columns.areMany() ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
        piece.layout->setTextOption(option);
        bounds.push_back(isInView(piece) ? 0 : context.cellBound->heightOf(styled, piece.width));
    }
    m_cellMargins = top + (row.isCut ? 0 : MarkdownStyle::cellPaddingAlong + MarkdownStyle::hairline);
    m_height = m_cellMargins + heightOfCells(bounds, QFontMetricsF(font).height());
    m_naturalWidth = columns.total();
}

/// The height of the highest cell, at least `least`. Lines get those in view, the first one, and of the others,
/// beginning with the one that may be highest, those that may be higher than all that have them.
double MarkdownRowLayout::heightOfCells(const std::vector<double>& bounds, double least) {
    double height = std::max(least, heightOfFirst());
    std::vector<std::pair<double, const Piece*>> hidden;
    for (std::size_t i = 1; i < m_pieces.size(); ++i) {
        if (isInView(m_pieces[i])) {
            height = std::max(height, breakLines(m_pieces[i]));
        } else {
            hidden.emplace_back(bounds[i], &m_pieces[i]);
        }
    }
    std::sort(hidden.begin(), hidden.end(), std::greater<>());
    for (const auto& [bound, piece] : hidden) {
        if (bound <= height) {
            break;
        }
        height = std::max(height, breakLines(*piece));
    }
    return height;
}

bool MarkdownRowLayout::isInView(const Piece& piece) const {
    return piece.left <= m_viewLeft + m_viewWidth && piece.right >= m_viewLeft;
}

/// Where a text that has no room shows, which leaves its cell's padding free.
QRectF MarkdownRowLayout::shownPartOf(const Piece& piece) const {
    return {piece.origin.x(), 0, piece.width, m_height};
}

bool MarkdownRowLayout::reveal(double viewLeft) {
    if (std::exchange(m_viewLeft, viewLeft) == viewLeft) {
        return false;
    }
    const double known = m_height;
    for (const Piece& piece : m_pieces) {
        if (isInView(piece) && piece.layout->lineCount() == 0) {
            m_height = std::max(m_height, std::ceil(m_cellMargins + breakLines(piece)));
        }
    }
    return m_height > known;
}

MarkdownRowLayout::Piece& MarkdownRowLayout::addPiece(const MarkdownStyledText& styled, const QFont& font,
                                                      const Context& context, QPointF origin, qsizetype column) {
    Piece& piece = m_pieces.emplace_back();
    piece.layout = std::make_unique<QTextLayout>(PreviewText::shown(styled.text), font);
    // Without the cache every question would shape the text again.
    piece.layout->setCacheEnabled(true);
    piece.layout->setFormats(MarkdownFormats::ofText(styled, font, context.palette));
    piece.origin = origin;
    piece.start = m_text.size();
    piece.length = styled.text.size();
    m_text += styled.text;
    for (const MarkdownStyledText::Run& run : styled.runs) {
        if (run.link >= 0) {
            const MarkdownLinkPlace link{column, run.link};
            const qsizetype start = piece.start + run.start;
            const bool goesOn = !m_linkRuns.empty() && m_linkRuns.back().link == link &&
                                m_linkRuns.back().start + m_linkRuns.back().length == start;
            if (goesOn) {
                m_linkRuns.back().length += run.length;
            } else {
                m_linkRuns.push_back({link, start, run.length});
            }
        }
    }
    return piece;
}

/// The height of the first text's lines, of which the first has the row's first baseline.
double MarkdownRowLayout::heightOfFirst() {
    const Piece& piece = m_pieces.front();
    const double height = breakLines(piece);
    const QTextLine line = piece.layout->lineAt(0);
    m_firstBaseline = piece.origin.y() + line.y() + line.ascent();
    return height;
}

/// Gives the height of the lines.
double MarkdownRowLayout::breakLines(const Piece& piece) {
    QTextLayout& layout = *piece.layout;
    const QFontMetricsF metrics(layout.font());
    double y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(piece.width, 1.0));
        if (y > 0) {
            y += piece.spacing;
        }
        // A line of nothing but small code stands on the same baseline as its neighbours.
        const double ascent = std::max(line.ascent(), metrics.ascent());
        line.setPosition({0, y + ascent - line.ascent()});
        y += ascent + std::max(line.height() - line.ascent(), metrics.height() - metrics.ascent());
    }
    layout.endLayout();
    return y;
}

const QTextLayout& MarkdownRowLayout::linesOf(const Piece& piece) {
    if (piece.layout->lineCount() == 0) {
        breakLines(piece);
    }
    return *piece.layout;
}

qsizetype MarkdownRowLayout::textStart(const MarkdownRows& rows, const MarkdownRow& row) const {
    if (!m_textStart) {
        qsizetype start = 0;
        for (qsizetype column = 0; column < m_firstColumn; ++column) {
            start += rows.cellText(row, column).text.size() + 1;
        }
        m_textStart = start;
    }
    return *m_textStart;
}

const MarkdownRowLayout::Piece* MarkdownRowLayout::pieceHolding(qsizetype position) const {
    const auto behind = std::upper_bound(m_pieces.begin(), m_pieces.end(), position,
                                         [](qsizetype wanted, const Piece& piece) { return wanted < piece.start; });
    return behind == m_pieces.begin() ? nullptr : &*(behind - 1);
}

qsizetype MarkdownRowLayout::positionAt(QPointF place) const {
    if (m_pieces.empty()) {
        return 0;
    }
    const auto behind = std::upper_bound(m_pieces.begin(), m_pieces.end(), place.x(),
                                         [](double x, const Piece& piece) { return x < piece.left; });
    const Piece& piece = behind == m_pieces.begin() ? m_pieces.front() : *(behind - 1);
    const QPointF inside = place - piece.origin;
    const QTextLayout& layout = linesOf(piece);
    if (layout.lineCount() == 0) {
        return piece.start;
    }
    int low = 0;
    int high = layout.lineCount() - 1;
    while (low < high) {
        const int middle = (low + high) / 2;
        const QTextLine line = layout.lineAt(middle);
        if (line.y() + line.height() > inside.y()) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    const QTextLine line = layout.lineAt(low);
    int position = line.xToCursor(inside.x());
    // Behind the last character of a line that breaks is the start of the next one.
    if (low + 1 < layout.lineCount() && position == line.textStart() + line.textLength()) {
        position = layout.previousCursorPosition(position);
    }
    return piece.start + std::min<qsizetype>(position, piece.length);
}

QRectF MarkdownRowLayout::rectOf(qsizetype position) const {
    const Piece* const piece = pieceHolding(position);
    if (!piece || linesOf(*piece).lineCount() == 0) {
        return {0, 0, 1, m_height};
    }
    const auto inside = static_cast<int>(std::min(position - piece->start, piece->length));
    QTextLine line = piece->layout->lineForTextPosition(inside);
    if (!line.isValid()) {
        line = piece->layout->lineAt(piece->layout->lineCount() - 1);
    }
    const double x = line.cursorToX(inside);
    const double end = line.cursorToX(piece->layout->nextCursorPosition(inside));
    return QRectF(std::min(x, end), line.y(), std::max(std::abs(end - x), 1.0), line.height())
        .translated(piece->origin);
}

bool MarkdownRowLayout::isSelectableAt(qsizetype position) const {
    const Piece* const piece = pieceHolding(position);
    return !piece || piece->isSelectable;
}

std::vector<QRectF> MarkdownRowLayout::rectsOf(TextRange range) const {
    std::vector<QRectF> rects;
    const Piece* const piece = pieceHolding(range.location);
    if (!piece) {
        return rects;
    }
    const qsizetype from = range.location - piece->start;
    const qsizetype to = range.end() - piece->start;
    const QTextLayout& layout = linesOf(*piece);
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        const qsizetype first = std::max<qsizetype>(from, line.textStart());
        const qsizetype last = std::min<qsizetype>(to, line.textStart() + line.textLength());
        if (first < last) {
            const double x1 = line.cursorToX(static_cast<int>(first));
            const double x2 = line.cursorToX(static_cast<int>(last));
            const QRectF rect =
                QRectF(std::min(x1, x2), line.y(), std::abs(x2 - x1), line.height()).translated(piece->origin);
            rects.push_back(piece->isCutOff ? rect.intersected(shownPartOf(*piece)) : rect);
        }
    }
    return rects;
}

std::optional<MarkdownLinkPlace> MarkdownRowLayout::linkAt(QPointF place) const {
    if (m_linkRuns.empty()) {
        return std::nullopt;
    }
    const qsizetype nearest = positionAt(place);
    for (const LinkRun& run : m_linkRuns) {
        // The place may be on the half of the character before the nearest position.
        if (nearest < run.start || nearest > run.start + run.length) {
            continue;
        }
        for (const QRectF& rect : rectsOf({run.start, run.length})) {
            if (rect.contains(place)) {
                return run.link;
            }
        }
    }
    return std::nullopt;
}

std::vector<QRectF> MarkdownRowLayout::rectsOfLink(const MarkdownLinkPlace& link) const {
    std::vector<QRectF> rects;
    for (const LinkRun& run : m_linkRuns) {
        if (run.link == link) {
            const std::vector<QRectF> more = rectsOf({run.start, run.length});
            rects.insert(rects.end(), more.begin(), more.end());
        }
    }
    return rects;
}

void MarkdownRowLayout::draw(QPainter& painter, QPointF origin, const QRectF& clip, TextRange selection,
                             const QPalette& palette) const {
    for (const Piece& piece : m_pieces) {
        const QPointF place = origin + piece.origin;
        if (place.x() > clip.right() || origin.x() + piece.right < clip.left()) {
            continue;
        }
        QList<QTextLayout::FormatRange> selections;
        const qsizetype from = std::max(selection.location, piece.start);
        const qsizetype to = std::min(selection.end(), piece.start + piece.length);
        if (from < to) {
            QTextCharFormat format;
            format.setBackground(palette.color(QPalette::Highlight));
            format.setForeground(palette.color(QPalette::HighlightedText));
            selections.append({static_cast<int>(from - piece.start), static_cast<int>(to - from), format});
        }
        if (!piece.isCutOff) {
            linesOf(piece).draw(&painter, place, selections, clip);
            continue;
        }
        painter.save();
        painter.setClipRect(shownPartOf(piece).translated(origin), Qt::IntersectClip);
        linesOf(piece).draw(&painter, place, selections, clip);
        painter.restore();
    }
}

} // namespace quillary
