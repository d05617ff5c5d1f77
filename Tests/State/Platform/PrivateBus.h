#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QUuid>

namespace quillary {

/// A session bus that only this test knows.
class PrivateBus {
public:
    PrivateBus() {
        using namespace Qt::StringLiterals;
        m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        m_daemon.waitForReadyRead();
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }

    ~PrivateBus() {
        for (const QString& name : m_names) {
            QDBusConnection::disconnectFromBus(name);
        }
        end();
    }

    /// Ends under its connections.
    void end() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    /// A further connection, as of another process.
    QDBusConnection connection() {
        m_names.append(QUuid::createUuid().toString());
        return QDBusConnection::connectToBus(m_address, m_names.constLast());
    }

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

} // namespace quillary
