#include "Quillary/Shell/AppDelegate.h"

#include "Quillary/Platform/StartupNotification.h"
#include "Quillary/State/AppActions.h"

#include <QApplication>
#include <QSessionManager>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

AppDelegate::AppDelegate(bool isReachedByOtherStarts, QObject* parent)
    : QObject(parent), m_isReachedByOtherStarts(isReachedByOtherStarts) {}

AppDelegate::~AppDelegate() {
    AppActions::shared() = {};
}

AppSettings& AppDelegate::settings() {
    if (m_settings == nullptr) {
        m_settings = std::make_unique<AppSettings>(Preferences(Preferences::defaultFile()));
    }
    return *m_settings;
}

NotesStore& AppDelegate::store() {
    if (m_store == nullptr) {
        m_store = std::make_unique<NotesStore>(&settings());
    }
    return *m_store;
}

FindController& AppDelegate::find() {
    if (m_find == nullptr) {
        m_find = std::make_unique<FindController>(store());
    }
    return *m_find;
}

KeyboardController& AppDelegate::keyboard() {
    if (m_keyboard == nullptr) {
        m_keyboard = std::make_unique<KeyboardController>(&store(), &settings(), &find());
    }
    return *m_keyboard;
}

SoloController& AppDelegate::solo() {
    if (m_solo == nullptr) {
        m_solo = std::make_unique<SoloController>(settings());
    }
    return *m_solo;
}

void AppDelegate::applicationDidFinishLaunching() {
    m_appearance = std::make_unique<Appearance>();
    settings().onApplyAppearance = [this](AppAppearance appearance) { m_appearance->apply(appearance); };
    settings().applyAppearance();

    AppActions& actions = AppActions::shared();
    actions.focusEditor = [this] { store().raiseEditorFocusToken(); };
    actions.activateApplication = [this] {
        if (m_window != nullptr && m_window->isVisible()) {
            m_window->activateWindow();
        }
    };
    actions.hideApplication = [this] {
        m_window->rememberPlace();
        m_window->hide();
        if (m_settingsView != nullptr) {
            m_settingsView->hide();
        }
    };
    actions.isApplicationActive = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; };
    m_activationQueue = std::make_unique<ActivationQueue>();
    actions.keepUntilActive = [this](const std::function<void()>& command) { m_activationQueue->append(command); };
    actions.desktop = &m_desktop;

    m_keyMonitor = std::make_unique<KeyMonitor>(&keyboard());
    keyboard().start();
    m_menuBarExtra = std::make_unique<MenuBarExtra>(&store(), &settings());
    connect(m_menuBarExtra.get(), &MenuBarExtra::settingsRequested, this, &AppDelegate::openSettings);

    connect(qGuiApp, &QGuiApplication::lastWindowClosed, this, &AppDelegate::lastWindowDidClose);
    connect(m_menuBarExtra.get(), &MenuBarExtra::isShownChanged, this, &AppDelegate::wayBackDidChange);
    connect(&keyboard(), &KeyboardController::globalHotKeyFailedChanged, this, &AppDelegate::wayBackDidChange);

    m_signals = std::make_unique<TerminationSignals>();
    connect(m_signals.get(), &TerminationSignals::received, this, &AppDelegate::endOnSignal);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &AppDelegate::applicationStateChanged);
    connect(qGuiApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::applicationShouldTerminate);
    // The session may end the process before any queued call is delivered.
    connect(
        qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager&) { store().saveDirtyNotes(); },
        Qt::DirectConnection);

    openMainWindow();
}

void AppDelegate::activate(const QString& activationToken, const QString& startupId) {
    if (!activationToken.isEmpty()) {
        // Qt's Wayland plugin takes the token from here when it next asks for the focus.
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    }
    StartupNotification::takeOver(startupId);
    AppActions::shared().showMainWindow();
}

void AppDelegate::performAction(const QString& name) {
    if (name == "new-note"_L1) {
        store().makeNoteBesideSelected();
    } else if (name == "new-note-from-clipboard"_L1) {
        AppActions::shared().runWhenActive([this] { store().createNoteFromClipboard(); });
    }
}

void AppDelegate::loseOtherStarts() {
    m_isReachedByOtherStarts = false;
    wayBackDidChange();
}

void AppDelegate::applicationStateChanged(Qt::ApplicationState state) {
    if (state != Qt::ApplicationActive) {
        store().saveDirtyNotes();
    } else if (std::exchange(m_isLaunching, false)) {
        // The launch has just read the directory: reading it again can wait until the window is drawn.
        store().scheduleRefresh();
    } else {
        store().refreshFromDisk();
    }
}

void AppDelegate::applicationShouldTerminate() {
    store().saveDirtyNotes();
    if (m_window != nullptr && m_window->isVisible()) {
        m_window->rememberPlace();
    }
}

void AppDelegate::openMainWindow() {
    if (m_window == nullptr) {
        m_window =
            std::make_unique<MainWindow>(store(), settings(), find(), keyboard(), solo(), [this] { openMainWindow(); });
        connect(m_window.get(), &MainWindow::settingsRequested, this, &AppDelegate::openSettings);
        AppActions::shared().mainWindow = m_window.get();
    }
    m_window->makeKeyAndOrderFront();
}

void AppDelegate::openSettings() {
    if (m_settingsView == nullptr) {
        m_settingsView = std::make_unique<SettingsView>(&settings(), &store(), &keyboard());
    }
    m_settingsView->present();
}

bool AppDelegate::canComeBack() {
    return m_isReachedByOtherStarts || keyboard().isHotKeyRegistered() || m_menuBarExtra->isShown();
}

void AppDelegate::lastWindowDidClose() {
    if (!canComeBack()) {
        QCoreApplication::quit();
    }
}

void AppDelegate::wayBackDidChange() {
    const bool isOffScreen =
        m_window != nullptr && !m_window->isVisible() && (m_settingsView == nullptr || !m_settingsView->isVisible());
    if (isOffScreen && !canComeBack()) {
        openMainWindow();
    }
}

void AppDelegate::endOnSignal() {
    // No window may refuse: the text is saved, and the loop ends.
    store().saveDirtyNotes();
    QCoreApplication::exit(0);
}

} // namespace quillary
