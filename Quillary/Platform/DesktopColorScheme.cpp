#include "Quillary/Platform/DesktopColorScheme.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr uint preferDark = 1;

} // namespace

DesktopColorScheme::DesktopColorScheme(QDBusConnection bus, QObject* parent) : QObject(parent) {
    if (!bus.isConnected()) {
        return;
    }
    const QString service = u"org.freedesktop.portal.Desktop"_s;
    const QString path = u"/org/freedesktop/portal/desktop"_s;
    const QString interface = u"org.freedesktop.portal.Settings"_s;
    bus.connect(service, path, interface, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));

    QDBusMessage read = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    read << u"org.freedesktop.appearance"_s << u"color-scheme"_s;
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            take(reply.value().variant());
        }
        watcher->deleteLater();
    });
}

void DesktopColorScheme::settingChanged(const QString& nameSpace, const QString& key, const QDBusVariant& value) {
    if (nameSpace == "org.freedesktop.appearance"_L1 && key == "color-scheme"_L1) {
        take(value.variant());
    }
}

void DesktopColorScheme::take(const QVariant& value) {
    // Read wraps its answer twice, SettingChanged once.
    const QVariant inner =
        value.metaType() == QMetaType::fromType<QDBusVariant>() ? value.value<QDBusVariant>().variant() : value;
    const bool dark = inner.toUInt() == preferDark;
    if (dark != m_prefersDark) {
        m_prefersDark = dark;
        Q_EMIT prefersDarkChanged();
    }
}

} // namespace quillary
