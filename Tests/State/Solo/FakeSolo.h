#pragma once

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTemporaryDir>

namespace quillary::test {

/// A directory with a Solo that plays scripts. Its processes find it by an environment variable, so there is one at a
/// time.
class FakeSolo {
public:
    FakeSolo() { qputenv("FAKE_SOLO", QFile::encodeName(m_directory.path())); }

    ~FakeSolo() { qunsetenv("FAKE_SOLO"); }

    FakeSolo(const FakeSolo&) = delete;
    FakeSolo& operator=(const FakeSolo&) = delete;

    static QString program() { return QStringLiteral(FAKE_SOLO_PROGRAM); }

    QString path(const QString& name) const { return m_directory.filePath(name); }

    /// Sets what a role plays: "agents.list", "projects.list", "processes.list", "processes.spawn" or "mcp".
    void play(const QString& role, const QStringList& steps) const {
        QFile file(path(role));
        file.open(QIODevice::WriteOnly);
        file.write(steps.join(u'\n').toUtf8());
    }

    /// What a role was given: the arguments of each command, or the lines on its input.
    QStringList log(const QString& role) const {
        QFile file(path(role + QStringLiteral(".log")));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
        lines.removeLast();
        return lines;
    }

    /// The messages that a server was given.
    QList<QJsonObject> messages() const {
        QList<QJsonObject> all;
        for (const QString& line : log(QStringLiteral("mcp"))) {
            all.append(QJsonDocument::fromJson(line.toUtf8()).object());
        }
        return all;
    }

private:
    QTemporaryDir m_directory;
};

} // namespace quillary::test
