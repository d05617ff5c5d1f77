#include "QuillaryCore/Formats/JSONTreeRow.h"

#include <QVarLengthArray>

#include <algorithm>

namespace quillary {

std::size_t JSONTreeRow::Tree::branchAround(std::size_t row) const {
    const auto behind = std::partition_point(branches.begin(), branches.end(),
                                             [row](const Branch& candidate) { return candidate.row < row; });
    auto branch = static_cast<std::size_t>(behind - branches.begin()) - 1;
    while (document().tape.next(rows[branches[branch].row].position) <= rows[row].position) {
        branch = branches[branch].parent;
    }
    return branch;
}

JSONPath JSONTreeRow::Tree::pathIn(const JSONPath& container, bool isObject, const Row& row) const {
    if (!isObject) {
        return container.appending(static_cast<qint64>(row.index));
    }
    const QString key = document().string(row.position - 1);
    return row.isDuplicate ? container.appendingDuplicate(key, row.index) : container.appending(key);
}

JSONPath JSONTreeRow::path() const {
    QVarLengthArray<std::size_t, 16> rows;
    for (std::size_t row = m_row; row > 0; row = m_tree->branches[m_tree->branchAround(row)].row) {
        rows.append(row);
    }
    JSONPath path;
    std::size_t container = 0;
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        const bool isObject = m_tree->document().tape.tag(m_tree->rows[container].position) == JSONTape::Tag::object;
        path = m_tree->pathIn(path, isObject, m_tree->rows[*row]);
        container = *row;
    }
    return path;
}

qint64 JSONTreeRow::depth() const {
    if (m_row == 0) {
        return 0;
    }
    qint64 depth = 1;
    for (std::size_t branch = m_tree->branchAround(m_row); branch > 0; branch = m_tree->branches[branch].parent) {
        ++depth;
    }
    return depth;
}

JSONTreeRow::Label JSONTreeRow::label() const {
    if (m_row == 0) {
        return Root();
    }
    const std::size_t container = m_tree->branches[m_tree->branchAround(m_row)].row;
    if (m_tree->document().tape.tag(m_tree->rows[container].position) == JSONTape::Tag::object) {
        return key();
    }
    return static_cast<qint64>(m_tree->rows[m_row].index);
}

JSONValue JSONTreeRow::value() const {
    return {m_tree->value.document(), static_cast<qsizetype>(m_tree->rows[m_row].position)};
}

} // namespace quillary
