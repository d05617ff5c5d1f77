#pragma once

#include "QuillaryCore/Formats/JSONTreeRow.h"

#include <cstddef>
#include <iterator>

namespace quillary {

/// The rows of a JSON tree, in order. Each takes a few bytes and is put together when it is asked for; it stays good
/// beyond the life of these.
class JSONTreeRows {
public:
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = JSONTreeRow;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = JSONTreeRow;

        Iterator(const JSONTreeRows* rows, qsizetype row) : m_rows(rows), m_row(row) {}

        JSONTreeRow operator*() const { return (*m_rows)[m_row]; }

        Iterator& operator++() {
            ++m_row;
            return *this;
        }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_row == b.m_row; }

    private:
        const JSONTreeRows* m_rows;
        qsizetype m_row;
    };

    /// No rows.
    JSONTreeRows() = default;

    qsizetype size() const { return m_tree ? static_cast<qsizetype>(m_tree->rows.size()) : 0; }

    JSONTreeRow operator[](qsizetype row) const { return {m_tree, static_cast<std::size_t>(row)}; }

    Iterator begin() const { return {this, 0}; }

    Iterator end() const { return {this, size()}; }

    /// The row of the container that a row lies in; -1 for the first.
    qsizetype containerOf(qsizetype row) const;

    /// The row whose value stands at this place of the text, or the last one before it; the first if there is none.
    qsizetype rowAt(qsizetype position) const;

    /// How deep the deepest row lies.
    qint64 greatestDepth() const { return m_tree ? m_tree->greatestDepth : 0; }

private:
    friend class JSONTreeBuilder;

    explicit JSONTreeRows(JSONTreeRow::TreePointer tree) : m_tree(std::move(tree)) {}

    JSONTreeRow::TreePointer m_tree;
};

} // namespace quillary
