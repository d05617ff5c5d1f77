#pragma once

#include "Quillary/Platform/WallClockAlarm.h"
#include "Quillary/Sidebar/SidebarRow.h"
#include "Quillary/State/NotesStore.h"

#include <QAbstractListModel>
#include <QHash>
#include <QTimer>

#include <chrono>
#include <vector>

namespace quillary {

/// The sidebar's sections as one flat list of rows. It follows the store: a burst of changes is taken in together when
/// the event loop turns, and only the rows that come, go or move are told of.
class SidebarModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit SidebarModel(NotesStore& store, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const std::vector<SidebarRow>& rows() const { return m_rows; }

    const SidebarRow& row(int row) const { return m_rows[static_cast<std::size_t>(row)]; }

    /// Where the row of a key stands now; -1 if it isn't shown.
    int rowOf(const SidebarRow::Key& key) const;

    /// The row of a note; -1 if it isn't shown.
    int rowOfNote(NoteID id) const;

    /// Whether the store has changed since the rows were taken.
    bool isPending() const { return m_updateTimer.isActive(); }

    /// Whether the rows are what a search has found.
    bool isSearching() const { return m_isSearching; }

    /// Takes in at once what the store says now.
    void update();

    /// A row's title as one line for a person to read: what can't be shown is U+FFFD, and controls are blanks.
    static QString shownTitle(const SidebarRow& row);

    /// The date that a note's row shows.
    QString dateText(const NoteItem& note) const;

    /// What stands below a note's title: the beginning of its text, or that it has none.
    static QString excerpt(const NoteItem& note);

    /// A row in words, for somebody who doesn't see it.
    QString accessibleText(const SidebarRow& row) const;
    QString accessibleDescription(const SidebarRow& row) const;

Q_SIGNALS:
    /// All rows are as the store says: after the single changes of one update.
    void updated();

private:
    void updateWithin(std::chrono::milliseconds delay);
    void noteChanged(const NoteItem& note, NoteField field);
    void repaintAll();
    std::vector<SidebarRow> currentRows();
    void apply(std::vector<SidebarRow> rows);
    void takeContents(std::vector<SidebarRow> rows);
    void dayChanged();
    void awaitMidnight();

    NotesStore& m_store;
    std::vector<SidebarRow> m_rows;
    mutable QHash<SidebarRow::Key, int> m_places;
    mutable QHash<NoteID, int> m_notePlaces;
    bool m_isSearching = false;
    QTimer m_updateTimer;
    WallClockAlarm m_midnight;
};

} // namespace quillary
