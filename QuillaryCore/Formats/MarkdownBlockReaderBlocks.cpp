#include "QuillaryCore/Formats/MarkdownBlockReader.h"

#include <algorithm>
#include <utility>

namespace quillary {

using namespace MarkdownLineForms;

namespace {

/// Lines that are indented as far as this are code where nothing else claims them.
constexpr qsizetype codeIndent = 4;

} // namespace

/// Reads a line where a block may begin, down to the text in it.
void MarkdownBlockReader::begin(MarkdownLine line) {
    while (!line.isBlank()) {
        if (!mayOpenBlock(line)) {
            beginText(line);
            return;
        }
        if (const std::optional<Fence> opened = fence(line)) {
            m_leaf = Leaf::fence;
            m_fenceMarker = opened->marker;
            m_fenceLength = opened->length;
            m_fenceIndent = opened->indent;
            if (const std::optional<QStringView> name = language(opened->info)) {
                // The block is the next node, added when it ends.
                m_tree.languages.push_back({static_cast<quint32>(m_tree.nodes.size()), m_text.store(*name)});
            }
            return;
        }
        if (const std::optional<Heading> heading = atxHeading(line)) {
            MarkdownTree::Node& node = addNode(Kind::heading);
            node.level = static_cast<quint8>(heading->level);
            node.text = m_text.store(heading->text);
            return;
        }
        if (isThematicBreak(line, m_memo)) {
            addNode(Kind::rule);
            return;
        }
        if (isQuoteLine(line)) {
            line = quoteContent(line);
            m_open.push_back({.endsBlank = line.isBlank(), .node = m_tree.nodes.size()});
            addNode(Kind::quote);
            setOpenEnd(m_open.size() - 1, line.isBlank());
        } else if (const std::optional<ListMarker> marker = listMarker(line)) {
            beginList(*marker);
            line = beginItem(m_open.size() - 1, *marker);
        } else {
            beginText(line);
            return;
        }
    }
}

void MarkdownBlockReader::beginList(const ListMarker& marker) {
    m_items.push_back(m_open.size());
    m_open.push_back({.isItem = true,
                      .isOrdered = marker.ordered,
                      .list = m_tree.nodes.size(),
                      .firstContentOffset = marker.contentOffset});
    MarkdownTree::Node& list = addNode(Kind::list);
    list.isOrdered = marker.ordered;
    list.extent.number = std::max(marker.number, 1);
}

/// Begins the item in the container at `depth`, the innermost, and gives its first line.
MarkdownLine MarkdownBlockReader::beginItem(std::size_t depth, const ListMarker& marker) {
    Container& item = m_open[depth];
    item.node = m_tree.nodes.size();
    item.markerIndent = marker.indent;
    item.contentOffset = marker.contentOffset;
    item.pendingBlanks = 0;
    item.endsBlank = marker.content.isBlank();
    setOpenEnd(depth, item.endsBlank);
    MarkdownTree::Node& node = addNode(Kind::item);
    const std::optional<Task> found = task(marker.content);
    if (!found) {
        return marker.content;
    }
    node.check = found->checked ? MarkdownTree::Check::done : MarkdownTree::Check::open;
    return found->rest;
}

/// Begins a paragraph or indented code. A table begins like these, until its second line is seen.
void MarkdownBlockReader::beginText(const MarkdownLine& line) {
    m_mayBeHeader = holdsBar(line);
    if (line.indent() < codeIndent) {
        m_leaf = Leaf::paragraph;
        m_text.add(MarkdownCharacters::trimmed(line.content()));
    } else {
        m_leaf = Leaf::indentedCode;
        m_text.add(line.text().sliced(codeIndent));
    }
}

/// Offers the line to the text that is open; false if there is none or it ends here.
bool MarkdownBlockReader::goOn(const MarkdownLine& line) {
    if (m_mayBeHeader && beginTable(line)) {
        return true;
    }
    bool isTaken = false;
    switch (m_leaf) {
    case Leaf::none:
        return false;
    case Leaf::paragraph:
        isTaken = goOnWithParagraph(line);
        break;
    case Leaf::fence:
        isTaken = goOnWithFence(line);
        break;
    case Leaf::indentedCode:
        isTaken = goOnWithIndentedCode(line);
        break;
    case Leaf::table:
        isTaken = goOnWithTable(line);
        break;
    }
    if (!isTaken) {
        endLeaf();
    }
    return isTaken;
}

bool MarkdownBlockReader::goOnWithParagraph(const MarkdownLine& line) {
    if (const int level = setextLevel(line)) {
        MarkdownTree::Node& node = addNode(Kind::heading);
        node.level = static_cast<quint8>(level);
        node.text = m_text.take();
        m_leaf = Leaf::none;
        m_mayBeHeader = false;
        return true;
    }
    if (opensBlock(line)) {
        return false;
    }
    m_mayBeHeader = holdsBar(line);
    m_text.add(MarkdownCharacters::trimmed(line.content()));
    return true;
}

bool MarkdownBlockReader::goOnWithFence(const MarkdownLine& line) {
    if (closesFence(line, m_fenceMarker, m_fenceLength)) {
        endLeaf();
    } else {
        m_text.add(line.text().sliced(std::min(line.indent(), m_fenceIndent)));
    }
    return true;
}

bool MarkdownBlockReader::goOnWithIndentedCode(const MarkdownLine& line) {
    m_mayBeHeader = false;
    if (line.indent() < codeIndent) {
        return false;
    }
    for (; m_pendingBlanks > 0; --m_pendingBlanks) {
        m_text.add(QStringView());
    }
    m_text.add(line.text().sliced(codeIndent));
    return true;
}

bool MarkdownBlockReader::goOnWithTable(const MarkdownLine& line) {
    if (!holdsBar(line)) {
        return false;
    }
    addRow(line.text());
    return true;
}

/// Makes the last line of the open text the header of a table if the line fits under it.
bool MarkdownBlockReader::beginTable(const MarkdownLine& separator) {
    if (!MarkdownTableRow::readSeparator(separator.text(), m_alignments)) {
        return false;
    }
    // Outside the source the line stands among the joined texts, which grow under it when its cells are kept.
    const QStringView last = m_text.lastLine();
    const QString copy = m_text.isInSource(last) ? QString() : last.toString();
    const QStringView header = copy.isNull() ? last : QStringView(copy);
    MarkdownTableRow::split(header, m_cells);
    if (m_cells.size() != m_alignments.size()) {
        return false;
    }
    m_text.removeLast();
    if (m_text.isEmpty()) {
        m_text.take();
    } else {
        addNode(Kind::paragraph).text = m_text.take();
    }
    m_leaf = Leaf::table;
    m_mayBeHeader = false;
    addNode(Kind::table).extent.number = static_cast<qint32>(m_tree.tables.size());
    m_tree.tables.push_back({.firstLine = static_cast<quint32>(m_tree.lines.size()),
                             .endOfLines = 0,
                             .firstAlignment = static_cast<quint32>(m_tree.alignments.size()),
                             .columns = static_cast<quint32>(m_alignments.size())});
    m_tree.alignments.insert(m_tree.alignments.end(), m_alignments.begin(), m_alignments.end());
    addRow(header);
    return true;
}

/// Adds a row to the open table, cut to the header's length. Where it is shorter, or ends with empty cells, nothing is
/// kept for these.
void MarkdownBlockReader::addRow(QStringView line) {
    MarkdownTree::Table& table = m_tree.tables.back();
    MarkdownTableRow::split(line, m_cells);
    m_cells.resize(std::min<std::size_t>(m_cells.size(), table.columns));
    while (!m_cells.empty() && m_cells.back().text.isEmpty()) {
        m_cells.pop_back();
    }
    m_tree.lines.push_back(static_cast<quint32>(m_tree.cells.size()));
    for (const MarkdownTableRow::Cell& cell : m_cells) {
        m_tree.cells.push_back(cell.hasEscapedBars   ? m_text.store(MarkdownTableRow::unescaped(cell.text))
                               : cell.text.isEmpty() ? MarkdownTree::Text()
                                                     : m_text.store(cell.text));
    }
    table.endOfLines = static_cast<quint32>(m_tree.lines.size());
}

/// Gives the open text blank lines. They are alike if there is more than one.
void MarkdownBlockReader::takeBlanksInLeaf(QStringView line, qsizetype count) {
    m_mayBeHeader = false;
    switch (m_leaf) {
    case Leaf::none:
        break;
    case Leaf::paragraph:
    case Leaf::table:
        endLeaf();
        break;
    case Leaf::indentedCode:
        m_pendingBlanks += count;
        break;
    case Leaf::fence:
        for (; count > 0; --count) {
            m_text.add(line.sliced(std::min(MarkdownCharacters::indentation(line), m_fenceIndent)));
        }
        break;
    }
}

void MarkdownBlockReader::endLeaf() {
    const Leaf leaf = std::exchange(m_leaf, Leaf::none);
    m_mayBeHeader = false;
    if (leaf == Leaf::paragraph) {
        addNode(Kind::paragraph).text = m_text.take();
    } else if (leaf == Leaf::fence || leaf == Leaf::indentedCode) {
        addNode(Kind::code).text = m_text.take();
        m_pendingBlanks = 0;
    }
}

/// Ends all that is open from `depth` on inwards.
void MarkdownBlockReader::endFrom(std::size_t depth) {
    endLeaf();
    while (m_open.size() > depth) {
        const Container& last = m_open.back();
        endNode(last.node);
        if (last.isItem) {
            endNode(last.list);
            m_items.pop_back();
        }
        m_open.pop_back();
    }
    std::erase_if(m_openEnds, [depth](std::size_t each) { return each >= depth; });
}

MarkdownTree::Node& MarkdownBlockReader::addNode(Kind kind) {
    MarkdownTree::Node& node = m_tree.nodes.emplace_back();
    node.kind = kind;
    if (!node.hasText()) {
        node.extent = {.end = static_cast<quint32>(m_tree.nodes.size()), .number = 0};
    }
    return node;
}

void MarkdownBlockReader::endNode(std::size_t node) {
    m_tree.nodes[node].extent.end = static_cast<quint32>(m_tree.nodes.size());
}

void MarkdownBlockReader::finish() {
    endFrom(0);
}

} // namespace quillary
