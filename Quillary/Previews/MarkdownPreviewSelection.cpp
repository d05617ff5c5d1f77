#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Previews/MarkdownPreviewAccessible.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace quillary {

QString MarkdownPreview::rowText(qsizetype index) const {
    const MarkdownRow& wanted = row(index);
    if (wanted.kind != MarkdownRow::Kind::table) {
        return m_rows.styledText(wanted).text;
    }
    const MarkdownTable& table = m_rows.tables[static_cast<std::size_t>(wanted.part.source)];
    // In a table of very many columns, most of which a row may not have, a line ends where what is written in it does.
    const qsizetype columns = std::min(
        table.columnCount(), std::max(table.filledCount(wanted.part.start), MarkdownTableColumns::mostMeasured));
    QString text;
    for (qsizetype column = 0; column < columns; ++column) {
        if (column > 0) {
            text += u'\t';
        }
        text += m_rows.cellText(wanted, column).text;
    }
    return text;
}

QString MarkdownPreview::separatorAbove(qsizetype index) const {
    if (index == 0) {
        return {};
    }
    const MarkdownRow& below = row(index);
    switch (below.gap) {
    case MarkdownRow::Gap::block:
    case MarkdownRow::Gap::nested:
        return QStringLiteral("\n\n");
    case MarkdownRow::Gap::item:
        return QStringLiteral("\n");
    case MarkdownRow::Gap::none:
        break;
    }
    const MarkdownRow& above = row(index - 1);
    const bool isPieceOfText =
        !below.isFirst && below.kind != MarkdownRow::Kind::code && below.kind != MarkdownRow::Kind::table;
    const bool goesOn = isPieceOfText || (!below.isFirst && above.isCut);
    return goesOn ? QString() : QStringLiteral("\n");
}

QString MarkdownPreview::selectedText() const {
    QString text;
    if (!hasSelection()) {
        return text;
    }
    for (qsizetype index = m_selectionStart.row; index <= m_selectionEnd.row; ++index) {
        if (index > m_selectionStart.row) {
            text += separatorAbove(index);
        }
        const QString whole = rowText(index);
        const qsizetype from = index == m_selectionStart.row ? m_selectionStart.offset : 0;
        const qsizetype to = index == m_selectionEnd.row ? std::min(m_selectionEnd.offset, whole.size()) : whole.size();
        text += QStringView(whole).sliced(std::min(from, to), std::max<qsizetype>(to - from, 0));
    }
    return text;
}

TextRange MarkdownPreview::selectionIn(qsizetype index) const {
    if (!hasSelection() || index < m_selectionStart.row || index > m_selectionEnd.row) {
        return {};
    }
    const qsizetype from = index == m_selectionStart.row ? m_selectionStart.offset : 0;
    const MarkdownRowLayout& layout = layoutOf(index);
    const qsizetype start = layout.textStart(m_rows, row(index));
    const qsizetype size = layout.text().size();
    const qsizetype to = index == m_selectionEnd.row ? m_selectionEnd.offset - start : size;
    const qsizetype first = std::clamp<qsizetype>(from - start, 0, size);
    return {first, std::max<qsizetype>(std::min(to, size) - first, 0)};
}

void MarkdownPreview::select(Position start, Position end) {
    if (end < start) {
        std::swap(start, end);
    }
    if (start == m_selectionStart && end == m_selectionEnd) {
        return;
    }
    m_selectionStart = start;
    m_selectionEnd = end;
    viewport()->update();
    MarkdownPreviewAccessible::announceSelection(*this);
    Q_EMIT selectionChanged();
}

void MarkdownPreview::selectAll() {
    if (rowCount() > 0) {
        const qsizetype last = rowCount() - 1;
        select({0, 0}, {last, rowText(last).size()});
        setPrimarySelection();
    }
}

void MarkdownPreview::copy() const {
    if (hasSelection()) {
        QGuiApplication::clipboard()->setText(selectedText());
    }
}

void MarkdownPreview::setPrimarySelection() const {
    QClipboard* const clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection() && hasSelection()) {
        clipboard->setText(selectedText(), QClipboard::Selection);
    }
}

MarkdownPreview::Position MarkdownPreview::positionAt(QPointF place) const {
    if (rowCount() == 0) {
        return {};
    }
    const qsizetype index = anchorAt(placeOf(m_anchor) + place.y()).row;
    const MarkdownRowLayout& layout = layoutOf(index);
    const QRectF content = contentRect(index);
    if (place.y() < content.top()) {
        return {index, 0};
    }
    return {index, layout.textStart(m_rows, row(index)) + layout.positionAt(place - textOrigin(index, content))};
}

QRectF MarkdownPreview::rectOf(Position position) const {
    if (position.row >= rowCount()) {
        return {};
    }
    const MarkdownRowLayout& layout = layoutOf(position.row);
    const qsizetype inside = position.offset - layout.textStart(m_rows, row(position.row));
    return layout.rectOf(std::max<qsizetype>(inside, 0))
        .translated(textOrigin(position.row, contentRect(position.row)));
}

void MarkdownPreview::showPosition(Position position) {
    if (position.row < rowCount()) {
        const QRectF estimated = contentRect(position.row);
        if (estimated.bottom() < 0 || estimated.top() > viewport()->height()) {
            scrollToRow(position.row, false);
        }
        scrollIntoView(rectOf(position));
    }
}

/// The character's place, the word or the row that the kind of selecting takes at a position.
std::pair<MarkdownPreview::Position, MarkdownPreview::Position> MarkdownPreview::unitAt(Position position) const {
    if (m_selecting == Selecting::rows) {
        return {{position.row, 0}, {position.row, rowText(position.row).size()}};
    }
    if (m_selecting != Selecting::words) {
        return {position, position};
    }
    const MarkdownRowLayout& layout = layoutOf(position.row);
    const QString& text = layout.text();
    const qsizetype textStart = layout.textStart(m_rows, row(position.row));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    qsizetype start = std::clamp<qsizetype>(position.offset - textStart, 0, text.size());
    finder.setPosition(start);
    if (!finder.isAtBoundary() || !finder.boundaryReasons().testFlag(QTextBoundaryFinder::StartOfItem)) {
        start = std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    }
    finder.setPosition(start);
    const qsizetype end = finder.toNextBoundary();
    return {{position.row, textStart + start}, {position.row, textStart + (end < 0 ? text.size() : end)}};
}

void MarkdownPreview::extendSelectionTo(Position position) {
    const auto [start, end] = unitAt(position);
    select(std::min(start, m_selectionOrigin.first), std::max(end, m_selectionOrigin.second));
}

} // namespace quillary
