#include "Quillary/Previews/JSONRowsModel.h"

#include "Quillary/Previews/JSONRowView.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <algorithm>

namespace quillary {

void JSONRowsModel::setValue(const JSONValue& value) {
    m_value = value;
    resetRows();
}

void JSONRowsModel::expandAll() {
    m_expansion.expandAll();
    resetRows();
}

void JSONRowsModel::collapse() {
    m_expansion.collapse();
    resetRows();
}

void JSONRowsModel::toggle(int row) {
    const JSONTreeRow toggled = this->row(row);
    if (!toggled.value().isContainer()) {
        return;
    }
    m_expansion.toggle(toggled);
    std::vector<JSONTreeRow> rows = makeRows();
    const int change = static_cast<int>(rows.size()) - static_cast<int>(m_rows.size());
    if (change > 0) {
        beginInsertRows({}, row + 1, row + change);
        takeRows(std::move(rows));
        endInsertRows();
    } else if (change < 0) {
        beginRemoveRows({}, row + 1, row - change);
        takeRows(std::move(rows));
        endRemoveRows();
    } else {
        takeRows(std::move(rows));
    }
    const QModelIndex changed = index(row);
    Q_EMIT dataChanged(changed, changed);
}

int JSONRowsModel::parentOf(int row) const {
    const qint64 depth = this->row(row).depth();
    int parent = row - 1;
    while (parent >= 0 && this->row(parent).depth() >= depth) {
        --parent;
    }
    return parent;
}

int JSONRowsModel::rowOfPosition(qsizetype position) const {
    const auto behind =
        std::upper_bound(m_rows.begin(), m_rows.end(), position,
                         [](qsizetype wanted, const JSONTreeRow& row) { return wanted < row.value().position(); });
    return std::max(static_cast<int>(behind - m_rows.begin()) - 1, 0);
}

int JSONRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant JSONRowsModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) {
        const JSONTreeRow& shown = row(index.row());
        return QString(JSONRowView::labelText(shown) + JSONRowView::valueText(shown));
    }
    return {};
}

std::vector<JSONTreeRow> JSONRowsModel::makeRows() const {
    return JSONTree::rows(m_value,
                          [this](const JSONPath& path, qint64 depth) { return m_expansion.isExpanded(path, depth); });
}

void JSONRowsModel::takeRows(std::vector<JSONTreeRow> rows) {
    m_rows = std::move(rows);
    m_greatestDepth = 0;
    for (const JSONTreeRow& row : m_rows) {
        m_greatestDepth = std::max(m_greatestDepth, row.depth());
    }
}

void JSONRowsModel::resetRows() {
    beginResetModel();
    takeRows(makeRows());
    endResetModel();
}

} // namespace quillary
