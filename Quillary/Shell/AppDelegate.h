#pragma once

#include "Quillary/Find/FindController.h"
#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/MenuBarExtra/MenuBarExtra.h"
#include "Quillary/Platform/TerminationSignals.h"
#include "Quillary/Settings/SettingsView.h"
#include "Quillary/Shell/ActivationQueue.h"
#include "Quillary/Shell/KeyMonitor.h"
#include "Quillary/Shell/MainWindow.h"
#include "Quillary/Shell/SystemDesktop.h"
#include "Quillary/Solo/SoloController.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"
#include "Quillary/Theme/Appearance.h"

#include <QObject>

#include <memory>

namespace quillary {

/// Owns the long-lived objects, each made on first use, and decides what happens when the application starts, becomes
/// active, loses the focus or is asked to end.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// `isReachedByOtherStarts` tells whether another start of the program activates this one.
    explicit AppDelegate(bool isReachedByOtherStarts, QObject* parent = nullptr);
    ~AppDelegate() override;

    AppSettings& settings();
    NotesStore& store();
    FindController& find();
    KeyboardController& keyboard();
    SoloController& solo();

    /// Called once, before the event loop: appearance, window, signals of the session.
    void applicationDidFinishLaunching();

    /// Brings the window up on behalf of another start of the program.
    void activate(const QString& activationToken, const QString& startupId);

    /// Carries out an action that the desktop offers beside the program's icon; an unknown name does nothing.
    void performAction(const QString& name);

    /// Another start does not activate this one any more.
    void loseOtherStarts();

private:
    void applicationStateChanged(Qt::ApplicationState state);
    void applicationShouldTerminate();
    void openMainWindow();
    void openSettings();
    void endOnSignal();

    /// Whether the user has a way to a window while there is none on screen.
    bool canComeBack();
    void lastWindowDidClose();
    void wayBackDidChange();

    bool m_isReachedByOtherStarts;
    SystemDesktop m_desktop;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<NotesStore> m_store;
    std::unique_ptr<FindController> m_find;
    std::unique_ptr<KeyboardController> m_keyboard;
    std::unique_ptr<KeyMonitor> m_keyMonitor;
    std::unique_ptr<MenuBarExtra> m_menuBarExtra;
    std::unique_ptr<SoloController> m_solo;
    std::unique_ptr<ActivationQueue> m_activationQueue;
    std::unique_ptr<Appearance> m_appearance;
    std::unique_ptr<TerminationSignals> m_signals;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<SettingsView> m_settingsView;
    bool m_isLaunching = true;
};

} // namespace quillary
