#pragma once

#include "Quillary/Keyboard/HotKeyBackend.h"

#include <QDBusConnection>
#include <QVariantMap>

class QDBusObjectPath;

namespace quillary {

/// A hot key by the desktop portal for global shortcuts, the way of Wayland. The desktop may ask the user, and the user
/// may choose other keys than those asked for; both take time, so that a refusal comes late.
class PortalHotKey : public HotKeyBackend {
    Q_OBJECT

public:
    explicit PortalHotKey(const QDBusConnection& bus);
    ~PortalHotKey() override;

    /// False only without a session bus.
    bool grab(const KeyShortcut& shortcut) override;
    void release() override;

private:
    void createSession(const QString& trigger);
    void bindShortcut(const QString& trigger);
    void closeSession(const QString& session);

private Q_SLOTS:
    void shortcutActivated(const QDBusObjectPath& session, const QString& id, qulonglong time,
                           const QVariantMap& options);

private:
    QDBusConnection m_bus;
    QString m_session;

    /// Raised by each grab and release: answers to what was asked before don't count.
    int m_generation = 0;
};

} // namespace quillary
