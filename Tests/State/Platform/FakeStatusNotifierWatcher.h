#pragma once

#include <QDBusConnection>
#include <QObject>

namespace quillary {

/// A desktop that knows of status items, with a panel that shows them or without one.
class FakeStatusNotifierWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    FakeStatusNotifierWatcher(QDBusConnection bus, bool hasHost) : m_bus(std::move(bus)), m_hasHost(hasHost) {
        using namespace Qt::StringLiterals;
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                             QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals);
        m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
    }

    ~FakeStatusNotifierWatcher() override {
        using namespace Qt::StringLiterals;
        m_bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s);
    }

    bool hasHost() const { return m_hasHost; }

    void setHost(bool hasHost) {
        m_hasHost = hasHost;
        if (hasHost) {
            Q_EMIT StatusNotifierHostRegistered();
        } else {
            Q_EMIT StatusNotifierHostUnregistered();
        }
    }

Q_SIGNALS:
    // NOLINTBEGIN(readability-identifier-naming): the interface's own names
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
    // NOLINTEND(readability-identifier-naming)

private:
    QDBusConnection m_bus;
    bool m_hasHost;
};

} // namespace quillary
