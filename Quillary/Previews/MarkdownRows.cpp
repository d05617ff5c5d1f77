#include "Quillary/Previews/MarkdownRows.h"

#include "QuillaryCore/Formats/MarkdownInline.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Formats/MarkdownParser.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

namespace quillary {

namespace {

using Gap = MarkdownRow::Gap;
using Kind = MarkdownRow::Kind;

/// The most that a row of code takes.
constexpr qsizetype codeRowUnits = 3000;
constexpr qsizetype codeRowLines = 24;

/// A place to cut a text at, near `wanted` and behind `start`: behind a line end, else behind a blank, else between
/// clusters.
qsizetype cutNear(QStringView text, qsizetype start, qsizetype wanted) {
    if (wanted >= text.size()) {
        return text.size();
    }
    const qsizetype reach = std::max<qsizetype>((wanted - start) / 3, 100);
    const qsizetype from = std::max(start + 1, wanted - reach);
    const QStringView near = text.sliced(from, wanted - from);
    if (const qsizetype lineEnd = near.lastIndexOf(u'\n'); lineEnd >= 0) {
        return from + lineEnd + 1;
    }
    if (const qsizetype blank = near.lastIndexOf(u' '); blank >= 0) {
        return from + blank + 1;
    }
    // Walking back from `wanted` could be long: a cluster has no greatest length.
    const qsizetype boundary = from + previousClusterBoundary(near, near.size());
    return boundary > from ? boundary : wanted;
}

/// A text below this length is never too much.
constexpr qsizetype usualText = 2000;

/// What a row takes of a text at most, roughly.
struct Portion {
    qsizetype units = MarkdownRows::longText / 2;
    qsizetype runs = MarkdownRows::mostRuns;
};

/// So many runs fill some lines. Shorter pieces mean that less is laid out beyond what is on the screen.
constexpr qsizetype pieceRuns = 100;

/// Whether a text holds a word that is much longer than a line. Each line within it is sought as far as the word goes
/// on. Ideographs and what else stands so high may be parted anywhere.
bool holdsEndlessWord(QStringView text) {
    constexpr qsizetype endless = 1000;
    constexpr char16_t firstIdeograph = 0x2E80;
    qsizetype length = 0;
    for (const QChar unit : text) {
        length = unit.isSpace() || unit >= firstIdeograph ? 0 : length + 1;
        if (length > endless) {
            return true;
        }
    }
    return false;
}

/// How often the looks of a raw text may change.
qsizetype markCount(QStringView raw) {
    return std::count_if(raw.begin(), raw.end(), [](QChar unit) {
        return unit == u'*' || unit == u'_' || unit == u'`' || unit == u'~' || unit == u'[' || unit == u'<';
    });
}

/// Whether a raw text is too much for one row, by its length or by how often its looks may change.
bool takesPieces(QStringView raw, const Portion& portion) {
    const qsizetype usual = std::min(usualText, portion.units);
    if (raw.size() <= usual || raw.size() > 2 * portion.units) {
        return raw.size() > usual;
    }
    return markCount(raw) > 2 * portion.runs;
}

bool isTopLevelHeading(const MarkdownRow& row) {
    return row.kind == Kind::heading && row.isFirst && row.frame < 0;
}

/// The text with the places where its pieces begin.
MarkdownRows::LongText inPieces(QStringView raw, const Portion& portion) {
    MarkdownRows::LongText pieces{MarkdownInline::styled(raw), {}, MarkdownInline::containsLink(raw)};
    const QString& text = pieces.styled.text;
    const std::vector<MarkdownStyledText::Run>& runs = pieces.styled.runs;
    auto run = runs.begin();
    qsizetype start = 0;
    do {
        pieces.starts.push_back(static_cast<qint32>(start));
        run = std::partition_point(
            run, runs.end(), [start](const MarkdownStyledText::Run& candidate) { return candidate.end() <= start; });
        const qsizetype wanted = start + portion.units;
        const bool hasMoreRuns = runs.end() - run > portion.runs;
        start = cutNear(text, start, hasMoreRuns ? std::min<qsizetype>(wanted, run[portion.runs].start) : wanted);
    } while (start < text.size());
    return pieces;
}

qint32 narrowed(qsizetype number) {
    return static_cast<qint32>(number);
}

int digitCount(qsizetype number) {
    int digits = 1;
    for (; number >= 10; number /= 10) {
        ++digits;
    }
    return digits;
}

/// Goes through the nodes of the block tree, which lie in the order in which they are read, each container before what
/// is in it.
class Flattener {
public:
    explicit Flattener(MarkdownRows& rows) : m_rows(rows), m_tree(*rows.blocks.tree()) {}

    void run() {
        addLevel({.end = m_tree.nodes.size()});
        for (std::size_t node = 0; !m_levels.empty();) {
            if (node == m_levels.back().end) {
                close();
            } else {
                node = step(node);
            }
        }
    }

private:
    /// A list, or the blocks of a quote, an item or the whole, that is being gone through.
    struct Level {
        /// The first node that isn't in it.
        std::size_t end = 0;
        qint32 frame = -1;
        Gap gap = Gap::block;
        bool isFirst = true;
        bool isItem = false;
        // Of a list
        bool isOrdered = false;
        quint8 digits = 0;
        /// Of the next item.
        qsizetype number = 0;
        // How things stood before it
        qint32 firstRow = 0;
        quint8 begun = 0;
    };

    void addLevel(Level level) {
        level.firstRow = nextRow();
        level.begun = m_begun;
        m_levels.push_back(level);
    }

    /// Goes on with the blocks of a quote or an item that stands in `around`.
    void openFrame(std::size_t node, qint32 around, const MarkdownFrame& kind) {
        addLevel({.end = m_tree.endOf(node), .gap = Gap::nested, .isItem = !kind.isQuote()});
        m_levels.back().frame = beginFrame(around, kind);
    }

    void openList(std::size_t node, qint32 frame) {
        const MarkdownTree::Node& list = m_tree.nodes[node];
        const std::size_t end = m_tree.endOf(node);
        const qsizetype number = list.extent.number;
        qsizetype last = number;
        if (list.isOrdered) {
            last = number - 1;
            for (std::size_t item = node + 1; item != end; item = m_tree.endOf(item)) {
                ++last;
            }
        }
        addLevel({.end = end,
                  .frame = frame,
                  .gap = Gap::item,
                  .isOrdered = list.isOrdered,
                  .digits = static_cast<quint8>(digitCount(last)),
                  .number = number});
    }

    void openItem(std::size_t node, Level& list) {
        MarkdownFrame frame;
        frame.digits = list.digits;
        const MarkdownTree::Check check = m_tree.nodes[node].check;
        if (check != MarkdownTree::Check::none) {
            const bool isDone = check == MarkdownTree::Check::done;
            frame.marker = isDone ? MarkdownFrame::Marker::done : MarkdownFrame::Marker::open;
        } else if (list.isOrdered) {
            frame.marker = MarkdownFrame::Marker::number;
            frame.number = narrowed(list.number);
        } else {
            frame.marker = MarkdownFrame::Marker::bullet;
        }
        ++list.number;
        openFrame(node, list.frame, frame);
    }

    /// Reads a node, and gives the one to read next: of a container the first one in it.
    std::size_t step(std::size_t node) {
        Level& level = m_levels.back();
        if (!std::exchange(level.isFirst, false)) {
            m_gap = level.gap;
        }
        const qint32 frame = level.frame;
        switch (m_tree.nodes[node].kind) {
        case MarkdownTree::Kind::heading:
        case MarkdownTree::Kind::paragraph:
            addText(m_tree.nodes[node], frame);
            break;
        case MarkdownTree::Kind::code:
            addCode(m_tree.nodes[node], frame);
            break;
        case MarkdownTree::Kind::table:
            addTable(MarkdownTable(m_rows.blocks.tree(), node), frame);
            return m_tree.endOf(node);
        case MarkdownTree::Kind::rule:
            addRow(Kind::rule, frame);
            return m_tree.endOf(node);
        case MarkdownTree::Kind::quote:
            openFrame(node, frame, {});
            break;
        case MarkdownTree::Kind::list:
            openList(node, frame);
            break;
        case MarkdownTree::Kind::item:
            openItem(node, level);
            break;
        }
        return node + 1;
    }

    void close() {
        const Level level = m_levels.back();
        // An item has its marker even with nothing in it.
        if (level.isItem && level.firstRow == nextRow()) {
            addRow(Kind::blank, level.frame);
        }
        if (level.firstRow == nextRow()) {
            m_begun = level.begun;
        }
        m_levels.pop_back();
    }

    const MarkdownFrame& frameAt(qint32 frame) const { return m_rows.frames[static_cast<std::size_t>(frame)]; }

    qint32 nextRow() const { return narrowed(static_cast<qsizetype>(m_rows.rows.size())); }

    /// The frame of this kind within `around`, which may be known.
    qint32 beginFrame(qint32 around, MarkdownFrame frame) {
        frame.parent = around;
        frame.depth = around < 0 ? 0 : static_cast<quint8>(frameAt(around).depth + 1);
        if (frame.depth < MarkdownRows::shownDepth) {
            ++m_begun;
        } else if (frame.isQuote()) {
            return around;
        } else {
            // It takes the place of the one around it.
            frame.parent = frameAt(around).parent;
            frame.depth = frameAt(around).depth;
            m_begun = std::max<quint8>(m_begun, 1);
        }
        const auto place = static_cast<std::size_t>(qsizetype(frame.parent) + 1);
        const auto marker = static_cast<std::size_t>(frame.marker);
        const qint32 last = m_lastChildren[place][marker];
        if (last >= 0 && frameAt(last) == frame) {
            return last;
        }
        const qint32 added = narrowed(static_cast<qsizetype>(m_rows.frames.size()));
        m_rows.frames.push_back(frame);
        m_lastChildren[place][marker] = added;
        m_lastChildren.push_back(noChildren);
        return added;
    }

    MarkdownRow& addRow(Kind kind, qint32 frame) {
        MarkdownRow& row = m_rows.rows.emplace_back(kind, frame);
        row.gap = std::exchange(m_gap, Gap::none);
        row.begun = std::exchange(m_begun, quint8(0));
        return row;
    }

    /// Gives the rows from `first` on as pieces of one block.
    void joinRows(qint32 first) {
        for (qint32 i = first; i < nextRow(); ++i) {
            MarkdownRow& row = m_rows.rows[static_cast<std::size_t>(i)];
            row.isFirst = i == first;
            row.isLast = i + 1 == nextRow();
        }
    }

    void addText(const MarkdownTree::Node& block, qint32 frame) {
        const bool isHeading = block.kind == MarkdownTree::Kind::heading;
        const auto add = [&]() -> MarkdownRow& {
            MarkdownRow& row = addRow(isHeading ? Kind::heading : Kind::paragraph, frame);
            row.level = block.level;
            return row;
        };
        const QStringView text = m_tree.view(block.text);
        if (!takesPieces(text, {})) {
            add().text = block.text;
            return;
        }
        const Portion portion{holdsEndlessWord(text) ? usualText : Portion().units, pieceRuns};
        const qint32 source = addLongText(text, portion);
        const qint32 first = nextRow();
        for (const qint32 start : m_rows.longTexts.back().starts) {
            MarkdownRow& row = add();
            row.isPiece = true;
            row.part = {source, start};
        }
        joinRows(first);
    }

    qint32 addLongText(QStringView raw, const Portion& portion) {
        m_rows.longTexts.push_back(inPieces(raw, portion));
        return narrowed(static_cast<qsizetype>(m_rows.longTexts.size())) - 1;
    }

    void addCode(const MarkdownTree::Node& block, qint32 frame) {
        const QStringView text = m_tree.view(block.text);
        MarkdownRows::Code code;
        code.text = text;
        code.language = m_tree.language(block).toString();
        const qint32 source = narrowed(static_cast<qsizetype>(m_rows.codes.size()));
        const qint32 first = nextRow();
        qsizetype start = 0;
        bool isAtEnd = false;
        while (!isAtEnd) {
            qsizetype end = start;
            bool isCut = false;
            for (qsizetype lines = 0; lines < codeRowLines; ++lines) {
                const qsizetype lineFeed = text.indexOf(u'\n', end);
                const qsizetype lineEnd = lineFeed < 0 ? text.size() : lineFeed;
                if (lineEnd - end > codeRowUnits && lines == 0) {
                    code.longestLine = codeRowUnits;
                    end = cutNear(text.first(lineEnd), end, end + codeRowUnits);
                    isCut = end < lineEnd;
                    isAtEnd = !isCut && lineFeed < 0;
                    break;
                }
                if (lines > 0 && lineEnd - start > codeRowUnits) {
                    --end; // the line feed before this line ends the row
                    break;
                }
                code.longestLine = std::max(code.longestLine, lineEnd - end);
                end = lineEnd;
                isAtEnd = lineFeed < 0;
                if (isAtEnd || lines + 1 == codeRowLines) {
                    break;
                }
                ++end;
            }
            MarkdownRow& row = addRow(Kind::code, frame);
            row.part = {source, narrowed(start)};
            row.isCut = isCut;
            start = isCut ? end : end + 1;
        }
        joinRows(first);
        m_rows.codes.push_back(std::move(code));
    }

    void addTable(const MarkdownTable& table, qint32 frame) {
        const qint32 source = narrowed(static_cast<qsizetype>(m_rows.tables.size()));
        m_rows.tables.push_back(table);
        const qint32 first = nextRow();
        for (qsizetype line = 0; line <= table.rowCount(); ++line) {
            const qsizetype pieces = addLongCells(table, source, line);
            for (qsizetype piece = 0; piece < pieces; ++piece) {
                MarkdownRow& row = addRow(Kind::table, frame);
                row.part = {source, narrowed(line)};
                row.piece = static_cast<quint16>(piece) & 0x7fffU;
                row.isCut = piece + 1 < pieces;
            }
        }
        joinRows(first);
    }

    /// Cuts those cells of a line that are too much for one row beside each other, and gives the number of rows.
    qsizetype addLongCells(const MarkdownTable& table, qint32 source, qsizetype line) {
        constexpr qsizetype smallCell = 200;
        const qsizetype count = table.filledCount(line);
        qsizetype units = 0;
        qsizetype marks = 0;
        qsizetype large = 0;
        for (qsizetype column = 0; column < count; ++column) {
            const QStringView cell = table.text(line, column);
            units += cell.size();
            large += cell.size() > smallCell ? 1 : 0;
        }
        for (qsizetype column = 0; column < count && units > usualText; ++column) {
            marks += markCount(table.text(line, column));
        }
        qsizetype pieces = 1;
        if (large == 0 || (units <= MarkdownRows::longText && marks <= 2 * MarkdownRows::mostRuns)) {
            return pieces;
        }
        // A cell is narrow, so that this is a page.
        const Portion portion{std::max(usualText / large, smallCell), std::max<qsizetype>(pieceRuns / large, 20)};
        for (qsizetype column = 0; column < count; ++column) {
            if (const QStringView cell = table.text(line, column); takesPieces(cell, portion)) {
                const qint32 text = addLongText(cell, portion);
                m_rows.longCells.emplace(std::tuple(source, narrowed(line), narrowed(column)), text);
                pieces = std::max(pieces, m_rows.longTexts.back().pieceCount());
            }
        }
        return std::min(pieces, mostPieces);
    }

    static constexpr qsizetype mostPieces = 0x7fff;
    static constexpr std::array<qint32, 5> noChildren = {-1, -1, -1, -1, -1};

    MarkdownRows& m_rows;
    const MarkdownTree& m_tree;
    std::vector<Level> m_levels;
    /// The distance of the next row to the one before.
    Gap m_gap = Gap::none;
    /// How many of the open frames have no row yet.
    quint8 m_begun = 0;
    /// The latest frame of each kind in each frame, those at top level first.
    std::vector<std::array<qint32, 5>> m_lastChildren = {noChildren};
};

} // namespace

MarkdownRows MarkdownRows::of(const QString& text) {
    MarkdownRows rows;
    rows.blocks = MarkdownParser::parse(text);
    Flattener(rows).run();
    rows.rows.shrink_to_fit();
    rows.frames.shrink_to_fit();
    rows.codes.shrink_to_fit();
    rows.tables.shrink_to_fit();
    rows.longTexts.shrink_to_fit();
    return rows;
}

MarkdownStyledText MarkdownRows::LongText::piece(qsizetype index) const {
    if (index >= pieceCount()) {
        return {};
    }
    const auto place = static_cast<std::size_t>(index);
    const qsizetype end = index + 1 < pieceCount() ? starts[place + 1] : styled.text.size();
    return styled.sliced(starts[place], end - starts[place]);
}

/// Where a part ends in the whole that it is of, or, if more of it follows, where the next part begins.
qsizetype MarkdownRows::endOf(const MarkdownRow& part, qsizetype whole) const {
    return part.isLast ? whole : rows[static_cast<std::size_t>(&part - rows.data()) + 1].part.start;
}

QStringView MarkdownRows::rawText(const MarkdownRow& row) const {
    if (row.kind == MarkdownRow::Kind::code) {
        const QStringView code = codes[static_cast<std::size_t>(row.part.source)].text;
        const qsizetype lineEnd = row.isLast || row.isCut ? 0 : 1;
        return code.sliced(row.part.start, endOf(row, code.size()) - lineEnd - row.part.start);
    }
    return row.hasText() && !row.isPiece ? blocks.view(row.text) : QStringView();
}

MarkdownStyledText MarkdownRows::styledText(const MarkdownRow& row) const {
    if (row.isPiece) {
        const MarkdownStyledText& whole = longTexts[static_cast<std::size_t>(row.part.source)].styled;
        return whole.sliced(row.part.start, lengthOf(row));
    }
    if (row.hasText()) {
        return MarkdownInline::styled(rawText(row));
    }
    MarkdownStyledText plain;
    plain.text = rawText(row).toString();
    return plain;
}

qsizetype MarkdownRows::lengthOf(const MarkdownRow& row) const {
    if (row.isPiece) {
        const qsizetype whole = longTexts[static_cast<std::size_t>(row.part.source)].styled.text.size();
        return endOf(row, whole) - row.part.start;
    }
    return rawText(row).size();
}

QStringView MarkdownRows::rawCell(const MarkdownRow& row, qsizetype column) const {
    return tables[static_cast<std::size_t>(row.part.source)].text(row.part.start, column);
}

const MarkdownRows::LongText* MarkdownRows::longCell(const MarkdownRow& row, qsizetype column) const {
    const auto found = longCells.find({row.part.source, row.part.start, narrowed(column)});
    return found == longCells.end() ? nullptr : &longTexts[static_cast<std::size_t>(found->second)];
}

MarkdownStyledText MarkdownRows::cellText(const MarkdownRow& row, qsizetype column) const {
    if (const LongText* const cell = longCell(row, column)) {
        return cell->piece(row.piece);
    }
    return row.piece == 0 ? MarkdownInline::styled(rawCell(row, column)) : MarkdownStyledText();
}

bool MarkdownRows::mayHoldLink(const MarkdownRow& row) const {
    if (row.isPiece) {
        return longTexts[static_cast<std::size_t>(row.part.source)].mayHoldLink;
    }
    if (row.hasText()) {
        return MarkdownInline::containsLink(rawText(row));
    }
    if (row.kind != MarkdownRow::Kind::table) {
        return false;
    }
    const qsizetype count = tables[static_cast<std::size_t>(row.part.source)].filledCount(row.part.start);
    for (qsizetype column = 0; column < count; ++column) {
        if (mayHoldLink(row, column)) {
            return true;
        }
    }
    return false;
}

bool MarkdownRows::mayHoldLink(const MarkdownRow& row, qsizetype column) const {
    const LongText* const cell = longCell(row, column);
    return cell ? cell->mayHoldLink : MarkdownInline::containsLink(rawCell(row, column));
}

QStringList MarkdownRows::linksOf(const MarkdownRow& row, qsizetype column) const {
    if (row.kind == MarkdownRow::Kind::table) {
        return mayHoldLink(row, column) ? cellText(row, column).links : QStringList();
    }
    return mayHoldLink(row) ? styledText(row).links : QStringList();
}

std::optional<MarkdownLinkPlace>
MarkdownRows::linkBeside(const MarkdownRow& row, const std::optional<MarkdownLinkPlace>& from, bool forwards) const {
    const qsizetype step = forwards ? 1 : -1;
    const bool isTable = row.kind == MarkdownRow::Kind::table;
    const qsizetype columns =
        isTable ? tables[static_cast<std::size_t>(row.part.source)].filledCount(row.part.start) : 1;
    qsizetype column = forwards ? 0 : columns - 1;
    if (from) {
        const qsizetype beside = from->link + step;
        if (beside >= 0 && beside < linksOf(row, from->column).size()) {
            return MarkdownLinkPlace{from->column, beside};
        }
        column = from->column + step;
    }
    for (; column >= 0 && column < columns; column += step) {
        if (const qsizetype count = linksOf(row, column).size(); count > 0) {
            return MarkdownLinkPlace{column, forwards ? 0 : count - 1};
        }
    }
    return std::nullopt;
}

QString MarkdownRows::linkTarget(const MarkdownRow& row, const MarkdownLinkPlace& place) const {
    return linksOf(row, place.column).value(place.link);
}

bool MarkdownRows::saySame(const MarkdownRows& a, const MarkdownRow& x, const MarkdownRows& b, const MarkdownRow& y) {
    if (x.kind != y.kind || x.level != y.level || x.isPiece != y.isPiece || x.piece != y.piece) {
        return false;
    }
    if (x.isPiece) {
        return a.styledText(x).text == b.styledText(y).text;
    }
    if (x.kind != MarkdownRow::Kind::table) {
        return a.rawText(x) == b.rawText(y);
    }
    const MarkdownTable& s = a.tables[static_cast<std::size_t>(x.part.source)];
    const MarkdownTable& t = b.tables[static_cast<std::size_t>(y.part.source)];
    const qsizetype count = s.filledCount(x.part.start);
    if (s.columnCount() != t.columnCount() || count != t.filledCount(y.part.start)) {
        return false;
    }
    for (qsizetype column = 0; column < count; ++column) {
        if (a.rawCell(x, column) != b.rawCell(y, column)) {
            return false;
        }
    }
    return true;
}

QMap<qsizetype, QString> MarkdownRows::anchors() const {
    QList<qsizetype> places;
    QStringList texts;
    qsizetype place = 0;
    for (const MarkdownBlock& block : blocks) {
        if (block.kind() == MarkdownBlock::Kind::heading) {
            places.append(place);
            texts.append(block.text().toString());
        }
        ++place;
    }
    const QStringList slugs = MarkdownLinks::uniqueSlugs(texts);
    QMap<qsizetype, QString> anchors;
    for (qsizetype i = 0; i < slugs.size(); ++i) {
        anchors.insert(anchors.cend(), places[i], slugs[i]);
    }
    return anchors;
}

// A heading has the slug as it stands if it is the first of its name, or else with a number, that of the headings of
// its name before it. Nothing is kept for this: most headings are never gone to, and in some notes every line is one.
std::optional<qsizetype> MarkdownRows::rowOfAnchor(const QString& slug) const {
    const qsizetype dash = slug.lastIndexOf(u'-');
    const QStringView name = QStringView(slug).first(std::max<qsizetype>(dash, 0));
    const qsizetype number = dash < 0 ? 0 : QStringView(slug).sliced(dash + 1).toLongLong();
    const bool isNumbered = number > 0 && QString::number(number) == QStringView(slug).sliced(dash + 1);
    qsizetype namesakes = 0;
    qsizetype row = 0;
    for (const MarkdownBlock& block : blocks) {
        if (block.kind() != MarkdownBlock::Kind::heading) {
            continue;
        }
        while (!isTopLevelHeading(rows[static_cast<std::size_t>(row)])) {
            ++row;
        }
        const QString found = MarkdownLinks::slug(block.text());
        if (found == slug || (isNumbered && found == name && namesakes++ == number)) {
            return row;
        }
        ++row;
    }
    return std::nullopt;
}

} // namespace quillary
