#pragma once

#include "Quillary/Keyboard/HotKeyBackend.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace quillary {

/// The one combination of keys that reaches the application from any other.
class GlobalHotKey : public QObject {
    Q_OBJECT

public:
    explicit GlobalHotKey(std::unique_ptr<HotKeyBackend> backend = HotKeyBackend::forPlatform(),
                          QObject* parent = nullptr);

    /// What a press does.
    std::function<void()> onPress;

    bool isRegistered() const { return m_isRegistered; }

    /// Replaces the combination; none gives it up, which is no failure. False if the desktop refuses, as when another
    /// program has it or there is no way to ask.
    bool registerShortcut(const std::optional<KeyShortcut>& shortcut);

Q_SIGNALS:
    /// A registration that succeeded is lost, or was refused after all.
    void refused();

private:
    std::unique_ptr<HotKeyBackend> m_backend;
    bool m_isRegistered = false;
};

} // namespace quillary
