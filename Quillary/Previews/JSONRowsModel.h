#pragma once

#include "QuillaryCore/Formats/JSONExpansion.h"
#include "QuillaryCore/Formats/JSONTreeRows.h"

#include <QAbstractListModel>

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

    const JSONTreeRows& rows() const { return m_rows; }

    JSONTreeRow row(int row) const { return m_rows[row]; }

    int rowCount(const QModelIndex& parent = {}) const override;

    /// To show and for screen readers, the label and the value as the row has them.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    JSONTreeRows makeRows() const;
    void resetRows();

    JSONValue m_value;
    JSONExpansion m_expansion;
    JSONTreeRows m_rows;
};

} // namespace quillary
