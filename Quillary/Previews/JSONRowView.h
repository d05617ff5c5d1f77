#pragma once

#include "QuillaryCore/Formats/JSONTreeRow.h"

#include <QColor>
#include <QPalette>
#include <QStyledItemDelegate>

namespace quillary {

/// Draws one row of a JSON tree: the indent of its depth, a mark that says whether a container is open, label and
/// value. All rows have one height; what has no room ends with an ellipsis and has a tool tip.
class JSONRowView : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// In pixels: beside all rows, for each level, and for the mark.
    static constexpr int padding = 18;
    static constexpr int indent = 16;
    static constexpr int markWidth = 14;

    using QStyledItemDelegate::QStyledItemDelegate;

    void setBaseSize(double baseSize) { m_baseSize = baseSize; }

    /// How wide rows are at least.
    void setRowWidth(int width) { m_rowWidth = width; }

    /// "key: " or "index: "; empty for the root.
    static QString labelText(const JSONTreeRow& row);

    /// The value on one line, of very long strings the beginning.
    static QString valueText(const JSONTreeRow& row);

    /// The colour of a value of this kind; in a row that is selected one that can be read there.
    static QColor valueColor(JSONValue::Kind kind, const QPalette& palette, bool isSelected = false);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    double m_baseSize = 13;
    int m_rowWidth = 0;
};

} // namespace quillary
