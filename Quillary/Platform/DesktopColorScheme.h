#pragma once

#include <QDBusConnection>
#include <QObject>

class QDBusPendingCallWatcher;
class QDBusVariant;

namespace quillary {

/// Whether the desktop prefers dark windows and higher contrast, as its settings portal says, followed live. Without a
/// session bus or a portal it stays light and ordinary. Source: org.freedesktop.portal.Settings, namespace
/// org.freedesktop.appearance, keys color-scheme (1 is dark) and contrast (1 is higher).
class DesktopColorScheme : public QObject {
    Q_OBJECT

public:
    explicit DesktopColorScheme(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool prefersDark() const { return m_prefersDark; }

    bool prefersHighContrast() const { return m_prefersHighContrast; }

Q_SIGNALS:
    void prefersDarkChanged();
    void prefersHighContrastChanged();

private:
    Q_SLOT void settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value);
    void read(QDBusConnection& bus, const QString& key);
    void take(const QString& key, const QVariant& value);

    bool m_prefersDark = false;
    bool m_prefersHighContrast = false;
};

} // namespace quillary
