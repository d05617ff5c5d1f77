#pragma once

#include "Quillary/Editor/SegmentIndex.h"
#include "Quillary/Editor/SegmentLayout.h"
#include "Quillary/Editor/SyntaxColors.h"
#include "QuillaryCore/Formats/SyntaxTokenKind.h"

#include <QDeadlineTimer>
#include <QFont>
#include <QObject>

#include <memory>
#include <optional>
#include <unordered_map>

class QPainter;

namespace quillary {

/// What stretches of a text are, kept beside it; the colours follow when it is drawn.
using SyntaxRanges = AttributeRanges<SyntaxTokenKind>;

/// Where a position of a text stands after a change: one that was removed, where the change begins.
inline qsizetype followed(qsizetype position, const TextChange& change) {
    if (position >= change.offset + change.removedLength) {
        return position + change.insertedLength - change.removedLength;
    }
    return std::min(position, change.offset);
}

/// The rows of a text on the screen. It lays out the rows that it is asked for and nothing else; all others are
/// estimates, which change as rows near them are asked for. Whoever scrolls therefore keeps a row, not a height.
///
/// All rows have one height, the pitch. Positions are UTF-16 units of the storage; x is in pixels from the left edge
/// of the text, with or without wrapping.
class TextLayout : public QObject {
    Q_OBJECT

public:
    /// The row that a position at the border of two rows of one line belongs to.
    enum class Side { before, after };

    struct Row {
        /// Without terminator.
        TextRange contents;
        /// Where the row below begins; the end of the text in the last row.
        qsizetype next = 0;
        bool endsLine = true;
        bool isLast = false;
        bool isRightToLeft = false;

        bool hasTerminator() const { return next > contents.end(); }

        friend bool operator==(const Row&, const Row&) = default;
    };

    /// The storage must outlive the layout.
    explicit TextLayout(TextStorage& storage, QObject* parent = nullptr);
    ~TextLayout() override;

    const TextStorage& storage() const { return m_storage; }

    /// The font of the whole text. Tabs stop at every fourth width of a blank.
    void setFont(const QFont& font);

    const QFont& font() const { return m_font; }

    /// The width of the place for the text, in pixels, and whether lines wrap at it.
    void setWidth(qreal width);
    void setWraps(bool wraps);

    qreal width() const { return m_width; }

    bool wraps() const { return m_wraps; }

    /// The height of every row and the distance of its base line from its top, in whole pixels.
    int pitch() const { return m_pitch; }

    int baseline() const { return m_baseline; }

    /// The width of a blank.
    qreal blankWidth() const { return m_blankWidth; }

    /// The number of rows, partly estimated when lines wrap.
    qint64 rowCount() const;

    /// Replaces estimates by measurements from the start of the text on, until all lines but the very long ones are
    /// measured or the deadline passes. False if there is more to do.
    bool measureUntil(QDeadlineTimer deadline);

    /// The number of rows above a row by the same estimate.
    qint64 indexOf(const Row& row);

    /// The row of an index by the present estimate, the nearest there is.
    Row rowAt(qint64 index);

    Row rowHolding(qsizetype position, Side side = Side::after);
    std::optional<Row> rowBelow(const Row& row);
    std::optional<Row> rowAbove(const Row& row);

    /// The width of the widest line looked at so far; never less than the width of the place when lines wrap.
    qreal contentWidth() const;

    /// Looks at a row, so that its width is known as well as it is from its beginning.
    void look(const Row& row);

    /// Where the caret stands for a position in the row, both ends included.
    qreal xOf(const Row& row, qsizetype position);

    /// The position in the row whose caret is nearest, which lies in no cluster.
    qsizetype positionAt(const Row& row, qreal x);

    /// What a range covers in the row, from left to right. A covered terminator shows as a blank's width.
    std::vector<HorizontalSpan> spansOf(const Row& row, TextRange range, HorizontalSpan clip);

    /// Draw a row whose top left corner, x 0, stands at `origin`; what lies outside of `clip` may be left out.
    void drawMarks(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip);
    /// Text is drawn with the pen's colour, and syntax with its own.
    void drawText(QPainter& painter, const Row& row, QPointF origin, const QRectF& clip, const SyntaxColors& colors);

    /// The two layers beside the text: what colours it, and colours of its background. Neither ever causes a layout.
    SyntaxRanges& syntax() { return m_syntax; }

    ColorRanges& marks() { return m_marks; }

    /// Shows what an input method is composing; an empty one takes it away.
    void setPreedit(const Preedit& preedit);

    const Preedit& preedit() const { return m_preedit; }

Q_SIGNALS:
    /// After the layout has followed a change of the storage.
    void textChanged(const quillary::TextChange& change);

    /// When all rows may have new places: font, width or wrapping changed.
    void reflowed();

private:
    using Place = SegmentIndex::Place;

    struct CachedLayout {
        std::unique_ptr<SegmentLayout> layout;
        quint64 lastUse = 0;
    };

    /// A segment of a row and the place of its left edge.
    struct Piece {
        Place place;
        SegmentLayout* layout = nullptr;
        qsizetype row = 0;
        qreal left = 0;
    };

    void reflow();
    void follow(const TextChange& change);
    void renewPreeditSegment();

    SegmentLayout& layoutOf(const Place& place);
    std::unique_ptr<SegmentLayout> layOut(const Place& place);
    void trimCache();
    bool isRightToLeft(TextRange line) const;
    Row makeRow(const Place& place, SegmentLayout& layout, qsizetype rowInSegment);
    Row lineRow(qsizetype line) const;

    Piece wrappedPiece(const Row& row);
    Piece pieceHolding(const Row& row, qsizetype position);
    Piece pieceAt(const Row& row, qreal x);
    qreal lineLeft(const Row& row, qreal lineWidth) const;
    qreal lineWidth(Place lineStart);
    std::vector<Piece> piecesOf(const Row& row, HorizontalSpan clip);

    TextStorage& m_storage;
    SegmentIndex m_index;
    QFont m_font;
    /// Some width, until it is told.
    qreal m_width = 600;
    bool m_wraps = true;
    int m_pitch = 1;
    int m_baseline = 0;
    qreal m_blankWidth = 1;
    SyntaxRanges m_syntax;
    ColorRanges m_marks;
    Preedit m_preedit;
    /// Up to here `measureUntil` has come.
    qsizetype m_measuredTo = 0;

    std::unordered_map<quint64, CachedLayout> m_cache;
    qsizetype m_cachedUnits = 0;
    quint64 m_clock = 0;
};

} // namespace quillary
