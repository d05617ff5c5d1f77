#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace quillary::test {

/// A session that a program may close.
class FakePortalSession : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Session")

public:
    QString path;
    int closed = 0;

public Q_SLOTS:

    // NOLINTNEXTLINE(readability-identifier-naming): the interface's own name
    void Close() { ++closed; }
};

/// The part of a desktop portal that hands out global shortcuts.
class FakeShortcutsPortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")

public:
    enum class Refusal { none, call, session, binding };

    explicit FakeShortcutsPortal(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerObject(path(), this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void refuse(Refusal refusal) { m_refusal = refusal; }

    /// Identifier, description and wish of each shortcut that was bound.
    const QList<QStringList>& bindings() const { return m_bindings; }

    int closedSessions() const { return m_session.closed; }

    /// As if the user had pressed the keys of a shortcut, by default of the present session.
    void activate(const QString& id, const QString& session = {}) {
        QDBusMessage signal = QDBusMessage::createSignal(
            path(), QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(session.isEmpty() ? m_session.path : session)) << id
               << qulonglong{1} << QVariantMap();
        m_bus.send(signal);
    }

    /// Sends a message there and back on another connection; what was sent before it has arrived then.
    void ping(QDBusConnection bus) {
        QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), path(),
                                                           QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                           QStringLiteral("Ping"));
        bus.callWithCallback(call, this, SLOT(pinged()));
    }

    int pings() const { return m_pings; }

public Q_SLOTS:

    // NOLINTBEGIN(readability-identifier-naming): the interface's own names
    QDBusObjectPath CreateSession(const QVariantMap& options) {
        if (m_refusal == Refusal::call) {
            sendErrorReply(QDBusError::UnknownMethod);
            return QDBusObjectPath(QStringLiteral("/"));
        }
        m_session.path = path() + QStringLiteral("/session/sender/") +
                         options.value(QStringLiteral("session_handle_token")).toString();
        m_bus.registerObject(m_session.path, &m_session, QDBusConnection::ExportAllSlots);
        return respond(options, m_refusal == Refusal::session, {{QStringLiteral("session_handle"), m_session.path}});
    }

    QDBusObjectPath BindShortcuts(const QDBusMessage& call) {
        const QString session = call.arguments().constFirst().value<QDBusObjectPath>().path();
        const QVariantMap options = qdbus_cast<QVariantMap>(call.arguments().constLast());
        const auto shortcuts = call.arguments().at(1).value<QDBusArgument>();
        shortcuts.beginArray();
        while (!shortcuts.atEnd() && session == m_session.path) {
            QString id;
            QVariantMap properties;
            shortcuts.beginStructure();
            shortcuts >> id >> properties;
            shortcuts.endStructure();
            m_bindings.append({id, properties.value(QStringLiteral("description")).toString(),
                               properties.value(QStringLiteral("preferred_trigger")).toString()});
        }
        shortcuts.endArray();
        return respond(options, m_refusal == Refusal::binding, {});
    }

    void Ping() {}

    // NOLINTEND(readability-identifier-naming)

private Q_SLOTS:

    void pinged() { ++m_pings; }

private:
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }

    /// The answer comes on an object of the request.
    QDBusObjectPath respond(const QVariantMap& options, bool refuses, const QVariantMap& results) {
        const QString sender = message().service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        const QString request = path() + QStringLiteral("/request/") + sender + QLatin1Char('/') +
                                options.value(QStringLiteral("handle_token")).toString();
        QDBusMessage signal = QDBusMessage::createSignal(request, QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        signal << (refuses ? 1U : 0U) << results;
        m_bus.send(signal);
        return QDBusObjectPath(request);
    }

    QDBusConnection m_bus;
    Refusal m_refusal = Refusal::none;
    QList<QStringList> m_bindings;
    FakePortalSession m_session;
    int m_pings = 0;
};

} // namespace quillary::test
