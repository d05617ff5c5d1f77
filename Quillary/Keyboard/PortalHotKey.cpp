#include "Quillary/Keyboard/PortalHotKey.h"

#include "Quillary/Keyboard/PortalRequest.h"
#include "Quillary/Keyboard/PortalTrigger.h"
#include "Quillary/Keyboard/ShortcutAction.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

/// One shortcut as the portal takes it: (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalObject = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;

QString shortcutID() {
    return rawValue(ShortcutAction::summon);
}

QDBusMessage shortcutsCall(const QString& method) {
    return QDBusMessage::createMethodCall(portalService, portalObject, shortcutsInterface, method);
}

} // namespace

PortalHotKey::PortalHotKey(const QDBusConnection& bus) : m_bus(bus) {
    // A connection to a slot by name fails, without a word, for a type that Qt doesn't know by name yet.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_bus.connect(portalService, portalObject, shortcutsInterface, u"Activated"_s, this,
                  SLOT(shortcutActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
}

PortalHotKey::~PortalHotKey() {
    closeSession(m_session);
}

bool PortalHotKey::grab(const KeyShortcut& shortcut) {
    release();
    if (!m_bus.isConnected()) {
        return false;
    }
    createSession(portalTrigger(shortcut));
    return true;
}

void PortalHotKey::release() {
    ++m_generation;
    closeSession(std::exchange(m_session, {}));
}

void PortalHotKey::createSession(const QString& trigger) {
    const QString token = PortalRequest::nextToken();
    QDBusMessage call = shortcutsCall(u"CreateSession"_s);
    call << QVariantMap{{u"handle_token"_s, token}, {u"session_handle_token"_s, token}};
    new PortalRequest(
        m_bus, token, call,
        [this, trigger, generation = m_generation](const std::optional<QVariantMap>& results) {
            const QString session = results ? results->value(u"session_handle"_s).toString() : QString();
            if (generation != m_generation) {
                closeSession(session);
            } else if (session.isEmpty()) {
                Q_EMIT refused();
            } else {
                m_session = session;
                bindShortcut(trigger);
            }
        },
        this);
}

void PortalHotKey::bindShortcut(const QString& trigger) {
    const QString token = PortalRequest::nextToken();
    QVariantMap properties{{u"description"_s, displayName(ShortcutAction::summon)}};
    if (!trigger.isEmpty()) {
        properties.insert(u"preferred_trigger"_s, trigger);
    }
    QDBusMessage call = shortcutsCall(u"BindShortcuts"_s);
    call << QVariant::fromValue(QDBusObjectPath(m_session))
         << QVariant::fromValue(QList<PortalShortcut>{{shortcutID(), properties}}) << QString()
         << QVariantMap{{u"handle_token"_s, token}};
    new PortalRequest(
        m_bus, token, call,
        [this, generation = m_generation](const std::optional<QVariantMap>& results) {
            if (generation == m_generation && !results) {
                closeSession(std::exchange(m_session, {}));
                Q_EMIT refused();
            }
        },
        this);
}

void PortalHotKey::closeSession(const QString& session) {
    if (!session.isEmpty()) {
        m_bus.send(
            QDBusMessage::createMethodCall(portalService, session, u"org.freedesktop.portal.Session"_s, u"Close"_s));
    }
}

void PortalHotKey::shortcutActivated(const QDBusObjectPath& session, const QString& id, qulonglong /*time*/,
                                     const QVariantMap& options) {
    if (session.path() != m_session || id != shortcutID()) {
        return;
    }
    // Qt's Wayland plugin takes the token from here when it next asks for the focus.
    const QByteArray token = options.value(u"activation_token"_s).toString().toUtf8();
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token);
    }
    Q_EMIT pressed();
}

} // namespace quillary
