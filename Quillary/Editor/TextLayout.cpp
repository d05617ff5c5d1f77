#include "Quillary/Editor/TextLayout.h"

#include <QFontMetricsF>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr double lineHeightMultiple = 1.2;
constexpr int blanksPerTab = 4;
constexpr qsizetype mostCachedLayouts = 768;
constexpr qsizetype mostCachedUnits = 400'000;
/// How far into a line its first strong character is looked for.
constexpr qsizetype directionSearchLength = 1024;
/// Text behind a piece that is laid out along with it, so that its last row ends where the words say.
constexpr qsizetype lookAhead = 512;

} // namespace

TextLayout::TextLayout(TextStorage& storage, QObject* parent) : QObject(parent), m_storage(storage), m_index(storage) {
    connect(&m_storage, &TextStorage::changed, this, &TextLayout::follow);
    reflow();
}

TextLayout::~TextLayout() = default;

void TextLayout::setFont(const QFont& font) {
    if (font != m_font) {
        m_font = font;
        reflow();
    }
}

void TextLayout::setWidth(qreal width) {
    if (width == m_width) {
        return;
    }
    m_width = width;
    if (m_wraps) {
        reflow();
    } else {
        Q_EMIT reflowed();
    }
}

void TextLayout::setWraps(bool wraps) {
    if (wraps != m_wraps) {
        m_wraps = wraps;
        reflow();
    }
}

void TextLayout::reflow() {
    const QFontMetricsF metrics(m_font);
    m_pitch = std::max(1, qRound(lineHeightMultiple * metrics.lineSpacing()));
    m_baseline = qRound((m_pitch - metrics.height()) / 2 + metrics.ascent());
    m_blankWidth = metrics.horizontalAdvance(u' ');
    // The font's own average counts letters that texts hardly have.
    const QString sample = QStringLiteral("una riga come tante altre, scritta in fretta e senza pensarci su");
    const double unitWidth = std::max(1.0, metrics.horizontalAdvance(sample) / static_cast<double>(sample.size()));
    m_index.reset({m_wraps, std::max(1.0, m_width / unitWidth), unitWidth});
    m_cache.clear();
    m_cachedUnits = 0;
    m_measuredTo = 0;
    Q_EMIT reflowed();
}

void TextLayout::follow(const TextChange& change) {
    m_index.apply(change);
    m_measuredTo = std::min(m_measuredTo, change.offset);
    // One by one, since what stands between two replacements stays as it is.
    for (const TextChange& step : m_storage.steps()) {
        m_syntax.follow(step);
        m_marks.follow(step);
        m_preedit.position = followed(m_preedit.position, step);
    }
    if (!m_preedit.isEmpty()) {
        renewPreeditSegment();
    }
    Q_EMIT textChanged(change);
}

void TextLayout::setPreedit(const Preedit& preedit) {
    if (!m_preedit.isEmpty()) {
        renewPreeditSegment();
    }
    m_preedit = preedit;
    if (!m_preedit.isEmpty()) {
        renewPreeditSegment();
    }
}

void TextLayout::renewPreeditSegment() {
    m_index.renew(m_index.placeOf(m_preedit.position));
}

qint64 TextLayout::rowCount() const {
    return m_wraps ? m_index.rowCount() : m_storage.lineCount();
}

bool TextLayout::measureUntil(QDeadlineTimer deadline) {
    while (m_wraps && m_measuredTo < m_storage.length()) {
        if (deadline.hasExpired()) {
            return false;
        }
        const Place place = m_index.placeOf(m_measuredTo);
        const SegmentIndex::Segment& segment = m_index.at(place);
        m_measuredTo = place.start + segment.length;
        // Laying out a piece moves borders, which somebody may be looking at.
        const bool isWholeLine = segment.endsLine && m_index.startsLine(place);
        if (isWholeLine && !segment.measured) {
            layOut(place);
        }
    }
    return true;
}

qreal TextLayout::contentWidth() const {
    return m_wraps ? m_width : m_index.widestLine();
}

void TextLayout::look(const Row& row) {
    const Place place = m_index.placeOf(row.contents.location);
    if (!m_index.at(place).measured) {
        layoutOf(place);
    }
}

/// Whether the first strong character of a line, if it comes soon, is one from right to left.
bool TextLayout::isRightToLeft(TextRange line) const {
    constexpr char16_t firstOfRightToLeft = 0x590;
    const QString start = m_storage.text({line.location, std::min(line.length, directionSearchLength)});
    const auto mayBe = [](QChar unit) { return unit.unicode() >= firstOfRightToLeft; };
    return std::any_of(start.cbegin(), start.cend(), mayBe) && start.isRightToLeft();
}

SegmentLayout& TextLayout::layoutOf(const Place& place) {
    CachedLayout& cached = m_cache[m_index.at(place).id];
    cached.lastUse = ++m_clock;
    if (!cached.layout) {
        cached.layout = layOut(place);
        m_cachedUnits += cached.layout->unitCount();
        SegmentLayout& layout = *cached.layout;
        trimCache();
        return layout;
    }
    return *cached.layout;
}

std::unique_ptr<SegmentLayout> TextLayout::layOut(const Place& place) {
    const SegmentIndex::Segment segment = m_index.at(place);
    const TextRange line = m_storage.lineContents(m_storage.lineAt(place.start));
    const qsizetype segmentEnd = std::min(place.start + segment.length, line.end());
    const bool isPiece = m_wraps && !segment.endsLine;
    const auto ahead = std::max(lookAhead, static_cast<qsizetype>(2 * m_width / std::max(1.0, m_blankWidth)));
    const qsizetype end = isPiece ? std::min(segmentEnd + ahead, line.end()) : segmentEnd;

    QTextOption option;
    option.setTextDirection(isRightToLeft(line) ? Qt::RightToLeft : Qt::LeftToRight);
    option.setAlignment((m_wraps && option.textDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft) |
                        Qt::AlignAbsolute);
    option.setWrapMode(m_wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    option.setTabStopDistance(blanksPerTab * m_blankWidth);
    if (!m_wraps) {
        option.setFlags(QTextOption::IncludeTrailingSpaces);
    }
    Preedit preedit = m_preedit;
    preedit.position -= place.start;
    const bool hasPreedit =
        !m_preedit.isEmpty() && preedit.position >= 0 &&
        (preedit.position < segment.length || (segment.endsLine && preedit.position <= segmentEnd - place.start));

    auto layout = std::make_unique<SegmentLayout>(m_storage.text({place.start, end - place.start}), m_font, option,
                                                  hasPreedit ? &preedit : nullptr);
    if (!m_wraps) {
        layout->layOutAsOneRow();
        m_index.setMeasured(place, 1, layout->width());
        return layout;
    }
    // A piece ends where one of its rows ends, near where it ended before, so that no row stays short at a cut.
    const qsizetype target = isPiece ? std::min(segment.length, m_index.longestSegment()) : end - place.start;
    const qsizetype used = layout->layOutInRows(m_width, target, end == line.end());
    m_index.setMeasured(place, layout->rowCount(), 0);
    if (isPiece && used != segment.length) {
        const bool takesLineEnd = place.start + used == line.end();
        m_index.setLength(place,
                          takesLineEnd ? m_storage.lineRange(m_storage.lineAt(place.start)).end() - place.start : used);
    }
    return layout;
}

/// Drops the layouts that nobody has asked for in a while, down to three quarters of what may be kept.
void TextLayout::trimCache() {
    if (std::ssize(m_cache) <= mostCachedLayouts && m_cachedUnits <= mostCachedUnits) {
        return;
    }
    std::vector<std::pair<quint64, quint64>> uses;
    uses.reserve(m_cache.size());
    for (const auto& [id, cached] : m_cache) {
        uses.emplace_back(cached.lastUse, id);
    }
    std::sort(uses.begin(), uses.end());
    for (std::size_t i = 0; i + 1 < uses.size(); ++i) {
        if (std::ssize(m_cache) <= 3 * mostCachedLayouts / 4 && m_cachedUnits <= 3 * mostCachedUnits / 4) {
            break;
        }
        const auto cached = m_cache.find(uses[i].second);
        m_cachedUnits -= cached->second.layout->unitCount();
        m_cache.erase(cached);
    }
}

TextLayout::Row TextLayout::makeRow(const Place& place, SegmentLayout& layout, qsizetype rowInSegment) {
    const SegmentIndex::Segment& segment = m_index.at(place);
    const TextRange range = layout.row(rowInSegment);
    Row row;
    row.contents = {place.start + range.location, range.length};
    row.endsLine = segment.endsLine && rowInSegment == layout.rowCount() - 1;
    row.next = row.endsLine ? place.start + segment.length : row.contents.end();
    row.isLast = row.endsLine && !row.hasTerminator();
    row.isRightToLeft = layout.isRightToLeft();
    return row;
}

TextLayout::Row TextLayout::lineRow(qsizetype line) const {
    Row row;
    row.contents = m_storage.lineContents(line);
    row.next = m_storage.lineRange(line).end();
    row.isLast = !row.hasTerminator();
    row.isRightToLeft = isRightToLeft(row.contents);
    return row;
}

qint64 TextLayout::indexOf(const Row& row) {
    if (!m_wraps) {
        return m_storage.lineAt(row.contents.location);
    }
    const Piece piece = wrappedPiece(row);
    return piece.place.row + piece.row;
}

TextLayout::Row TextLayout::rowAt(qint64 index) {
    if (!m_wraps) {
        return lineRow(std::clamp<qint64>(index, 0, m_storage.lineCount() - 1));
    }
    const Place place = m_index.placeOfRow(index);
    SegmentLayout& layout = layoutOf(place);
    return makeRow(place, layout, std::clamp<qint64>(index - place.row, 0, layout.rowCount() - 1));
}

TextLayout::Row TextLayout::rowHolding(qsizetype position, Side side) {
    if (!m_wraps) {
        return lineRow(m_storage.lineAt(position));
    }
    for (;;) {
        const Place place = m_index.placeOf(position);
        SegmentLayout& layout = layoutOf(place);
        // Laying out a piece may move its end before the position.
        const SegmentIndex::Segment& segment = m_index.at(place);
        if (position >= place.start + segment.length && !segment.endsLine) {
            continue;
        }
        const Row row = makeRow(place, layout, layout.rowHolding(position - place.start));
        if (side == Side::before && position == row.contents.location && position > 0) {
            const Row above = rowHolding(position - 1);
            // Laying out the row above may have moved this row's beginning.
            return above.contents.end() >= position && !above.endsLine ? above : rowHolding(position);
        }
        return row;
    }
}

std::optional<TextLayout::Row> TextLayout::rowBelow(const Row& row) {
    return row.isLast ? std::nullopt : std::optional(rowHolding(row.next));
}

std::optional<TextLayout::Row> TextLayout::rowAbove(const Row& row) {
    return row.contents.location == 0 ? std::nullopt : std::optional(rowHolding(row.contents.location - 1));
}

TextLayout::Piece TextLayout::wrappedPiece(const Row& row) {
    Piece piece;
    piece.place = m_index.placeOf(row.contents.location);
    piece.layout = &layoutOf(piece.place);
    piece.row = piece.layout->rowHolding(row.contents.location - piece.place.start);
    return piece;
}

qreal TextLayout::lineWidth(Place lineStart) {
    qreal width = m_index.at(lineStart).width;
    while (!m_index.at(lineStart).endsLine && m_index.moveToNext(lineStart)) {
        width += m_index.at(lineStart).width;
    }
    return width;
}

/// Lines from right to left stand at the right edge as long as they fit.
qreal TextLayout::lineLeft(const Row& row, qreal lineWidth) const {
    return row.isRightToLeft ? std::max<qreal>(0, m_width - lineWidth) : 0;
}

/// The pieces of a row that touch the clip, laid out, in logical order.
std::vector<TextLayout::Piece> TextLayout::piecesOf(const Row& row, HorizontalSpan clip) {
    if (m_wraps) {
        return {wrappedPiece(row)};
    }
    Place place = m_index.placeOf(row.contents.location);
    if (m_index.at(place).endsLine) {
        SegmentLayout& layout = layoutOf(place);
        return {Piece{place, &layout, 0, lineLeft(row, layout.width())}};
    }
    std::vector<Piece> pieces;
    const qreal whole = lineWidth(place);
    qreal done = 0;
    do {
        const auto leftOf = [&](qreal width) {
            return row.isRightToLeft ? lineLeft(row, whole) + whole - done - width : done;
        };
        const qreal width = m_index.at(place).width;
        const HorizontalSpan estimated{leftOf(width), leftOf(width) + width};
        if (row.isRightToLeft ? estimated.right < clip.left : estimated.left > clip.right) {
            break;
        }
        if (estimated.left <= clip.right && estimated.right >= clip.left) {
            SegmentLayout& layout = layoutOf(place);
            pieces.push_back({place, &layout, 0, leftOf(layout.width())});
        }
        done += m_index.at(place).width;
    } while (!m_index.at(place).endsLine && m_index.moveToNext(place));
    return pieces;
}

TextLayout::Piece TextLayout::pieceHolding(const Row& row, qsizetype position) {
    if (m_wraps) {
        return wrappedPiece(row);
    }
    Piece piece;
    piece.place = m_index.placeOf(position);
    piece.layout = &layoutOf(piece.place);
    Place place = piece.place;
    m_index.moveToLineStart(place);
    const qreal whole = row.isRightToLeft ? lineWidth(place) : 0;
    qreal before = 0;
    while (place.start < piece.place.start) {
        before += m_index.at(place).width;
        m_index.moveToNext(place);
    }
    piece.left = row.isRightToLeft ? lineLeft(row, whole) + whole - before - piece.layout->width() : before;
    return piece;
}

TextLayout::Piece TextLayout::pieceAt(const Row& row, qreal x) {
    const qreal whole = lineWidth(m_index.placeOf(row.contents.location));
    const qreal left = lineLeft(row, whole);
    const qreal reachable = std::clamp(x, left, left + whole);
    const std::vector<Piece> pieces = piecesOf(row, {reachable, reachable});
    return pieces.empty() ? pieceHolding(row, row.contents.end()) : pieces.back();
}

qreal TextLayout::xOf(const Row& row, qsizetype position) {
    const Piece piece = pieceHolding(row, position);
    const qreal x = piece.left + piece.layout->xOf(piece.row, position - piece.place.start);
    // Blanks at the end of a wrapped row hang out of it; the caret stays in sight.
    return m_wraps ? std::clamp<qreal>(x, 0, m_width) : x;
}

qsizetype TextLayout::positionAt(const Row& row, qreal x) {
    const Piece piece = m_wraps ? wrappedPiece(row) : pieceAt(row, x);
    const qsizetype found = piece.place.start + piece.layout->positionAt(piece.row, x - piece.left);
    const qsizetype end = row.contents.end();
    const qsizetype position = std::clamp(found, row.contents.location, end);
    const auto nearer = [&](qsizetype first, qsizetype second) {
        return std::abs(xOf(row, first) - x) <= std::abs(xOf(row, second) - x) ? first : second;
    };
    // The toolkit never gives the end of a row that it broke: right behind a blank, but wrong within a word.
    if (!row.endsLine && position < end && !QChar(m_storage.unitAt(end - 1)).isSpace() &&
        m_storage.nextCluster(position) == end) {
        return nearer(m_storage.clusterBoundaryAtOrBefore(position), end);
    }
    const qsizetype before = m_storage.clusterBoundaryAtOrBefore(position);
    return before == position ? position : nearer(before, std::min(m_storage.clusterBoundaryAtOrAfter(position), end));
}

std::vector<HorizontalSpan> TextLayout::spansOf(const Row& row, TextRange range, HorizontalSpan clip) {
    const qsizetype from = std::max(range.location, row.contents.location);
    const qsizetype to = std::min(range.end(), row.contents.end());
    std::vector<HorizontalSpan> spans;
    if (from < to) {
        for (const Piece& piece : piecesOf(row, clip)) {
            const TextRange laidOut = piece.layout->row(piece.row);
            const qsizetype first = std::max(from - piece.place.start, laidOut.location);
            const qsizetype last = std::min(to - piece.place.start, laidOut.end());
            if (first < last) {
                for (const HorizontalSpan& span : piece.layout->spansOf(piece.row, {first, last - first})) {
                    spans.push_back({piece.left + span.left, piece.left + span.right});
                }
            }
        }
    }
    if (row.hasTerminator() && range.location <= row.contents.end() && range.end() >= row.next) {
        const qreal x = xOf(row, row.contents.end());
        spans.push_back(row.isRightToLeft ? HorizontalSpan{x - m_blankWidth, x} : HorizontalSpan{x, x + m_blankWidth});
    }
    return spans;
}

} // namespace quillary
