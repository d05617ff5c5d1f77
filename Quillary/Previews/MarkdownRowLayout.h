#pragma once

#include "Quillary/Previews/MarkdownLinkPlace.h"
#include "Quillary/Previews/MarkdownRows.h"
#include "Quillary/Previews/MarkdownStyle.h"
#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QList>
#include <QPalette>
#include <QPointF>
#include <QRectF>
#include <QTextLayout>

#include <memory>
#include <optional>
#include <vector>

class QPainter;

namespace quillary {

class MarkdownCellBound;
class MarkdownTableColumns;

/// One row of the Markdown preview, shaped and broken into lines. Places are relative to the top left corner of the
/// row's content; of code and tables they move sideways with the content.
class MarkdownRowLayout {
public:
    /// What a row is laid out with.
    struct Context {
        const MarkdownRows& rows;
        const MarkdownStyle& style;
        const QPalette& palette;
        /// Of the row's content.
        double width = 0;
        /// Of a table: its columns, where its part begins that is in view, and how high the cells beside may be.
        const MarkdownTableColumns* columns = nullptr;
        double viewLeft = 0;
        MarkdownCellBound* cellBound = nullptr;
        /// Of a code block.
        const QList<SyntaxToken>* tokens = nullptr;
    };

    MarkdownRowLayout(const MarkdownRow& row, const Context& context);

    /// Of the content, without the gap above.
    double height() const { return m_height; }

    /// Takes another part of a table's row, which is as wide, into view. Whether the row turns out to be higher than it
    /// was taken for.
    bool reveal(double viewLeft);

    /// How wide the content would be; code and tables may have less.
    double naturalWidth() const { return m_naturalWidth; }

    /// How far the first line of text reaches below the top, for the marker beside it.
    double firstBaseline() const { return m_firstBaseline; }

    /// The text of the row: that of its cells with tabs between them. Of a table of very many columns it begins with
    /// the first one in view.
    const QString& text() const { return m_text; }

    /// Where this text begins in that of the whole row.
    qsizetype textStart(const MarkdownRows& rows, const MarkdownRow& row) const;

    /// The position that is nearest to a place.
    qsizetype positionAt(QPointF place) const;

    /// What a character covers.
    QRectF rectOf(qsizetype position) const;

    /// Whether a selection may begin at a position: not in a text with a link.
    bool isSelectableAt(qsizetype position) const;

    /// The link at a place, if there is one.
    std::optional<MarkdownLinkPlace> linkAt(QPointF place) const;

    /// Where a link's text stands, line by line; nowhere for a link out of the laid out text.
    std::vector<QRectF> rectsOfLink(const MarkdownLinkPlace& link) const;

    /// Draws the text with the pen's colour where it has none of its own. `selection` is a range of the row's text.
    void draw(QPainter& painter, QPointF origin, const QRectF& clip, TextRange selection,
              const QPalette& palette) const;

private:
    /// A stretch of the row's text that is part of a link.
    struct LinkRun {
        MarkdownLinkPlace link;
        qsizetype start = 0;
        qsizetype length = 0;
    };

    /// A text with its place: all of the row, or a cell.
    struct Piece {
        /// Without lines as long as nobody sees or asks for them.
        std::unique_ptr<QTextLayout> layout;
        /// Of its lines, and the distance between them.
        double width = 0;
        double spacing = 0;
        QPointF origin;
        /// In the row's text.
        qsizetype start = 0;
        qsizetype length = 0;
        double left = 0;
        double right = 0;
        bool isSelectable = true;
        /// Of a table of very many columns: what has no room in its one line is not shown.
        bool isCutOff = false;
    };

    void layOutText(const MarkdownRow& row, const Context& context);
    void layOutCode(const MarkdownRow& row, const Context& context);
    void layOutTable(const MarkdownRow& row, const Context& context);
    double heightOfCells(const std::vector<double>& bounds, double least);
    Piece& addPiece(const MarkdownStyledText& styled, const QFont& font, const Context& context, QPointF origin,
                    qsizetype column = 0);
    double heightOfFirst();
    bool isInView(const Piece& piece) const;
    QRectF shownPartOf(const Piece& piece) const;
    static double breakLines(const Piece& piece);
    static const QTextLayout& linesOf(const Piece& piece);
    const Piece* pieceHolding(qsizetype position) const;
    std::vector<QRectF> rectsOf(TextRange range) const;

    std::vector<Piece> m_pieces;
    QString m_text;
    qsizetype m_firstColumn = 0;
    /// Worked out when it is asked for: there may be very many cells to read.
    mutable std::optional<qsizetype> m_textStart;
    std::vector<LinkRun> m_linkRuns;
    // Of a table: what of it is in view, and what the row is higher than its highest cell
    double m_viewLeft = 0;
    double m_viewWidth = 0;
    double m_cellMargins = 0;
    double m_height = 0;
    double m_naturalWidth = 0;
    double m_firstBaseline = 0;
};

} // namespace quillary
