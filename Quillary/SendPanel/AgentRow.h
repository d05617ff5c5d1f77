#pragma once

#include <QStyledItemDelegate>

namespace quillary {

/// Draws the rows of a list of sessions: a heading for each project, and each agent's name with a paper plane while the
/// pointer or the keyboard is on it.
class AgentRow : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Marks an index as a heading.
    static constexpr int isHeadingRole = Qt::UserRole + 1;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace quillary
