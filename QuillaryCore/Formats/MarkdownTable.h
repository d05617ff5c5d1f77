#pragma once

#include "QuillaryCore/Formats/MarkdownTree.h"

#include <QStringView>

#include <memory>

namespace quillary {

/// A table: a header, and rows that all have its length.
class MarkdownTable {
public:
    using Alignment = MarkdownTree::Alignment;

    MarkdownTable(std::shared_ptr<const MarkdownTree> tree, std::size_t node) : m_tree(std::move(tree)), m_node(node) {}

    qsizetype columnCount() const { return table().columns; }

    /// The rows below the header.
    qsizetype rowCount() const { return qsizetype(table().endOfLines - table().firstLine) - 1; }

    QStringView header(qsizetype column) const { return text(0, column); }

    Alignment alignment(qsizetype column) const {
        return m_tree->alignments[table().firstAlignment + static_cast<std::size_t>(column)];
    }

    QStringView cell(qsizetype row, qsizetype column) const { return text(row + 1, column); }

    /// A cell of the header, whose line is 0, or of a row below it.
    QStringView text(qsizetype line, qsizetype column) const {
        return column < filledCount(line)
                   ? m_tree->view(m_tree->cells[m_tree->lines[place(line)] + std::size_t(column)])
                   : QStringView();
    }

    /// The number of cells up to the last one of a line that isn't empty. Work that goes by it costs what was written,
    /// however wide the table.
    qsizetype filledCount(qsizetype line) const { return static_cast<qsizetype>(m_tree->cellCount(place(line))); }

private:
    const MarkdownTree::Table& table() const { return m_tree->table(m_tree->nodes[m_node]); }

    std::size_t place(qsizetype line) const { return table().firstLine + static_cast<std::size_t>(line); }

    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_node;
};

} // namespace quillary
