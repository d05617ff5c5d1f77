#pragma once

#include "QuillaryCore/Formats/JSONExpansion.h"
#include "QuillaryCore/Formats/JSONTreeRow.h"

#include <QAbstractListModel>

#include <vector>

namespace quillary {

/// The rows of a JSON tree that its expansion shows.
class JSONRowsModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Takes a value. What the user opened and closed stays so by its path.
    void setValue(const JSONValue& value);

    const JSONExpansion& expansion() const { return m_expansion; }

    /// Opens everything, or closes everything but the root.
    void expandAll();
    void collapse();

    /// Opens a closed container and closes an open one; nothing for any other row.
    void toggle(int row);

    const JSONTreeRow& row(int row) const { return m_rows[static_cast<std::size_t>(row)]; }

    /// The row of the container that a row lies in; -1 for the root.
    int parentOf(int row) const;

    /// The row whose value stands at this place of the text, or the last one before it. There must be rows.
    int rowOfPosition(qsizetype position) const;

    /// How deep the deepest row lies.
    qint64 greatestDepth() const { return m_greatestDepth; }

    int rowCount(const QModelIndex& parent = {}) const override;

    /// To show and for screen readers, the label and the value as the row has them.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<JSONTreeRow> makeRows() const;
    void takeRows(std::vector<JSONTreeRow> rows);
    void resetRows();

    JSONValue m_value;
    JSONExpansion m_expansion;
    std::vector<JSONTreeRow> m_rows;
    qint64 m_greatestDepth = 0;
};

} // namespace quillary
