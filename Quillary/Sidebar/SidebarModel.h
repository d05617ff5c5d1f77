#pragma once

#include "Quillary/Sidebar/SidebarRow.h"
#include "Quillary/State/NotesStore.h"

#include <QAbstractListModel>
#include <QTimer>

#include <vector>

namespace quillary {

/// The sidebar's sections as one flat list of rows. It follows the store: a burst of changes is taken in together when
/// the event loop turns, and only the stretch of rows that differs is replaced.
class SidebarModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        kindRole = Qt::UserRole,
        snippetRole,
        dateRole,
        badgeRole,
        indentedRole,
        countRole,
        collapsedRole,
    };

    explicit SidebarModel(NotesStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    const SidebarRow& row(const QModelIndex& index) const { return m_rows[static_cast<std::size_t>(index.row())]; }

    /// The row of a note, or an invalid index if it isn't shown.
    QModelIndex indexOfNote(NoteID id) const;
    QModelIndex indexOfFolder(const QString& name) const;

    const NotesStore& store() const { return m_store; }

    /// Takes in at once what the store says now.
    void rebuild();

private:
    void noteChanged(const NoteItem& note, NoteField field);
    void repaint(const QModelIndex& index);
    void repaintAll();
    std::vector<SidebarRow> currentRows() const;
    QString accessibleText(const SidebarRow& row) const;
    QString dateText(const NoteItem& note) const;
    void awaitMidnight();

    NotesStore& m_store;
    std::vector<SidebarRow> m_rows;
    QTimer m_rebuildTimer;
    QTimer m_midnightTimer;
};

} // namespace quillary
