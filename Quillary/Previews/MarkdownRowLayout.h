#pragma once

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
        /// Of a table.
        const MarkdownTableColumns* columns = nullptr;
        /// Of a table of very many columns: the part that is in view.
        double viewLeft = 0;
        /// Of a code block.
        const QList<SyntaxToken>* tokens = nullptr;
    };

    MarkdownRowLayout(const MarkdownRow& row, const Context& context);

    /// Of the content, without the gap above.
    double height() const { return m_height; }

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

    /// The links of the row in order, and the one at a place, if there is one.
    const QStringList& links() const { return m_links; }

    std::optional<qsizetype> linkAt(QPointF place) const;

    /// Where a link's text stands, line by line.
    std::vector<QRectF> rectsOfLink(qsizetype link) const;

    /// Where the text of a link begins.
    qsizetype startOfLink(qsizetype link) const;

    /// Draws the text with the pen's colour where it has none of its own. `selection` is a range of the row's text.
    void draw(QPainter& painter, QPointF origin, const QRectF& clip, TextRange selection,
              const QPalette& palette) const;

private:
    /// A stretch of the row's text that is part of a link.
    struct LinkRun {
        qsizetype link = 0;
        qsizetype start = 0;
        qsizetype length = 0;
    };

    /// A text with its place: all of the row, or a cell.
    struct Piece {
        std::unique_ptr<QTextLayout> layout;
        QPointF origin;
        /// In the row's text.
        qsizetype start = 0;
        qsizetype length = 0;
        double left = 0;
        double right = 0;
        bool isSelectable = true;
    };

    void layOutText(const MarkdownRow& row, const Context& context);
    void layOutCode(const MarkdownRow& row, const Context& context);
    void layOutTable(const MarkdownRow& row, const Context& context);
    Piece& addPiece(const MarkdownStyledText& styled, const QFont& font, const Context& context, QPointF origin);
    double breakLines(Piece& piece, double width, double spacing, const QTextOption& option);
    const Piece* pieceHolding(qsizetype position) const;
    std::vector<QRectF> rectsOf(TextRange range) const;

    std::vector<Piece> m_pieces;
    QString m_text;
    qsizetype m_firstColumn = 0;
    /// Worked out when it is asked for: there may be very many cells to read.
    mutable std::optional<qsizetype> m_textStart;
    QStringList m_links;
    std::vector<LinkRun> m_linkRuns;
    double m_height = 0;
    double m_naturalWidth = 0;
    double m_firstBaseline = 0;
};

} // namespace quillary
