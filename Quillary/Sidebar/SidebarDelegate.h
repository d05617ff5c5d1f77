#pragma once

#include <QFont>
#include <QStyledItemDelegate>

#include <optional>

namespace quillary {

/// Draws the sidebar's rows: a note with title, date, format and excerpt; a folder with its colour, disclosure mark and
/// count; a group's heading.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    /// The heights of the three kinds of rows in the application's font.
    struct RowHeights {
        QFont font;
        int note;
        int folder;
        int group;
    };

    const RowHeights& rowHeights() const;
    void paintNote(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintFolder(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintGroup(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

    mutable std::optional<RowHeights> m_rowHeights;
};

} // namespace quillary
