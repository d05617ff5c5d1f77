#include "Quillary/Previews/CSVGridModel.h"

#include "Quillary/Previews/PreviewText.h"

#include <utility>

namespace quillary {

namespace {

/// No column is wide enough for more.
constexpr qsizetype shownUnitsOfCell = 300;

QVariant cellText(QStringView text, int role) {
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return PreviewText::oneLine(text, shownUnitsOfCell);
    case Qt::EditRole:
        return text.toString();
    default:
        return {};
    }
}

} // namespace

void CSVGridModel::setTable(CSVTable table, const QList<qsizetype>& numericColumns) {
    beginResetModel();
    m_table = std::move(table);
    m_isNumeric.assign(static_cast<std::size_t>(m_table.columnCount()), false);
    for (const qsizetype column : numericColumns) {
        m_isNumeric[static_cast<std::size_t>(column)] = true;
    }
    endResetModel();
}

void CSVGridModel::setFirstRowIsHeader(bool isHeader) {
    if (isHeader == m_firstRowIsHeader) {
        return;
    }
    // The first row comes or goes; the others stay selected and where they are.
    if (m_table.rowCount() == 0) {
        m_firstRowIsHeader = isHeader;
    } else if (isHeader) {
        beginRemoveRows({}, 0, 0);
        m_firstRowIsHeader = true;
        endRemoveRows();
    } else {
        beginInsertRows({}, 0, 0);
        m_firstRowIsHeader = false;
        endInsertRows();
    }
    if (columnCount() > 0) {
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    }
}

int CSVGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table.rowCount()) - (hasHeader() ? 1 : 0);
}

int CSVGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table.columnCount());
}

QStringView CSVGridModel::cell(qsizetype row, qsizetype column) const {
    const CSVTable::Row fields = m_table.row(row);
    return column < fields.size() ? fields[column] : QStringView();
}

QVariant CSVGridModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::TextAlignmentRole) {
        const bool isNumeric = m_isNumeric[static_cast<std::size_t>(index.column())];
        return QVariant::fromValue(Qt::AlignVCenter | (isNumeric ? Qt::AlignRight : Qt::AlignLeft));
    }
    return cellText(cell(index.row() + (hasHeader() ? 1 : 0), index.column()), role);
}

QVariant CSVGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignVCenter | (orientation == Qt::Horizontal ? Qt::AlignLeft : Qt::AlignRight));
    }
    if (orientation == Qt::Vertical) {
        return role == Qt::DisplayRole ? QVariant(QString::number(section + 1)) : QVariant();
    }
    return hasHeader() ? cellText(cell(0, section), role) : QVariant();
}

} // namespace quillary
