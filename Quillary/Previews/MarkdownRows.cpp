#include "Quillary/Previews/MarkdownRows.h"

#include "QuillaryCore/Formats/MarkdownInline.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Formats/MarkdownList.h"
#include "QuillaryCore/Formats/MarkdownParser.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>
#include <deque>
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
    constexpr qsizetype reach = 2000;
    if (wanted >= text.size()) {
        return text.size();
    }
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

/// Whether a raw text is too much for one row, by its length or by how often its looks may change.
bool takesPieces(QStringView raw) {
    constexpr qsizetype usualText = 2000;
    if (raw.size() <= usualText || raw.size() > MarkdownRows::longText) {
        return raw.size() > usualText;
    }
    const auto marks =
        std::count_if(raw.begin(), raw.end(), [](QChar unit) { return QStringView(u"*_`~[<").contains(unit); });
    return marks > 2 * MarkdownRows::mostRuns;
}

qint32 narrowed(qsizetype number) {
    return static_cast<qint32>(number);
}

class Flattener {
public:
    explicit Flattener(MarkdownRows& rows) : m_rows(rows) {}

    void run() {
        openBlocks(m_rows.blocks, -1, Gap::block);
        while (!m_levels.empty()) {
            Level& level = m_levels.back();
            if (level.isList) {
                stepList(level);
            } else {
                stepBlocks(level);
            }
        }
        nameAnchors();
    }

private:
    using Items = MarkdownSequence<MarkdownListItem>;

    /// A list, or the blocks of a quote, an item or the whole, that is being gone through.
    struct Level {
        bool isList = false;
        MarkdownBlocks blocks;
        Items items;
        std::optional<MarkdownBlocks::Iterator> block;
        std::optional<Items::Iterator> item;
        qint32 frame = -1;
        Gap gap = Gap::none;
        bool isFirst = true;
        qsizetype index = 0;
        // Of a list
        bool isOrdered = false;
        qsizetype number = 0;
        quint8 digits = 0;
    };

    void openBlocks(const MarkdownBlocks& blocks, qint32 frame, Gap gap) {
        Level& level = m_levels.emplace_back();
        level.blocks = blocks;
        level.block.emplace(level.blocks.begin());
        level.frame = frame;
        level.gap = gap;
    }

    void openList(const MarkdownList& list, qint32 frame) {
        Level& level = m_levels.emplace_back();
        level.isList = true;
        level.items = list.items();
        level.item.emplace(level.items.begin());
        level.frame = frame;
        level.gap = Gap::item;
        level.isOrdered = list.isOrdered();
        level.number = list.start();
        const qsizetype last = level.number + (level.isOrdered ? level.items.size() : 1) - 1;
        level.digits = static_cast<quint8>(QString::number(last).size());
    }

    void stepBlocks(Level& level) {
        if (*level.block == level.blocks.end()) {
            close(level);
            return;
        }
        const MarkdownBlock block = **level.block;
        ++*level.block;
        beginChild(level);
        const qsizetype index = level.index++;
        const qint32 frame = level.frame;
        if (m_levels.size() == 1 && block.kind() == MarkdownBlock::Kind::heading) {
            m_headings.emplace_back(index, nextRow(), block.text());
        }
        switch (block.kind()) {
        case MarkdownBlock::Kind::heading:
        case MarkdownBlock::Kind::paragraph:
            addText(block, frame);
            break;
        case MarkdownBlock::Kind::code:
            addCode(block, frame);
            break;
        case MarkdownBlock::Kind::quote:
            openBlocks(block.blocks(), addFrame(frame, MarkdownFrame::Marker::none, 0, 0), Gap::nested);
            break;
        case MarkdownBlock::Kind::list:
            openList(block.list(), frame);
            break;
        case MarkdownBlock::Kind::table:
            addTable(block, frame);
            break;
        case MarkdownBlock::Kind::rule:
            addRow(Kind::rule, frame);
            break;
        }
    }

    void stepList(Level& level) {
        if (*level.item == level.items.end()) {
            close(level);
            return;
        }
        const MarkdownListItem item = **level.item;
        ++*level.item;
        beginChild(level);
        const qsizetype number = level.number + level.index++;
        MarkdownFrame::Marker marker = level.isOrdered ? MarkdownFrame::Marker::number : MarkdownFrame::Marker::bullet;
        if (const std::optional<bool> checked = item.checked()) {
            marker = *checked ? MarkdownFrame::Marker::done : MarkdownFrame::Marker::open;
        }
        openBlocks(item.blocks(), addFrame(level.frame, marker, narrowed(number), level.digits), Gap::nested);
    }

    void beginChild(Level& level) {
        if (!std::exchange(level.isFirst, false)) {
            m_gap = level.gap;
        }
    }

    void close(const Level& level) {
        // An item has its marker even with nothing in it.
        const qint32 frame = level.isList ? -1 : level.frame;
        const bool isItem = frame >= 0 && !frameAt(frame).isQuote();
        if (isItem && frameAt(frame).firstRow == nextRow()) {
            addRow(Kind::blank, frame);
        }
        m_levels.pop_back();
    }

    const MarkdownFrame& frameAt(qint32 frame) const { return m_rows.frames[static_cast<std::size_t>(frame)]; }

    qint32 nextRow() const { return narrowed(static_cast<qsizetype>(m_rows.rows.size())); }

    qint32 addFrame(qint32 around, MarkdownFrame::Marker marker, qint32 number, quint8 digits) {
        MarkdownFrame frame;
        frame.parent = around;
        frame.depth = around < 0 ? 0 : static_cast<quint8>(frameAt(around).depth + 1);
        if (frame.depth >= MarkdownRows::shownDepth) {
            if (marker == MarkdownFrame::Marker::none) {
                return around;
            }
            frame.parent = frameAt(around).parent;
            frame.depth = frameAt(around).depth;
        }
        frame.marker = marker;
        frame.number = number;
        frame.digits = digits;
        frame.firstRow = nextRow();
        m_rows.frames.push_back(frame);
        return narrowed(static_cast<qsizetype>(m_rows.frames.size())) - 1;
    }

    MarkdownRow& addRow(Kind kind, qint32 frame) {
        MarkdownRow& row = m_rows.rows.emplace_back();
        row.kind = kind;
        row.frame = frame;
        row.gap = std::exchange(m_gap, Gap::none);
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

    void addText(const MarkdownBlock& block, qint32 frame) {
        const bool isHeading = block.kind() == MarkdownBlock::Kind::heading;
        const auto add = [&]() -> MarkdownRow& {
            MarkdownRow& row = addRow(isHeading ? Kind::heading : Kind::paragraph, frame);
            row.level = isHeading ? static_cast<quint8>(block.level()) : 0;
            return row;
        };
        if (!takesPieces(block.text())) {
            add().text = block.text();
            return;
        }
        const qint32 source = addLongText(block.text());
        const QString& text = m_rows.longTexts.back().text;
        const std::vector<MarkdownStyledText::Run>& runs = m_rows.longTexts.back().runs;
        const qint32 first = nextRow();
        auto run = runs.begin();
        qsizetype start = 0;
        do {
            qsizetype wanted = start + MarkdownRows::longText / 2;
            run = std::partition_point(run, runs.end(), [start](const MarkdownStyledText::Run& candidate) {
                return candidate.start + candidate.length <= start;
            });
            if (runs.end() - run > MarkdownRows::mostRuns) {
                wanted = std::min(wanted, run[MarkdownRows::mostRuns].start);
            }
            const qsizetype end = cutNear(text, start, wanted);
            MarkdownRow& row = add();
            row.source = source;
            row.start = narrowed(start);
            row.length = narrowed(end - start);
            start = end;
        } while (start < text.size());
        joinRows(first);
    }

    qint32 addLongText(QStringView raw) {
        m_rows.longTexts.push_back(MarkdownStyledText::of(raw));
        return narrowed(static_cast<qsizetype>(m_rows.longTexts.size())) - 1;
    }

    void addCode(const MarkdownBlock& block, qint32 frame) {
        const QStringView text = block.text();
        MarkdownRows::Code code;
        code.text = text;
        if (const std::optional<QStringView> language = block.language()) {
            code.language = language->toString();
        }
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
            row.text = text.sliced(start, end - start);
            row.source = source;
            row.start = narrowed(start);
            row.isCut = isCut;
            start = isCut ? end : end + 1;
        }
        joinRows(first);
        m_rows.codes.push_back(std::move(code));
    }

    void addTable(const MarkdownBlock& block, qint32 frame) {
        const MarkdownTable table = block.table();
        const qint32 source = narrowed(static_cast<qsizetype>(m_rows.tables.size()));
        m_rows.tables.push_back(table);
        const qint32 first = nextRow();
        for (qsizetype line = 0; line <= table.rowCount(); ++line) {
            qsizetype pieces = 1;
            for (qsizetype column = 0; column < table.columnCount(); ++column) {
                const QStringView cell = line == 0 ? table.header(column) : table.cell(line - 1, column);
                if (cell.size() > MarkdownRows::longText) {
                    m_rows.longCells.emplace(std::tuple(source, narrowed(line), narrowed(column)), addLongText(cell));
                    const qsizetype length = m_rows.longTexts.back().text.size();
                    pieces = std::max(pieces, (length + MarkdownRows::longText - 1) / MarkdownRows::longText);
                }
            }
            for (qsizetype piece = 0; piece < pieces; ++piece) {
                MarkdownRow& row = addRow(Kind::table, frame);
                row.source = source;
                row.start = narrowed(line);
                row.piece = static_cast<quint8>(piece);
            }
        }
        joinRows(first);
    }

    void nameAnchors() {
        QStringList texts;
        for (const auto& [index, row, text] : m_headings) {
            texts.append(text.toString());
        }
        const QStringList slugs = MarkdownLinks::uniqueSlugs(texts);
        for (qsizetype i = 0; i < slugs.size(); ++i) {
            const auto& [index, row, text] = m_headings[static_cast<std::size_t>(i)];
            m_rows.anchors.insert(index, slugs[i]);
            if (!m_rows.anchorRows.contains(slugs[i])) {
                m_rows.anchorRows.insert(slugs[i], row);
            }
        }
    }

    MarkdownRows& m_rows;
    /// Iterators point into the levels, which therefore don't move.
    std::deque<Level> m_levels;
    /// The distance of the next row to the one before.
    Gap m_gap = Gap::none;
    /// The headings at top level: block, row and text.
    std::vector<std::tuple<qsizetype, qint32, QStringView>> m_headings;
};

} // namespace

MarkdownRows MarkdownRows::of(const QString& text) {
    MarkdownRows rows;
    rows.blocks = MarkdownParser::parse(text);
    Flattener(rows).run();
    rows.rows.shrink_to_fit();
    rows.frames.shrink_to_fit();
    return rows;
}

MarkdownStyledText MarkdownRows::styledText(const MarkdownRow& row) const {
    if (row.kind == MarkdownRow::Kind::heading || row.kind == MarkdownRow::Kind::paragraph) {
        if (row.source >= 0) {
            return longTexts[static_cast<std::size_t>(row.source)].sliced(row.start, row.length);
        }
        return MarkdownStyledText::of(row.text);
    }
    MarkdownStyledText plain;
    plain.text = row.text.toString();
    return plain;
}

QStringView MarkdownRows::rawCell(const MarkdownRow& row, qsizetype column) const {
    const MarkdownTable& table = tables[static_cast<std::size_t>(row.source)];
    return row.start == 0 ? table.header(column) : table.cell(row.start - 1, column);
}

MarkdownStyledText MarkdownRows::cellText(const MarkdownRow& row, qsizetype column) const {
    const auto found = longCells.find({row.source, row.start, narrowed(column)});
    if (found == longCells.end()) {
        return row.piece == 0 ? MarkdownStyledText::of(rawCell(row, column)) : MarkdownStyledText();
    }
    const MarkdownStyledText& whole = longTexts[static_cast<std::size_t>(found->second)];
    const auto cut = [&whole](qsizetype piece) {
        return piece == 0 ? 0 : cutNear(whole.text, (piece - 1) * longText, piece * longText);
    };
    const qsizetype start = cut(row.piece);
    return start < whole.text.size() ? whole.sliced(start, cut(row.piece + 1) - start) : MarkdownStyledText();
}

bool MarkdownRows::mayHoldLink(const MarkdownRow& row) const {
    switch (row.kind) {
    case MarkdownRow::Kind::heading:
    case MarkdownRow::Kind::paragraph:
        return row.source >= 0 ? !longTexts[static_cast<std::size_t>(row.source)].links.isEmpty()
                               : MarkdownInline::containsLink(row.text);
    case MarkdownRow::Kind::table: {
        const qsizetype columns = tables[static_cast<std::size_t>(row.source)].columnCount();
        for (qsizetype column = 0; column < columns; ++column) {
            if (MarkdownInline::containsLink(rawCell(row, column))) {
                return true;
            }
        }
        return false;
    }
    default:
        return false;
    }
}

bool MarkdownRows::saySame(const MarkdownRows& a, const MarkdownRow& x, const MarkdownRows& b, const MarkdownRow& y) {
    if (x.kind != y.kind || x.level != y.level) {
        return false;
    }
    if (x.kind != MarkdownRow::Kind::table) {
        const bool isPiece = x.text.isNull() && y.text.isNull() && x.source >= 0 && y.source >= 0;
        return isPiece ? a.styledText(x).text == b.styledText(y).text : x.text == y.text;
    }
    const qsizetype columns = a.tables[static_cast<std::size_t>(x.source)].columnCount();
    if (columns != b.tables[static_cast<std::size_t>(y.source)].columnCount() || x.piece != y.piece) {
        return false;
    }
    for (qsizetype column = 0; column < columns; ++column) {
        if (a.rawCell(x, column) != b.rawCell(y, column)) {
            return false;
        }
    }
    return true;
}

} // namespace quillary
