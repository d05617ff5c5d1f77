#pragma once

#include "Quillary/Platform/BusEnd.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace quillary {

/// What a start found when it looked for a Quillary that already runs.
enum class Claim {
    /// This process is the one.
    first,
    /// Another process is the one; it was asked to show itself.
    handedOver,
    /// There is no session bus: every start runs by itself.
    noBus,
};

/// The one Quillary of a user's session, on the session bus as `app.quillary.Quillary` by the interface
/// `org.freedesktop.Application` (Desktop Entry Specification, "D-Bus Activation").
class ApplicationService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationService(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);
    ~ApplicationService() override;

    /// What the launcher of this process said of its start. Qt takes the startup id out of the environment: ask before
    /// there is an application.
    static QVariantMap ownPlatformData();

    /// Takes the name, or activates whoever has it on behalf of a start of which a launcher said this.
    Claim claim(const QVariantMap& platformData = {});

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the interface's own names
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameters, const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

Q_SIGNALS:
    /// The window is wanted. The token lets a Wayland compositor hand over the focus, the startup id an X11 window
    /// manager; either may be empty.
    void activated(const QString& activationToken, const QString& startupId);

    /// One of the application's own actions is wanted, after `activated`; the name is that of the desktop file.
    void actionActivated(const QString& name);

    /// The bus has ended, and no other start reaches this process any more.
    void lost();

private:
    bool activateOwner(const QVariantMap& platformData);

    QDBusConnection m_bus;
    BusEnd m_end;
    bool m_isOwner = false;
};

} // namespace quillary
