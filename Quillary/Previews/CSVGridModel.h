#pragma once

#include "QuillaryCore/Formats/CSVTable.h"

#include <QAbstractTableModel>
#include <QList>

#include <vector>

namespace quillary {

/// The cells of a table of separated values. The first row is the header if it is said to be.
class CSVGridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Takes a table, and the columns whose cells are numbers.
    void setTable(CSVTable table, const QList<qsizetype>& numericColumns);

    void setFirstRowIsHeader(bool isHeader);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;

    /// The beginning of the cell on one line to show, its whole text to edit; empty where a row is too short.
    QVariant data(const QModelIndex& index, int role) const override;

    /// Above, the first row's cells if they are the header; at the left, numbers from 1.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool hasHeader() const { return m_firstRowIsHeader && m_table.rowCount() > 0; }

    QStringView cell(qsizetype row, qsizetype column) const;

    CSVTable m_table;
    std::vector<bool> m_isNumeric;
    bool m_firstRowIsHeader = true;
};

} // namespace quillary
