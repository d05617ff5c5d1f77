#include "Quillary/Platform/DesktopColorScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr uint preferDark = 1;
constexpr uint higherContrast = 1;

constexpr auto service = "org.freedesktop.portal.Desktop"_L1;
constexpr auto path = "/org/freedesktop/portal/desktop"_L1;
constexpr auto interface = "org.freedesktop.portal.Settings"_L1;
constexpr auto appearance = "org.freedesktop.appearance"_L1;
constexpr auto schemeKey = "color-scheme"_L1;
constexpr auto contrastKey = "contrast"_L1;

} // namespace

DesktopColorScheme::DesktopColorScheme(QDBusConnection bus, QObject* parent) : QObject(parent) {
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(service, path, interface, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    read(bus, schemeKey);
    read(bus, contrastKey);
}

/// Desktops that don't know a key answer with an error, which leaves everything as it is.
void DesktopColorScheme::read(QDBusConnection& bus, const QString& key) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    call << QString(appearance) << key;
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            take(key, reply.value().variant());
        }
        watcher->deleteLater();
    });
}

void DesktopColorScheme::settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value) {
    if (nameSpace == appearance) {
        take(key, value.variant());
    }
}

void DesktopColorScheme::take(const QString& key, const QVariant& value) {
    // Read wraps its answer twice, SettingChanged once.
    const uint number =
        (value.metaType() == QMetaType::fromType<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value)
            .toUInt();
    if (key == schemeKey && (number == preferDark) != m_prefersDark) {
        m_prefersDark = !m_prefersDark;
        Q_EMIT prefersDarkChanged();
    } else if (key == contrastKey && (number == higherContrast) != m_prefersHighContrast) {
        m_prefersHighContrast = !m_prefersHighContrast;
        Q_EMIT prefersHighContrastChanged();
    }
}

} // namespace quillary
