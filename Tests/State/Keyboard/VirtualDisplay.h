#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

namespace quillary::test {

/// An X server of its own, with a keyboard that a test presses.
class VirtualDisplay {
public:
    VirtualDisplay() {
        using namespace Qt::StringLiterals;
        m_server.start(u"Xvfb"_s,
                       {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"320x240x24"_s, u"-nolisten"_s, u"tcp"_s});
        while (!m_server.canReadLine() && m_server.waitForReadyRead()) {
        }
        m_name = ':' + m_server.readLine().trimmed();
    }

    ~VirtualDisplay() {
        m_server.terminate();
        m_server.waitForFinished();
    }

    const char* name() const { return m_name.constData(); }

    /// Runs xdotool; true if it went well.
    bool xdotool(const QStringList& arguments) const { return run(QStringLiteral("xdotool"), arguments); }

    /// Presses a combination, as "alt+n".
    bool press(const QString& keys) const { return xdotool({QStringLiteral("key"), keys}); }

    bool run(const QString& program, const QStringList& arguments) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(m_name));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

private:
    QProcess m_server;
    QByteArray m_name;
};

} // namespace quillary::test
