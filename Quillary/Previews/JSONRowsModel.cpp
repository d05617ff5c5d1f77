#include "Quillary/Previews/JSONRowsModel.h"

#include "Quillary/Previews/JSONRowView.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <utility>

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
    JSONTreeRows rows = makeRows();
    const int change = static_cast<int>(rows.size()) - static_cast<int>(m_rows.size());
    if (change > 0) {
        beginInsertRows({}, row + 1, row + change);
        m_rows = std::move(rows);
        endInsertRows();
    } else if (change < 0) {
        beginRemoveRows({}, row + 1, row - change);
        m_rows = std::move(rows);
        endRemoveRows();
    } else {
        m_rows = std::move(rows);
    }
    const QModelIndex changed = index(row);
    Q_EMIT dataChanged(changed, changed);
}

int JSONRowsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant JSONRowsModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) {
        const JSONTreeRow shown = row(index.row());
        return QString(JSONRowView::labelText(shown) + JSONRowView::valueText(shown));
    }
    return {};
}

JSONTreeRows JSONRowsModel::makeRows() const {
    return JSONTree::rows(m_value,
                          [this](const JSONPath& path, qint64 depth) { return m_expansion.isExpanded(path, depth); });
}

void JSONRowsModel::resetRows() {
    beginResetModel();
    m_rows = makeRows();
    endResetModel();
}

} // namespace quillary
