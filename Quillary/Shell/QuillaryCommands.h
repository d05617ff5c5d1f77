#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QKeySequence>
#include <QMap>
#include <QObject>

#include <functional>

class QAction;
class QMenu;
class QMenuBar;

namespace quillary {

class FindController;
class KeyboardController;
class MainWindow;
class SoloController;

/// The menu bar of the main window. It decides nothing: each item calls a command, and the commands guard themselves. A
/// key that an item shows gets here last, when neither the dispatcher of keys nor the focused widget wanted it.
class QuillaryCommands : public QObject {
    Q_OBJECT

public:
    /// All must outlive it; the window becomes its parent.
    QuillaryCommands(NotesStore* store, AppSettings* settings, FindController* find, KeyboardController* keyboard,
                     SoloController* solo, MainWindow* window);

    QMenuBar* menuBar() const { return m_menuBar; }

    /// "Nuova nota", which has a button as well.
    QAction* newNote() const { return m_newNote; }

Q_SIGNALS:
    void settingsRequested();

private:
    using Command = std::function<void()>;

    QMenu& addMenu(const QString& title);
    QAction* add(QMenu& menu, const QString& text, const QKeySequence& keys, const Command& command);
    void addStandard(QMenu& menu, const QString& text, QKeySequence::StandardKey key);
    void addCustom(QMenu& menu, ShortcutAction action);

    void addFileMenu();
    void addEditMenu();
    void addFindItems(QMenu& menu);
    void addViewMenu();
    void addAppearances(QMenu& menu);
    void addNoteMenu();
    void addFormats(QMenu& menu);
    void addMoveItems(QMenu& menu);
    void addFolderItems(QMenu& menu);
    void addSoloItem(QMenu& menu);
    void addWindowMenu();

    void withSelectedNote(const std::function<void(NoteItem&)>& command) const;
    void zoom(int steps) const;
    void updateShortcuts();

    NotesStore& m_store;
    AppSettings& m_settings;
    FindController& m_find;
    KeyboardController& m_keyboard;
    SoloController& m_solo;
    MainWindow& m_window;
    QMenuBar* m_menuBar;
    QAction* m_newNote = nullptr;
    QMap<ShortcutAction, QAction*> m_customActions;
};

} // namespace quillary
