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
    qsizetype rowCount() const { return (table().endOfCells - table().firstCell) / columnCount() - 1; }

    QStringView header(qsizetype column) const { return m_tree->view(cellAt(0, column).text); }

    Alignment alignment(qsizetype column) const { return cellAt(0, column).alignment; }

    QStringView cell(qsizetype row, qsizetype column) const { return m_tree->view(cellAt(row + 1, column).text); }

private:
    const MarkdownTree::Table& table() const { return m_tree->table(m_tree->nodes[m_node]); }

    const MarkdownTree::Cell& cellAt(qsizetype line, qsizetype column) const {
        return m_tree->cells[table().firstCell + static_cast<std::size_t>(line * columnCount() + column)];
    }

    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_node;
};

} // namespace quillary
