#include "Quillary/Keyboard/HotKeyBackend.h"

#include "Quillary/Keyboard/PortalHotKey.h"
#include "Quillary/Keyboard/X11HotKey.h"

#include <QGuiApplication>

namespace quillary {

std::unique_ptr<HotKeyBackend> HotKeyBackend::forPlatform() {
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1StringView("xcb")) {
        return std::make_unique<X11HotKey>();
    }
    // Under Wayland an X11 grab would see keys only while an X11 program has the keyboard.
    if (platform.startsWith(QLatin1StringView("wayland"))) {
        return std::make_unique<PortalHotKey>(QDBusConnection::sessionBus());
    }
    return nullptr;
}

} // namespace quillary
