#pragma once

#include "Quillary/Keyboard/GlobalHotKey.h"
#include "Quillary/Keyboard/ShortcutAction.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quillary {

class AppSettings;
class FindController;
class NotesStore;

/// A key that was pressed, and what it met.
struct KeyPress {
    KeyShortcut shortcut;

    /// Whether the main window has the keyboard.
    bool isInMainWindow = false;

    /// Whether the focus is in a text that can be edited, of the note or of a field.
    bool isInEditableText = false;

    /// Whether the key is held down and this is no new press.
    bool isRepeated = false;
};

/// The application's own dispatcher of keys. It sees each key before menus and widgets do, answers what those can't
/// express, and lets everything else through. It also records new shortcuts for the settings, and keeps the hot key.
class KeyboardController : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    KeyboardController(NotesStore* store, AppSettings* settings, FindController* find,
                       std::unique_ptr<HotKeyBackend> hotKeyBackend = HotKeyBackend::forPlatform(),
                       QObject* parent = nullptr);

    /// Called once when the application has started: from then on keys are answered, and the hot key works.
    void start();

    /// Whether `handle` would consume a key. Nothing happens.
    bool wouldConsume(const KeyPress& press) { return command(press) != nullptr; }

    /// Answers a key. True if it is consumed and nobody else may see it.
    bool handle(const KeyPress& press);

    void perform(ShortcutAction action);

    /// The action whose new shortcut is being recorded.
    std::optional<ShortcutAction> recordingAction() const { return m_recordingAction; }

    /// Why the last combination was not taken.
    const std::optional<QString>& recordingMessage() const { return m_recordingMessage; }

    /// Whether the shortcut of `summon` could not be had from the desktop.
    bool globalHotKeyFailed() const { return m_globalHotKeyFailed; }

    /// Whether the shortcut of `summon` brings the application up at this moment.
    bool isHotKeyRegistered() const { return m_globalHotKey.isRegistered(); }

    /// Starts the recording of an action's shortcut, goes over to it from another action's, or cancels its own. The hot
    /// key rests meanwhile, so that its combination reaches the recording.
    void toggleRecording(ShortcutAction action);

    /// Ends a recording, if one runs, and changes nothing.
    void cancelRecording();

    /// Asks the desktop for the shortcut of `summon`, or gives it back if that is turned off.
    void registerGlobalHotKey();

Q_SIGNALS:
    void recordingActionChanged();
    void recordingMessageChanged();
    void globalHotKeyFailedChanged();

private:
    using Command = std::function<void()>;

    Command command(const KeyPress& press);
    Command plainKeyCommand(const KeyPress& press);
    Command groupOrFindCommand();
    Command commandKeyCommand(const QString& key);
    void record(const KeyShortcut& shortcut, ShortcutAction action);
    void refuseRecording(const QString& message);
    void endRecording();
    void setRecording(std::optional<ShortcutAction> action, const std::optional<QString>& message);
    void setGlobalHotKeyFailed(bool failed);

    NotesStore& m_store;
    AppSettings& m_settings;
    FindController& m_find;
    GlobalHotKey m_globalHotKey;
    bool m_isStarted = false;
    std::optional<ShortcutAction> m_recordingAction;
    std::optional<QString> m_recordingMessage;
    bool m_globalHotKeyFailed = false;
};

} // namespace quillary
