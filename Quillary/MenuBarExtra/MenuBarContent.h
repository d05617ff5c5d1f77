#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QMenu>
#include <QTimer>

#include <functional>

namespace quillary {

/// The menu of the mark in the desktop's panel: the commands that make sense from anywhere. Its items are made once and
/// filled anew when notes change, since not every panel says that it is about to show the menu.
class MenuBarContent : public QObject {
    Q_OBJECT

public:
    /// How many notes stand under "Recenti".
    static constexpr qsizetype recentCount = 8;

    /// The store and the settings must outlive it.
    MenuBarContent(NotesStore* store, AppSettings* settings, QObject* parent = nullptr);

    QMenu* menu() { return &m_menu; }

Q_SIGNALS:
    void settingsRequested();

private:
    QAction* add(const QString& text, const std::function<void()>& command);
    void addRecentItems();
    void reveal(qsizetype recent) const;
    void updateShortcut();
    void updateRecentItems();

    NotesStore& m_store;
    AppSettings& m_settings;
    QMenu m_menu;
    QAction* m_showItem = nullptr;
    QList<QAction*> m_recentItems;
    QList<NoteID> m_recentNotes;
    QTimer m_update;
};

} // namespace quillary
