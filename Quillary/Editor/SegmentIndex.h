#pragma once

#include "QuillaryCore/Text/TextStorage.h"

#include <iterator>
#include <vector>

namespace quillary {

/// Where the segments of a text lie and how many rows each takes on the screen.
///
/// A segment is what one QTextLayout lays out: a line with its terminator or, of a line that is too long for that, a
/// piece. Lines are held in blocks of some hundred, and a block learns its segments only when somebody looks into it,
/// so that a text of half a million lines costs a few thousand numbers. Rows of a segment that was never laid out are
/// an estimate by its length.
class SegmentIndex {
public:
    struct Segment {
        /// Tells apart contents: a segment whose text or place in its line changed gets a new one.
        quint64 id = 0;
        /// In units, the terminator included.
        qsizetype length = 0;
        /// Rows when lines wrap. Otherwise the last segment of a line has one and the others none.
        qsizetype rows = 1;
        /// Only kept when lines do not wrap.
        double width = 0;
        bool measured = false;
        bool endsLine = true;
    };

    /// A segment by its place, valid until the next change of the index.
    struct Place {
        qsizetype block = 0;
        qsizetype segment = 0;
        /// Units and rows before the segment.
        qsizetype start = 0;
        qint64 row = 0;
        /// Units and rows before the block.
        qsizetype blockStart = 0;
        qint64 blockRow = 0;
    };

    /// What lengths are turned into before anything was laid out.
    struct Estimate {
        bool wraps = true;
        double unitsPerRow = 80;
        double unitWidth = 8;
    };

    /// The storage must outlive the index and is only read.
    explicit SegmentIndex(const TextStorage& storage);

    /// Forgets all measurements, as after a change of font, width or wrapping.
    void reset(const Estimate& estimate);

    /// Follows a change that the storage has already made.
    void apply(const TextChange& change);

    qint64 rowCount() const { return m_rowCount; }

    /// The segment that holds a position; at the border of two, the one that begins there.
    Place placeOf(qsizetype position);

    /// The segment that holds a row by the present estimates; rows beyond the last give the last segment.
    Place placeOfRow(qint64 row);

    /// Moves to the neighbour; false at the ends of the text.
    bool moveToNext(Place& place);
    bool moveToPrevious(Place& place);

    const Segment& at(const Place& place) const { return m_blocks[place.block].segments[place.segment]; }

    /// Whether the segment is the first of its line.
    bool startsLine(const Place& place) const;

    /// Moves back to the first segment of the line.
    void moveToLineStart(Place& place);

    /// Notes what a layout gave: the rows of the segment when lines wrap, else its width.
    void setMeasured(const Place& place, qsizetype rows, double width);

    /// Moves the border between a segment and what follows it in its line, so that the segment has `length` units.
    void setLength(const Place& place, qsizetype length);

    /// Makes the segment one that was never laid out.
    void renew(const Place& place);

    /// The width of the widest line among those that were looked at.
    double widestLine() const;

    /// The longest that a segment gets by cutting, in units.
    qsizetype longestSegment() const { return 3 * pieceLength() / 2; }

private:
    struct Block {
        qsizetype lines = 0;
        qsizetype units = 0;
        qint64 rows = 0;
        /// Empty until somebody looks into the block.
        std::vector<Segment> segments;
        mutable double widest = 0;
        mutable bool widestIsKnown = true;
    };

    qsizetype pieceLength() const { return m_estimate.wraps ? 4096 : 1024; }

    qint64 estimatedRows(qsizetype firstLine, qsizetype lineCount, qsizetype units) const;
    Segment makeSegment(qsizetype length, bool endsLine);
    std::vector<Block> makeBlocks(qsizetype firstLine, qsizetype endLine) const;
    void cutLines(qsizetype firstLine, qsizetype endLine, TextRange range, std::vector<Segment>& segments);
    qsizetype cutAtOrBefore(qsizetype lowest, qsizetype position) const;
    bool isCutAllowed(qsizetype position) const;

    bool isLastBlock(const Place& place) const { return place.block + 1 == std::ssize(m_blocks); }

    bool isLastSegment(const Place& place) const {
        return place.segment + 1 == std::ssize(m_blocks[place.block].segments);
    }

    void moveToBlockStart(Place& place) const;
    void moveToNextBlock(Place& place) const;
    void moveToPreviousBlock(Place& place) const;
    void materialize(qsizetype block);
    qsizetype firstLineOf(qsizetype block) const;
    void setRows(const Place& place, qsizetype rows);
    void recountRows(qsizetype block);
    void noteGrowth(const Place& place, qint64 rows);

    void replaceBlocks(const Place& first, qsizetype endBlock, qsizetype endLine);
    void replaceSegments(const Place& first, const TextChange& change, qsizetype endLine);
    void splitIfGrown(const Place& place);

    const TextStorage& m_storage;
    Estimate m_estimate;
    std::vector<Block> m_blocks;
    qint64 m_rowCount = 0;
    quint64 m_lastId = 0;
    /// Where the last search ended; the next one mostly begins there.
    Place m_hint;
};

} // namespace quillary
