#pragma once

#include "QuillaryCore/Formats/MarkdownTree.h"

#include <QStringView>

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>

namespace quillary {

class MarkdownList;
class MarkdownTable;

/// A list of blocks or of list items. Like its elements it is a light value that shares the whole tree.
template <typename Element>
class MarkdownSequence {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Element;

        Iterator(const MarkdownSequence* sequence, std::size_t node) : m_sequence(sequence), m_node(node) {}

        Element operator*() const { return Element(m_sequence->m_tree, m_node); }

        Iterator& operator++() {
            m_node = m_sequence->m_tree->endOf(m_node);
            return *this;
        }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_node == b.m_node; }

    private:
        const MarkdownSequence* m_sequence;
        std::size_t m_node;
    };

    /// No elements.
    MarkdownSequence() = default;

    /// The elements between two nodes of a tree.
    MarkdownSequence(std::shared_ptr<const MarkdownTree> tree, std::size_t first, std::size_t end)
        : m_tree(std::move(tree)), m_first(first), m_end(end) {}

    bool isEmpty() const { return m_first == m_end; }

    /// The tree that these are of, for those that read very many of its nodes: each element that is made of one shares
    /// the tree, which costs more than what it is read for. Null for no elements that were never made.
    const std::shared_ptr<const MarkdownTree>& tree() const { return m_tree; }

    /// What a text of the tree that these are of says.
    QStringView view(const MarkdownTree::Text& text) const { return m_tree->view(text); }

    /// How many there are; it walks over them.
    qsizetype size() const { return std::distance(begin(), end()); }

    Iterator begin() const { return {this, m_first}; }

    Iterator end() const { return {this, m_end}; }

    /// Equal elements, whatever texts they were read from.
    friend bool operator==(const MarkdownSequence& a, const MarkdownSequence& b) {
        return a.isEmpty() || b.isEmpty()
                   ? a.isEmpty() == b.isEmpty()
                   : MarkdownTree::areEqual(*a.m_tree, a.m_first, a.m_end, *b.m_tree, b.m_first, b.m_end);
    }

private:
    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_first = 0;
    std::size_t m_end = 0;
};

/// One block of a Markdown text. Each function but `kind` belongs to the kinds that it names. Texts are raw: their
/// inline marks are still to be read.
class MarkdownBlock {
public:
    enum class Kind : quint8 { heading, paragraph, code, quote, list, table, rule };

    MarkdownBlock(std::shared_ptr<const MarkdownTree> tree, std::size_t node) : m_tree(std::move(tree)), m_node(node) {}

    Kind kind() const { return static_cast<Kind>(node().kind); }

    /// The level of a heading, 1 to 6.
    int level() const { return node().level; }

    /// The text of a heading, a paragraph or a code block, its lines joined by line feeds.
    QStringView text() const { return m_tree->view(node().text); }

    /// The language that a code block names.
    std::optional<QStringView> language() const;

    /// The blocks in a quote.
    MarkdownSequence<MarkdownBlock> blocks() const { return {m_tree, m_node + 1, m_tree->endOf(m_node)}; }

    MarkdownList list() const;
    MarkdownTable table() const;

    /// Equal in kind and content, whatever texts they were read from.
    friend bool operator==(const MarkdownBlock& a, const MarkdownBlock& b) {
        return MarkdownTree::areEqual(*a.m_tree, a.m_node, a.m_tree->endOf(a.m_node), *b.m_tree, b.m_node,
                                      b.m_tree->endOf(b.m_node));
    }

private:
    const MarkdownTree::Node& node() const { return m_tree->nodes[m_node]; }

    std::shared_ptr<const MarkdownTree> m_tree;
    std::size_t m_node;
};

using MarkdownBlocks = MarkdownSequence<MarkdownBlock>;

} // namespace quillary
