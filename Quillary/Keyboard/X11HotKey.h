#pragma once

#include "Quillary/Keyboard/HotKeyBackend.h"
#include "Quillary/Keyboard/X11Modifiers.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <memory>
#include <optional>
#include <vector>

namespace quillary {

/// A hot key by a passive grab on the X server's root windows. It has a connection of its own, which hears of changes
/// of the keyboard whatever Qt asked for on the other.
class X11HotKey : public HotKeyBackend {
    Q_OBJECT

public:
    /// On a display by its name; without one that of the environment.
    explicit X11HotKey(const char* display = nullptr);
    ~X11HotKey() override;

    /// Grabs the combination with each set of lock keys that may be on. If another program has any one of them, none is
    /// kept.
    bool grab(const KeyShortcut& shortcut) override;
    void release() override;

private:
    /// A key of the server and its modifiers, without lock keys.
    struct Grab {
        xcb_keycode_t keyCode = 0;
        quint16 modifiers = 0;
    };

    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    bool grabAllVariants();
    void ungrabAllVariants();
    void readEvents();
    void handlePress(const xcb_key_press_event_t& event);
    void handleRelease(const xcb_key_release_event_t& event);
    void keyboardDidChange();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::vector<xcb_window_t> m_roots;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::optional<KeyShortcut> m_shortcut;
    std::optional<Grab> m_grab;
    X11Modifiers m_modifiers;
    bool m_isDown = false;

    /// When the key came up, until it is known whether that was a repetition.
    std::optional<xcb_timestamp_t> m_releaseTime;
};

} // namespace quillary
