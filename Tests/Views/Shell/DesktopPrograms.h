#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <gtest/gtest.h>

namespace quillary {

/// What stands in for the programs that open files, while it lives.
class Opener : public QObject {
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }

    ~Opener() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    Q_SLOT void open(const QUrl& url) { opened.append(url.toEncoded()); }

    QList<QByteArray> opened;
};

/// A file manager on the bus.
class FileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FileManager(QDBusConnection bus) {
        bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this, QDBusConnection::ExportAllSlots);
        bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    }

    // NOLINTNEXTLINE(readability-identifier-naming): the interface's own name
    Q_SLOT void ShowItems(const QStringList& uris, const QString& startupID) {
        EXPECT_EQ(startupID, QString());
        shown.append(uris);
    }

    QStringList shown;
};

} // namespace quillary
