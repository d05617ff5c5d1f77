#pragma once

#include "QuillaryCore/Formats/MarkdownLine.h"
#include "QuillaryCore/Formats/MarkdownLineForms.h"
#include "QuillaryCore/Formats/MarkdownTableRow.h"
#include "QuillaryCore/Formats/MarkdownTextJoiner.h"
#include "QuillaryCore/Formats/MarkdownTree.h"

#include <vector>

namespace quillary {

/// Builds the tree line by line.
///
/// The rules are told from above: a quote or an item collects its lines, and those are read as a text of their own.
/// Here each line goes once down through the quotes and items that are open, loses at each what that one takes off, and
/// ends in the paragraph, code block or table that is open, or opens something new. What comes out is the same, in
/// time linear in the text whatever the depth: a level either takes something off the line or is passed over
/// together with its neighbours.
class MarkdownBlockReader {
public:
    explicit MarkdownBlockReader(MarkdownTree& tree) : m_tree(tree), m_text(tree) {}

    /// The next line, without its end and with its leading tabs expanded.
    /// `mayHoldBar` is false only if there is no "|" in it.
    void read(QStringView line, bool mayHoldBar);

    /// Closes everything.
    void finish();

private:
    using Kind = MarkdownTree::Kind;

    /// A quote or a list item that is open.
    struct Container {
        bool isItem = false;
        /// Whether the last line it took is blank.
        bool endsBlank = false;
        bool isOrdered = false;
        std::size_t node = 0;
        /// Of an item: its list, and where it begins.
        std::size_t list = 0;
        qsizetype markerIndent = 0;
        qsizetype contentOffset = 0;
        /// Where the content of the list's first item begins.
        qsizetype firstContentOffset = 0;
        /// Blank lines that are the item's only if a line of its content follows.
        qsizetype pendingBlanks = 0;
    };

    enum class Leaf : quint8 { none, paragraph, fence, indentedCode, table };

    // The way down through the containers (MarkdownBlockReader.cpp)
    bool passItem(std::size_t& depth, MarkdownLine& line);
    void takeBlank(std::size_t depth, QStringView line);
    void commitBlanks(std::size_t depth);
    std::size_t lazyTarget(std::size_t depth, const MarkdownLine& line) const;
    bool opensBlock(const MarkdownLine& line);
    bool holdsBar(const MarkdownLine& line) const;
    void setOpenEnd(std::size_t depth, bool isOpenEnded);

    // What begins and ends (MarkdownBlockReaderBlocks.cpp)
    void begin(MarkdownLine line);
    void beginQuote();
    void beginList(const MarkdownLineForms::ListMarker& marker);
    MarkdownLine beginItem(std::size_t depth, const MarkdownLineForms::ListMarker& marker);
    void beginText(const MarkdownLine& line);
    bool goOn(const MarkdownLine& line);
    bool goOnWithParagraph(const MarkdownLine& line);
    bool goOnWithFence(const MarkdownLine& line);
    bool goOnWithIndentedCode(const MarkdownLine& line);
    bool goOnWithTable(const MarkdownLine& line);
    bool beginTable(const MarkdownLine& separator);
    void addRow(QStringView line);
    void takeBlanksInLeaf(QStringView line, qsizetype count);
    void endLeaf();
    void endFrom(std::size_t depth);
    MarkdownTree::Node& addNode(Kind kind);
    void endNode(std::size_t node);

    MarkdownTree& m_tree;
    MarkdownTextJoiner m_text;
    // Of the line that is being read
    MarkdownLineForms::ThematicMemo m_memo;
    bool m_mayHoldBar = false;

    std::vector<Container> m_open;
    /// The depths of the open items, ascending.
    std::vector<std::size_t> m_items;
    /// The depths of containers that end with blank lines, descending: only these can refuse a line that goes on
    /// lazily.
    std::vector<std::size_t> m_openEnds;

    Leaf m_leaf = Leaf::none;
    /// Whether the last line is the header of a table if the next one is its separator.
    bool m_mayBeHeader = false;
    char16_t m_fenceMarker = u'`';
    qsizetype m_fenceLength = 0;
    qsizetype m_fenceIndent = 0;
    /// Blank lines in indented code, which are part of it only if more code follows.
    qsizetype m_pendingBlanks = 0;
    /// Of the fence: its place among the languages, or -1.
    std::vector<MarkdownTableRow::Cell> m_cells;
    std::vector<MarkdownTree::Alignment> m_alignments;
};

} // namespace quillary
