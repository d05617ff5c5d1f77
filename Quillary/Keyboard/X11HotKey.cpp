#include "Quillary/Keyboard/X11HotKey.h"

#include "Quillary/Keyboard/NativeKeys.h"
#include "Quillary/Platform/UserTime.h"

#include <cstdlib>

namespace quillary {

namespace {

constexpr quint8 sentFlag = 0x80;

struct FreeEvent {
    void operator()(void* event) const { std::free(event); }
};

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

} // namespace

X11HotKey::X11HotKey(const char* display) : m_connection(xcb_connect(display, nullptr)) {
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        return;
    }
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())); screen.rem > 0;
         xcb_screen_next(&screen)) {
        m_roots.push_back(screen.data->root);
    }
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11HotKey::readEvents);
}

X11HotKey::~X11HotKey() = default;

bool X11HotKey::grab(const KeyShortcut& shortcut) {
    release();
    m_shortcut = shortcut;
    if (grabAllVariants()) {
        return true;
    }
    m_shortcut.reset();
    return false;
}

void X11HotKey::release() {
    ungrabAllVariants();
    m_shortcut.reset();
    m_isDown = false;
    m_releaseTime.reset();
}

bool X11HotKey::grabAllVariants() {
    const std::optional<quint32> scanCode = NativeKeys::scanCode(m_shortcut->keyCode);
    if (xcb_connection_has_error(m_connection.get()) != 0 || !scanCode || *scanCode > 255) {
        return false;
    }
    m_modifiers = X11Modifiers::read(m_connection.get());
    m_grab = Grab{static_cast<xcb_keycode_t>(*scanCode), m_modifiers.mask(m_shortcut->modifiers)};
    // All requests first and one wait for the answers.
    std::vector<xcb_void_cookie_t> cookies;
    for (const xcb_window_t root : m_roots) {
        for (const quint16 locks : m_modifiers.lockVariants()) {
            cookies.push_back(xcb_grab_key_checked(m_connection.get(), 0, root, m_grab->modifiers | locks,
                                                   m_grab->keyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
    }
    bool succeeded = true;
    for (const xcb_void_cookie_t cookie : cookies) {
        const std::unique_ptr<xcb_generic_error_t, FreeEvent> error(xcb_request_check(m_connection.get(), cookie));
        succeeded = succeeded && error == nullptr;
    }
    if (!succeeded) {
        ungrabAllVariants();
    }
    // Waiting for answers may have read events, which the notifier will not tell of.
    QMetaObject::invokeMethod(this, &X11HotKey::readEvents, Qt::QueuedConnection);
    return succeeded;
}

void X11HotKey::ungrabAllVariants() {
    if (!m_grab) {
        return;
    }
    for (const xcb_window_t root : m_roots) {
        for (const quint16 locks : m_modifiers.lockVariants()) {
            xcb_ungrab_key(m_connection.get(), m_grab->keyCode, root, m_grab->modifiers | locks);
        }
    }
    xcb_flush(m_connection.get());
    m_grab.reset();
}

void X11HotKey::readEvents() {
    bool hasNewKeyboard = false;
    using Event = std::unique_ptr<xcb_generic_event_t, FreeEvent>;
    while (const Event event{xcb_poll_for_event(m_connection.get())}) {
        switch (event->response_type & ~sentFlag) {
        case XCB_KEY_PRESS:
            handlePress(as<xcb_key_press_event_t>(*event));
            break;
        case XCB_KEY_RELEASE:
            handleRelease(as<xcb_key_release_event_t>(*event));
            break;
        case XCB_MAPPING_NOTIFY:
            hasNewKeyboard = hasNewKeyboard || as<xcb_mapping_notify_event_t>(*event).request != XCB_MAPPING_POINTER;
            break;
        default:
            break;
        }
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier->setEnabled(false);
        m_grab.reset();
        Q_EMIT refused();
    } else if (hasNewKeyboard) {
        keyboardDidChange();
    }
}

void X11HotKey::handlePress(const xcb_key_press_event_t& event) {
    // A key that is held down comes up and goes down again at the same moment.
    const bool isRepeated = m_releaseTime == event.time;
    if (m_releaseTime && !isRepeated) {
        m_isDown = false;
    }
    m_releaseTime.reset();
    const quint16 modifiers = event.state & ~m_modifiers.locks() & 0xFF;
    if (!m_grab || event.detail != m_grab->keyCode || modifiers != m_grab->modifiers || m_isDown) {
        return;
    }
    m_isDown = true;
    tellQtOfUserTime(event.time);
    Q_EMIT pressed();
}

void X11HotKey::handleRelease(const xcb_key_release_event_t& event) {
    if (m_grab && event.detail == m_grab->keyCode) {
        m_releaseTime = event.time;
    }
}

void X11HotKey::keyboardDidChange() {
    if (!m_grab) {
        return;
    }
    ungrabAllVariants();
    if (!grabAllVariants()) {
        m_shortcut.reset();
        Q_EMIT refused();
    }
}

} // namespace quillary
