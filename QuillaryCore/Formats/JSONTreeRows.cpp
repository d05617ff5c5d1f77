#include "QuillaryCore/Formats/JSONTreeRows.h"

#include <algorithm>

namespace quillary {

qsizetype JSONTreeRows::containerOf(qsizetype row) const {
    if (row == 0) {
        return -1;
    }
    return m_tree->branches[m_tree->branchAround(static_cast<std::size_t>(row))].row;
}

qsizetype JSONTreeRows::rowAt(qsizetype position) const {
    if (!m_tree) {
        return 0;
    }
    const auto behind =
        std::partition_point(m_tree->rows.begin(), m_tree->rows.end(), [position](const JSONTreeRow::Row& row) {
            return static_cast<qsizetype>(row.position) <= position;
        });
    return std::max<qsizetype>(behind - m_tree->rows.begin() - 1, 0);
}

} // namespace quillary
