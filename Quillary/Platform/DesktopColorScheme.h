#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusPendingCallWatcher;
class QDBusVariant;

namespace quillary {

/// Whether the desktop prefers dark windows, as its settings portal says, followed live. Without a session bus or a
/// portal it stays light. Source: org.freedesktop.portal.Settings, namespace org.freedesktop.appearance, key
/// color-scheme (1 is dark).
class DesktopColorScheme : public QObject {
    Q_OBJECT

public:
    explicit DesktopColorScheme(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool prefersDark() const { return m_prefersDark; }

Q_SIGNALS:
    void prefersDarkChanged();

private:
    Q_SLOT void settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);
    void take(const QVariant& value);

    bool m_prefersDark = false;
};

} // namespace quillary
