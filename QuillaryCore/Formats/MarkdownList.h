#pragma once

#include "QuillaryCore/Formats/MarkdownBlock.h"

#include <optional>

namespace quillary {

/// One item of a list.
class MarkdownListItem {
public:
    MarkdownListItem(std::shared_ptr<const MarkdownTree> tree, std::size_t node)
        : m_tree(std::move(tree)), m_node(node) {}

    /// The state of a task item; none for a plain one.
    std::optional<bool> checked() const {
        const MarkdownTree::Check check = m_tree->nodes[m_node].check;
        return check == MarkdownTree::Check::none ? std::nullopt : std::optional(check == MarkdownTree::Check::done);
    }

    MarkdownBlocks blocks() const { return {m_tree, m_node + 1, m_tree->endOf(m_node)}; }

private:
    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_node;
};

/// A list with its items.
class MarkdownList {
public:
    MarkdownList(std::shared_ptr<const MarkdownTree> tree, std::size_t node) : m_tree(std::move(tree)), m_node(node) {}

    bool isOrdered() const { return m_tree->nodes[m_node].isOrdered; }

    /// The number of the first item; 1 for a list without numbers.
    int start() const { return m_tree->nodes[m_node].extent.number; }

    MarkdownSequence<MarkdownListItem> items() const { return {m_tree, m_node + 1, m_tree->endOf(m_node)}; }

private:
    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_node;
};

} // namespace quillary
