#pragma once

#include "QuillaryCore/Formats/JSONTreeRow.h"
#include "QuillaryCore/IndexIterator.h"

#include <cstddef>

namespace quillary {

/// The rows of a JSON tree, in order. Each takes a few bytes and is put together when it is asked for; it stays good
/// beyond the life of these.
class JSONTreeRows {
public:
    using Iterator = IndexIterator<JSONTreeRows, JSONTreeRow>;

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
