#include "Quillary/Platform/ApplicationService.h"

#include <QDBusMessage>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

QString serviceName() {
    return u"app.quillary.Quillary"_s;
}

QString servicePath() {
    return u"/app/quillary/Quillary"_s;
}

} // namespace

ApplicationService::ApplicationService(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_end(m_bus) {
    connect(&m_end, &BusEnd::reached, this, &ApplicationService::lost);
}

ApplicationService::~ApplicationService() {
    if (m_isOwner) {
        m_bus.unregisterService(serviceName());
        m_bus.unregisterObject(servicePath());
    }
}

QVariantMap ApplicationService::ownPlatformData() {
    QVariantMap data;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty()) {
        data.insert(u"activation-token"_s, token);
    }
    if (const QString startup = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !startup.isEmpty()) {
        data.insert(u"desktop-startup-id"_s, startup);
    }
    return data;
}

Claim ApplicationService::claim(const QVariantMap& platformData) {
    if (!m_bus.isConnected()) {
        return Claim::noBus;
    }
    // The object comes first: a call that arrives between the two would be lost.
    m_bus.registerObject(servicePath(), this, QDBusConnection::ExportAllSlots);
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (m_bus.registerService(serviceName())) {
            m_isOwner = true;
            return Claim::first;
        }
        // The owner may have gone between the two calls; then the name is free at the next attempt.
        if (activateOwner(platformData)) {
            return Claim::handedOver;
        }
    }
    return Claim::noBus;
}

bool ApplicationService::activateOwner(const QVariantMap& platformData) {
    constexpr int timeoutMilliseconds = 5000;
    QDBusMessage call =
        QDBusMessage::createMethodCall(serviceName(), servicePath(), u"org.freedesktop.Application"_s, u"Activate"_s);
    call.setAutoStartService(false);
    call << platformData;
    return m_bus.call(call, QDBus::Block, timeoutMilliseconds).type() == QDBusMessage::ReplyMessage;
}

void ApplicationService::Activate(const QVariantMap& platformData) {
    Q_EMIT activated(platformData.value(u"activation-token"_s).toString(),
                     platformData.value(u"desktop-startup-id"_s).toString());
}

void ApplicationService::Open(const QStringList&, const QVariantMap& platformData) {
    // Notes live in one folder, and there is no command line: to open is to come up.
    Activate(platformData);
}

void ApplicationService::ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData) {
    Activate(platformData);
    Q_EMIT actionActivated(name);
}

} // namespace quillary
