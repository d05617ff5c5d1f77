#pragma once

#include "Quillary/State/Desktop.h"

#include <QDBusConnection>

#include <utility>

class QFileDialog;

namespace quillary {

/// The desktop that the user works on.
class SystemDesktop : public Desktop {
public:
    /// `bus` is where the file manager is.
    explicit SystemDesktop(QDBusConnection bus = QDBusConnection::sessionBus()) : m_bus(std::move(bus)) {}

    void beep() override;
    std::optional<QString> clipboardText() const override;
    void setClipboardText(const QString& text) override;
    QList<FilePath> chooseFiles(const QString& message, const QString& prompt) override;
    std::optional<FilePath> chooseDirectory(const FilePath& start, const QString& prompt) override;
    std::optional<FilePath> chooseDestination(const QString& name) override;
    void open(const FilePath& path) override;
    void openURL(const QString& url) override;
    void reveal(const FilePath& path) override;

private:
    QList<FilePath> choose(QFileDialog& panel, const QString& name = {});

    QDBusConnection m_bus;

    /// Where the last panel for files was left.
    QString m_lastDirectory;
};

} // namespace quillary
