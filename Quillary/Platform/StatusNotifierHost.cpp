#include "Quillary/Platform/StatusNotifierHost.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

QString watcherService() {
    return u"org.kde.StatusNotifierWatcher"_s;
}

QString watcherPath() {
    return u"/StatusNotifierWatcher"_s;
}

} // namespace

StatusNotifierHost::StatusNotifierHost(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_service(watcherService(), m_bus), m_end(m_bus) {
    if (!m_bus.isConnected()) {
        return;
    }
    for (const QString& change : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        m_bus.connect(watcherService(), watcherPath(), watcherService(), change, this, SLOT(ask()));
    }
    connect(&m_service, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
        // Whatever the one before knew ended with it.
        setPresent(false);
        ask();
    });
    connect(&m_end, &BusEnd::reached, this, [this] { setPresent(false); });
    ask();
}

void StatusNotifierHost::ask() {
    QDBusMessage get =
        QDBusMessage::createMethodCall(watcherService(), watcherPath(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get << watcherService() << u"IsStatusNotifierHostRegistered"_s;
    get.setAutoStartService(false);
    auto* const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(get), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question = ++m_questions] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        // An answer that was overtaken by a change says nothing any more.
        if (question == m_questions) {
            setPresent(reply.isValid() && reply.value().variant().toBool());
        }
        answer->deleteLater();
    });
}

void StatusNotifierHost::setPresent(bool isPresent) {
    if (std::exchange(m_isPresent, isPresent) != isPresent) {
        Q_EMIT isPresentChanged();
    }
}

} // namespace quillary
