#include "Quillary/Editor/SegmentIndex.h"

#include <QChar>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quillary {

namespace {

constexpr qsizetype linesPerBlock = 256;
constexpr qsizetype mostLinesPerBlock = 1024;
/// Below this many lines each line's own length is asked for at once; above, a block is taken as a whole.
constexpr qsizetype mostLinesCountedAtOnce = 20'000;
/// A change that inserts more than this is not followed segment by segment.
constexpr qsizetype mostUnitsCutAtOnce = 65'536;
/// How far back a cut looks for a blank.
constexpr qsizetype blankSearchLength = 256;

/// Below this nothing joins with what stands before it.
constexpr char16_t firstCombining = 0x300;

} // namespace

SegmentIndex::SegmentIndex(const TextStorage& storage) : m_storage(storage) {
    reset(m_estimate);
}

void SegmentIndex::reset(const Estimate& estimate) {
    m_estimate = estimate;
    m_blocks = makeBlocks(0, m_storage.lineCount());
    m_rowCount = 0;
    for (const Block& block : m_blocks) {
        m_rowCount += block.rows;
    }
    m_hint = {};
}

qint64 SegmentIndex::estimatedRows(qsizetype firstLine, qsizetype lineCount, qsizetype units) const {
    const auto rowsOf = [this](qsizetype length) {
        return std::max<qint64>(1,
                                static_cast<qint64>(std::ceil(static_cast<double>(length) / m_estimate.unitsPerRow)));
    };
    if (!m_estimate.wraps) {
        return lineCount;
    }
    if (lineCount == 1) {
        return rowsOf(units);
    }
    if (m_storage.lineCount() > mostLinesCountedAtOnce) {
        // Lines that fit have their last row on average half empty.
        const double average = static_cast<double>(units) / static_cast<double>(lineCount) / m_estimate.unitsPerRow;
        return average < 0.75 ? lineCount
                              : static_cast<qint64>(std::llround(static_cast<double>(lineCount) * (average + 0.5)));
    }
    qint64 rows = 0;
    for (qsizetype line = firstLine; line < firstLine + lineCount; ++line) {
        rows += rowsOf(m_storage.lineContents(line).length);
    }
    return rows;
}

SegmentIndex::Segment SegmentIndex::makeSegment(qsizetype length, bool endsLine) {
    Segment segment;
    segment.id = ++m_lastId;
    segment.length = length;
    segment.endsLine = endsLine;
    segment.rows = m_estimate.wraps ? static_cast<qsizetype>(estimatedRows(0, 1, length)) : (endsLine ? 1 : 0);
    segment.width = m_estimate.wraps ? 0 : static_cast<double>(length) * m_estimate.unitWidth;
    return segment;
}

std::vector<SegmentIndex::Block> SegmentIndex::makeBlocks(qsizetype firstLine, qsizetype endLine) const {
    std::vector<Block> blocks;
    blocks.reserve(static_cast<std::size_t>((endLine - firstLine) / linesPerBlock + 1));
    qsizetype start = m_storage.lineRange(firstLine).location;
    for (qsizetype line = firstLine; line < endLine; line += linesPerBlock) {
        Block block;
        block.lines = std::min(linesPerBlock, endLine - line);
        const qsizetype end = m_storage.lineRange(line + block.lines - 1).end();
        block.units = end - start;
        block.rows = estimatedRows(line, block.lines, block.units);
        start = end;
        blocks.push_back(std::move(block));
    }
    return blocks;
}

bool SegmentIndex::isCutAllowed(qsizetype position) const {
    if (m_storage.unitAt(position) < firstCombining && m_storage.unitAt(position - 1) < firstCombining) {
        return true;
    }
    return m_storage.clusterBoundaryAtOrBefore(position) == position;
}

/// The best place to cut a line at or before a position: behind a tab or another blank that is near, else between two
/// clusters. A cluster without end is cut anywhere.
qsizetype SegmentIndex::cutAtOrBefore(qsizetype lowest, qsizetype position) const {
    const qsizetype from = std::max(lowest, position - blankSearchLength);
    const QString before = m_storage.text({from, position - from});
    for (const QLatin1Char blank : {QLatin1Char('\t'), QLatin1Char(' ')}) {
        const qsizetype found = before.lastIndexOf(blank);
        if (found > 0 && isCutAllowed(from + found + 1)) {
            return from + found + 1;
        }
    }
    if (isCutAllowed(position)) {
        return position;
    }
    const qsizetype boundary = m_storage.clusterBoundaryAtOrBefore(position);
    if (boundary > lowest) {
        return boundary;
    }
    return QChar::isLowSurrogate(m_storage.unitAt(position)) ? position - 1 : position;
}

/// Appends the segments of what lines have in common with a range.
void SegmentIndex::cutLines(qsizetype firstLine, qsizetype endLine, TextRange range, std::vector<Segment>& segments) {
    for (qsizetype line = firstLine; line < endLine; ++line) {
        const TextRange whole = m_storage.lineRange(line);
        qsizetype from = std::max(whole.location, range.location);
        const qsizetype to = std::min(whole.end(), range.end());
        while (to - from > longestSegment()) {
            const qsizetype cut = cutAtOrBefore(from, from + pieceLength());
            segments.push_back(makeSegment(cut - from, false));
            from = cut;
        }
        segments.push_back(makeSegment(to - from, to == whole.end()));
    }
}

qsizetype SegmentIndex::firstLineOf(qsizetype block) const {
    qsizetype line = 0;
    for (qsizetype i = 0; i < block; ++i) {
        line += m_blocks[i].lines;
    }
    return line;
}

void SegmentIndex::materialize(qsizetype index) {
    Block& block = m_blocks[index];
    if (!block.segments.empty()) {
        return;
    }
    const qsizetype firstLine = firstLineOf(index);
    const qsizetype start = m_storage.lineRange(firstLine).location;
    block.segments.reserve(static_cast<std::size_t>(block.lines));
    cutLines(firstLine, firstLine + block.lines, {start, block.units}, block.segments);
    recountRows(index);
}

void SegmentIndex::recountRows(qsizetype index) {
    Block& block = m_blocks[index];
    qint64 rows = 0;
    for (const Segment& segment : block.segments) {
        rows += segment.rows;
    }
    noteGrowth({index, std::ssize(block.segments)}, rows - block.rows);
    block.widestIsKnown = m_estimate.wraps;
}

void SegmentIndex::setRows(const Place& place, qsizetype rows) {
    Segment& segment = m_blocks[place.block].segments[place.segment];
    noteGrowth(place, rows - segment.rows);
    segment.rows = rows;
}

/// Counts rows that came or went at a place, for what follows it as well.
void SegmentIndex::noteGrowth(const Place& place, qint64 rows) {
    m_rowCount += rows;
    m_blocks[place.block].rows += rows;
    if (m_hint.block > place.block) {
        m_hint.blockRow += rows;
        m_hint.row += rows;
    } else if (m_hint.block == place.block && m_hint.segment > place.segment) {
        m_hint.row += rows;
    }
}

void SegmentIndex::moveToBlockStart(Place& place) const {
    place.segment = 0;
    place.start = place.blockStart;
    place.row = place.blockRow;
}

void SegmentIndex::moveToNextBlock(Place& place) const {
    place.blockStart += m_blocks[place.block].units;
    place.blockRow += m_blocks[place.block].rows;
    ++place.block;
    moveToBlockStart(place);
}

void SegmentIndex::moveToPreviousBlock(Place& place) const {
    --place.block;
    place.blockStart -= m_blocks[place.block].units;
    place.blockRow -= m_blocks[place.block].rows;
    moveToBlockStart(place);
}

SegmentIndex::Place SegmentIndex::placeOf(qsizetype position) {
    Place place = m_hint;
    while (position < place.blockStart) {
        moveToPreviousBlock(place);
    }
    while (position >= place.blockStart + m_blocks[place.block].units && !isLastBlock(place)) {
        moveToNextBlock(place);
    }
    materialize(place.block);
    while (position < place.start) {
        moveToPrevious(place);
    }
    while (position >= place.start + at(place).length && !isLastSegment(place)) {
        moveToNext(place);
    }
    m_hint = place;
    return place;
}

SegmentIndex::Place SegmentIndex::placeOfRow(qint64 row) {
    Place place = m_hint;
    while (row < place.blockRow && place.block > 0) {
        moveToPreviousBlock(place);
    }
    while (row >= place.blockRow + m_blocks[place.block].rows && !isLastBlock(place)) {
        moveToNextBlock(place);
    }
    // Looking into a block corrects the estimate of its rows: its last segment stands for rows that are not there.
    materialize(place.block);
    while (row < place.row && place.segment > 0) {
        moveToPrevious(place);
    }
    while (row >= place.row + at(place).rows && !isLastSegment(place)) {
        moveToNext(place);
    }
    m_hint = place;
    return place;
}

bool SegmentIndex::moveToNext(Place& place) {
    if (isLastSegment(place)) {
        if (isLastBlock(place)) {
            return false;
        }
        moveToNextBlock(place);
        materialize(place.block);
        return true;
    }
    place.start += at(place).length;
    place.row += at(place).rows;
    ++place.segment;
    return true;
}

bool SegmentIndex::moveToPrevious(Place& place) {
    if (place.segment == 0) {
        if (place.block == 0) {
            return false;
        }
        moveToPreviousBlock(place);
        materialize(place.block);
        const Block& block = m_blocks[place.block];
        place.segment = std::ssize(block.segments) - 1;
        place.start = place.blockStart + block.units - block.segments.back().length;
        place.row = place.blockRow + block.rows - block.segments.back().rows;
        return true;
    }
    --place.segment;
    place.start -= at(place).length;
    place.row -= at(place).rows;
    return true;
}

bool SegmentIndex::startsLine(const Place& place) const {
    return place.segment == 0 || m_blocks[place.block].segments[place.segment - 1].endsLine;
}

void SegmentIndex::moveToLineStart(Place& place) {
    while (!startsLine(place)) {
        moveToPrevious(place);
    }
}

void SegmentIndex::setMeasured(const Place& place, qsizetype rows, double width) {
    Block& block = m_blocks[place.block];
    block.segments[place.segment].measured = true;
    if (m_estimate.wraps) {
        setRows(place, rows);
    } else {
        block.segments[place.segment].width = width;
        block.widestIsKnown = false;
    }
}

void SegmentIndex::renew(const Place& place) {
    Segment& segment = m_blocks[place.block].segments[place.segment];
    segment.id = ++m_lastId;
    segment.measured = false;
}

void SegmentIndex::setLength(const Place& place, qsizetype length) {
    std::vector<Segment>& segments = m_blocks[place.block].segments;
    Place follower = place;
    ++follower.segment;
    qsizetype missing = length - at(place).length;
    while (missing > 0 && at(follower).length <= missing) {
        missing -= at(follower).length;
        segments[place.segment].endsLine = at(follower).endsLine;
        setRows(follower, 0);
        ++follower.segment;
    }
    if (missing != 0) {
        const Segment fresh = makeSegment(at(follower).length - missing, at(follower).endsLine);
        setRows(follower, fresh.rows);
        segments[follower.segment] = fresh;
    }
    segments[place.segment].length = length;
    segments.erase(segments.begin() + place.segment + 1, segments.begin() + follower.segment);
    if (m_hint.block == place.block && m_hint.segment > place.segment) {
        m_hint = place;
    }
}

double SegmentIndex::widestLine() const {
    double widest = 0;
    for (const Block& block : m_blocks) {
        if (!block.widestIsKnown) {
            block.widest = 0;
            double width = 0;
            for (const Segment& segment : block.segments) {
                width += segment.width;
                block.widest = std::max(block.widest, width);
                width = segment.endsLine ? 0 : width;
            }
            block.widestIsKnown = true;
        }
        widest = std::max(widest, block.widest);
    }
    return widest;
}

void SegmentIndex::apply(const TextChange& change) {
    // A unit more on each side: an edit there makes or splits a CR LF.
    const qsizetype from = std::max<qsizetype>(change.offset - 1, 0);
    const qsizetype to = change.offset + change.removedLength + 1;
    Place first = m_hint;
    while (from < first.blockStart) {
        moveToPreviousBlock(first);
    }
    while (from >= first.blockStart + m_blocks[first.block].units && !isLastBlock(first)) {
        moveToNextBlock(first);
    }
    Place last = first;
    while (to >= last.blockStart + m_blocks[last.block].units && !isLastBlock(last)) {
        moveToNextBlock(last);
    }
    const qsizetype newEnd =
        last.blockStart + m_blocks[last.block].units - change.removedLength + change.insertedLength;
    const qsizetype endLine = isLastBlock(last) ? m_storage.lineCount() : m_storage.lineAt(newEnd);
    const bool staysInBlock = first.block == last.block && !m_blocks[first.block].segments.empty();
    if (staysInBlock && change.insertedLength <= mostUnitsCutAtOnce) {
        replaceSegments(first, change, endLine);
    } else {
        moveToBlockStart(first);
        replaceBlocks(first, last.block + 1, endLine);
    }
}

void SegmentIndex::replaceBlocks(const Place& first, qsizetype endBlock, qsizetype endLine) {
    std::vector<Block> blocks = makeBlocks(firstLineOf(first.block), endLine);
    for (qsizetype block = first.block; block < endBlock; ++block) {
        m_rowCount -= m_blocks[block].rows;
    }
    for (const Block& block : blocks) {
        m_rowCount += block.rows;
    }
    const auto begin = m_blocks.begin() + first.block;
    const auto end = m_blocks.begin() + endBlock;
    const auto common = std::min(end - begin, std::ssize(blocks));
    std::move(blocks.begin(), blocks.begin() + common, begin);
    m_blocks.erase(begin + common, end);
    m_blocks.insert(m_blocks.begin() + first.block + common, std::move_iterator(blocks.begin() + common),
                    std::move_iterator(blocks.end()));
    m_hint = first;
}

void SegmentIndex::replaceSegments(const Place& start, const TextChange& change, qsizetype endLine) {
    Block& block = m_blocks[start.block];
    std::vector<Segment>& segments = block.segments;
    const qsizetype growth = change.insertedLength - change.removedLength;

    // In units of the old text, up to `first.start` those of the new one as well.
    Place first = start;
    const qsizetype from = std::max<qsizetype>(change.offset - 1, 0);
    while (from < first.start) {
        moveToPrevious(first);
    }
    while (from >= first.start + at(first).length && !isLastSegment(first)) {
        moveToNext(first);
    }
    Place last = first;
    while (change.offset + change.removedLength + 1 >= last.start + at(last).length && !isLastSegment(last)) {
        moveToNext(last);
    }
    // What stands at the head of a piece decides where the last row of the piece before it ends.
    const auto headLength = static_cast<qsizetype>(2 * m_estimate.unitsPerRow);
    if (m_estimate.wraps && !startsLine(first) && change.offset - first.start < headLength) {
        moveToPrevious(first);
    }
    // A cluster across a cut, or a scrap left of a piece, is laid out together with its neighbour.
    while (!startsLine(first) && !isCutAllowed(first.start)) {
        moveToPrevious(first);
    }
    const auto newEnd = [&] { return last.start + at(last).length + growth; };
    while (!at(last).endsLine && (newEnd() - first.start < pieceLength() / 4 || !isCutAllowed(newEnd()))) {
        moveToNext(last);
    }

    const TextRange range{first.start, newEnd() - first.start};
    const bool isWholeEnd = isLastSegment(last);
    const qsizetype firstLine = m_storage.lineAt(range.location);
    const qsizetype afterLine = isWholeEnd          ? endLine
                                : at(last).endsLine ? m_storage.lineAt(range.end())
                                                    : m_storage.lineAt(range.end()) + 1;
    std::vector<Segment> fresh;
    cutLines(firstLine, afterLine, range, fresh);

    block.lines = endLine - firstLineOf(start.block);
    block.units += growth;
    const auto begin = segments.begin() + first.segment;
    const auto end = segments.begin() + last.segment + 1;
    const auto common = std::min(end - begin, std::ssize(fresh));
    std::copy(fresh.begin(), fresh.begin() + common, begin);
    segments.erase(begin + common, end);
    segments.insert(segments.begin() + first.segment + common, fresh.begin() + common, fresh.end());
    m_hint = first;
    recountRows(start.block);
    splitIfGrown(first);
}

/// Lets go of the segments of a block that has taken in many lines; the halves are looked into again when needed.
void SegmentIndex::splitIfGrown(const Place& place) {
    const Block& block = m_blocks[place.block];
    if (block.lines > mostLinesPerBlock) {
        Place start = place;
        moveToBlockStart(start);
        replaceBlocks(start, start.block + 1, firstLineOf(start.block) + block.lines);
    }
}

} // namespace quillary
