#pragma once

#include "QuillaryCore/Text/AttributeRanges.h"

#include <QColor>
#include <QRgb>
#include <QString>
#include <QTextLayout>

#include <span>
#include <vector>

class QPainter;

namespace quillary {

/// Colours for ranges of a text, kept beside it.
using ColorRanges = AttributeRanges<QRgb>;

/// A stretch of a row on the screen.
struct HorizontalSpan {
    qreal left = 0;
    qreal right = 0;

    friend bool operator==(const HorizontalSpan&, const HorizontalSpan&) = default;
};

/// What an input method is composing, shown at a position of the text without being part of it.
struct Preedit {
    qsizetype position = 0;
    QString text;
    /// Relative to `text`.
    QList<QTextLayout::FormatRange> formats;
    /// Where in `text` the caret stands.
    qsizetype caret = 0;

    bool isEmpty() const { return text.isEmpty(); }
};

/// One segment of a text, shaped and broken into rows. Positions are units from the start of the segment; rows are
/// placed by whoever draws them.
class SegmentLayout {
public:
    /// `text` is without terminator. It may reach beyond the segment, for the words that decide where its last row
    /// ends. `preedit`, if any, has its position relative to the segment.
    SegmentLayout(const QString& text, const QFont& font, const QTextOption& option, const Preedit* preedit);

    /// Makes one row of everything.
    void layOutAsOneRow();

    /// Breaks rows of a width until about `target` units are used up, at the end of a row, and gives the number of
    /// units used. `isWhole` says that the text goes to the end of its line; otherwise its last row is incomplete and
    /// left out unless it is the only one.
    qsizetype layOutInRows(qreal width, qsizetype target, bool isWhole);

    bool isRightToLeft() const { return m_layout.textOption().textDirection() == Qt::RightToLeft; }

    qsizetype rowCount() const { return m_layout.lineCount() - m_unusedRows; }

    qsizetype unitCount() const { return m_layout.text().size(); }

    /// The width of the one row, blanks at its end included.
    qreal width() const;

    TextRange row(qsizetype row) const;

    /// The row that holds a position, the later one at the border of two.
    qsizetype rowHolding(qsizetype position) const;

    /// Where a caret at a position of the row stands.
    qreal xOf(qsizetype row, qsizetype position) const;

    /// The position whose caret is nearest.
    qsizetype positionAt(qsizetype row, qreal x) const;

    /// What a range of the row covers, from left to right; in mixed directions there are several stretches.
    std::vector<HorizontalSpan> spansOf(qsizetype row, TextRange range) const;

    /// Draws the row's text with the pen's colour, but spans with their own. Characters without a glyph that change
    /// what is read or copied, marks of direction for instance, show as a thin sign of their own colour.
    void drawText(QPainter& painter, qsizetype row, QPointF baseline, std::span<const ColorRanges::Span> colors,
                  const QColor& hiddenCharacters) const;

private:
    void drawGlyphs(QPainter& painter, const QTextLine& line, QPointF origin,
                    std::span<const ColorRanges::Span> colors) const;
    void drawHiddenCharacters(QPainter& painter, const QTextLine& line, QPointF origin, const QColor& color) const;
    qsizetype toLayout(qsizetype position) const;
    qsizetype fromLayout(qsizetype position) const;

    QTextLine line(qsizetype row) const { return m_layout.lineAt(static_cast<int>(row)); }

    QTextLayout m_layout;
    /// Where a preedit is spliced in, its length and the caret in it.
    qsizetype m_preeditAt = 0;
    qsizetype m_preeditLength = 0;
    qsizetype m_preeditCaret = 0;
    /// Rows at the end that belong to the next segment.
    qsizetype m_unusedRows = 0;
    bool m_isLeftToRight = true;
    /// Where the layout's text has characters without a glyph, in ascending order.
    std::vector<int> m_hiddenCharacters;
};

} // namespace quillary
