#include "Quillary/Keyboard/GlobalHotKey.h"

#include <utility>

namespace quillary {

GlobalHotKey::GlobalHotKey(std::unique_ptr<HotKeyBackend> backend, QObject* parent)
    : QObject(parent), m_backend(std::move(backend)) {
    if (m_backend == nullptr) {
        return;
    }
    connect(m_backend.get(), &HotKeyBackend::pressed, this, [this] {
        if (m_isRegistered && onPress) {
            onPress();
        }
    });
    connect(m_backend.get(), &HotKeyBackend::refused, this, [this] {
        if (m_isRegistered) {
            m_isRegistered = false;
            Q_EMIT refused();
        }
    });
}

bool GlobalHotKey::registerShortcut(const std::optional<KeyShortcut>& shortcut) {
    if (m_isRegistered) {
        m_isRegistered = false;
        m_backend->release();
    }
    if (!shortcut) {
        return true;
    }
    m_isRegistered = m_backend != nullptr && m_backend->grab(*shortcut);
    return m_isRegistered;
}

} // namespace quillary
