#include "Quillary/Keyboard/KeyboardController.h"

#include "Quillary/Find/FindController.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

bool deletes(quint16 keyCode) {
    return keyCode == KeyCode::deleteKey || keyCode == KeyCode::forwardDelete;
}

/// The digit from 1 to 9 that a key gives, whichever key it is.
std::optional<int> digit(const QString& key) {
    return key.size() == 1 && key[0] >= u'1' && key[0] <= u'9' ? std::optional(key[0].digitValue()) : std::nullopt;
}

} // namespace

KeyboardController::KeyboardController(NotesStore* store, AppSettings* settings, FindController* find,
                                       std::unique_ptr<HotKeyBackend> hotKeyBackend, QObject* parent)
    : QObject(parent), m_store(*store), m_settings(*settings), m_find(*find), m_globalHotKey(std::move(hotKeyBackend)) {
    connect(&m_globalHotKey, &GlobalHotKey::refused, this, [this] { setGlobalHotKeyFailed(true); });
}

void KeyboardController::start() {
    if (m_isStarted) {
        return;
    }
    m_isStarted = true;
    m_globalHotKey.onPress = [] { AppActions::shared().toggleMainWindow(); };
    connect(&m_settings, &AppSettings::shortcutsChanged, this, [this] {
        if (!m_recordingAction) {
            registerGlobalHotKey();
        }
    });
    registerGlobalHotKey();
}

bool KeyboardController::handle(const KeyPress& press) {
    const Command run = command(press);
    if (run) {
        run();
    }
    return run != nullptr;
}

/// What a key does; nothing if it is let through. The first rule that applies wins.
KeyboardController::Command KeyboardController::command(const KeyPress& press) {
    const KeyShortcut& shortcut = press.shortcut;
    if (!m_isStarted) {
        return nullptr;
    }
    if (m_recordingAction) {
        if (press.isRepeated) {
            return [] {};
        }
        return [this, shortcut, action = *m_recordingAction] { record(shortcut, action); };
    }
    if (!press.isInMainWindow) {
        return nullptr;
    }
    if (shortcut.modifiers.isEmpty()) {
        if (Command run = plainKeyCommand(press)) {
            return run;
        }
    }
    // Before the user's own shortcuts: none of them takes these keys away.
    if (shortcut == KeyShortcut(KeyCode::g, Modifiers::command, {})) {
        return groupOrFindCommand();
    }
    const std::optional<ShortcutAction> action = m_settings.action(shortcut);
    // The hot key is the one to summon.
    if (action && *action != ShortcutAction::summon) {
        return [this, action = *action] { perform(action); };
    }
    return shortcut.modifiers == Modifiers::command ? commandKeyCommand(shortcut.key) : nullptr;
}

KeyboardController::Command KeyboardController::plainKeyCommand(const KeyPress& press) {
    const quint16 key = press.shortcut.keyCode;
    if (deletes(key) && m_store.multiSelection().size() >= 2) {
        return [this] { m_store.requestTrash(); };
    }
    if (m_store.selectedFolder() && !press.isInEditableText) {
        if (deletes(key)) {
            return [this] { m_store.setPendingFolderDeletion(m_store.selectedFolder()); };
        }
        return key == KeyCode::escape ? Command([this] { m_store.setSelectedFolder(std::nullopt); }) : nullptr;
    }
    if (key == KeyCode::escape && !m_store.multiSelection().isEmpty()) {
        return [this] { m_store.clearMultiSelection(); };
    }
    return nullptr;
}

KeyboardController::Command KeyboardController::groupOrFindCommand() {
    if (m_find.isVisible()) {
        return [this] { m_find.step(1); };
    }
    return [this] {
        const QList<NoteItemPtr> targets = m_store.actionTargets();
        if (targets.isEmpty()) {
            AppActions::shared().beep();
        } else {
            m_store.createFolder(targets);
        }
    };
}

KeyboardController::Command KeyboardController::commandKeyCommand(const QString& key) {
    if (const std::optional<int> number = digit(key)) {
        return [this, at = *number - 1] { m_store.selectVisible(at); };
    }
    if (key == u'=') {
        return [this] { m_settings.setFontSize(AppSettings::clampedFontSize(m_settings.fontSize() + 1)); };
    }
    return nullptr;
}

void KeyboardController::perform(ShortcutAction action) {
    switch (action) {
    case ShortcutAction::nextNote:
        m_store.selectAdjacent(1);
        break;
    case ShortcutAction::previousNote:
        m_store.selectAdjacent(-1);
        break;
    case ShortcutAction::search:
        m_store.raiseSearchFocusToken();
        break;
    case ShortcutAction::togglePreview:
        m_store.togglePreview();
        break;
    case ShortcutAction::summon:
        AppActions::shared().toggleMainWindow();
        break;
    }
}

void KeyboardController::toggleRecording(ShortcutAction action) {
    if (m_recordingAction == action) {
        endRecording();
    } else {
        setRecording(action, std::nullopt);
        m_globalHotKey.registerShortcut(std::nullopt);
    }
}

void KeyboardController::cancelRecording() {
    if (m_recordingAction) {
        endRecording();
    }
}

void KeyboardController::record(const KeyShortcut& shortcut, ShortcutAction action) {
    if (shortcut.modifiers.isEmpty() && shortcut.keyCode == KeyCode::deleteKey) {
        m_settings.setShortcut(std::nullopt, action);
        endRecording();
        return;
    }
    if (shortcut.modifiers.isEmpty() && shortcut.keyCode == KeyCode::escape) {
        endRecording();
        return;
    }
    if (!shortcut.isValidForRecording()) {
        refuseRecording(tr("Usa almeno uno tra ⌘ ⌥ ⌃"));
        return;
    }
    const std::optional<ShortcutAction> owner = m_settings.action(shortcut);
    if (owner && *owner != action) {
        refuseRecording(tr("Già usata da «") % displayName(*owner) % u"»"_s);
        return;
    }
    m_settings.setShortcut(shortcut, action);
    endRecording();
}

void KeyboardController::refuseRecording(const QString& message) {
    setRecording(m_recordingAction, message);
    AppActions::shared().beep();
}

void KeyboardController::endRecording() {
    setRecording(std::nullopt, std::nullopt);
    registerGlobalHotKey();
}

void KeyboardController::registerGlobalHotKey() {
    setGlobalHotKeyFailed(!m_globalHotKey.registerShortcut(m_settings.shortcut(ShortcutAction::summon)));
}

void KeyboardController::setRecording(std::optional<ShortcutAction> action, const std::optional<QString>& message) {
    const bool changesAction = std::exchange(m_recordingAction, action) != action;
    const bool changesMessage = std::exchange(m_recordingMessage, message) != message;
    if (changesAction) {
        Q_EMIT recordingActionChanged();
    }
    if (changesMessage) {
        Q_EMIT recordingMessageChanged();
    }
}

void KeyboardController::setGlobalHotKeyFailed(bool failed) {
    if (std::exchange(m_globalHotKeyFailed, failed) != failed) {
        Q_EMIT globalHotKeyFailedChanged();
    }
}

} // namespace quillary
