#include "Quillary/Shell/SystemDesktop.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMimeData>
#include <QStandardPaths>
#include <QUrl>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The URL of a file, whatever bytes its name is made of.
QUrl fileURL(const FilePath& path) {
    return QUrl::fromEncoded("file://" + path.bytes().toPercentEncoding("/"), QUrl::StrictMode);
}

void openInDesktop(const QUrl& url) {
    QDesktopServices::openUrl(url);
}

} // namespace

void SystemDesktop::beep() {
    QApplication::beep();
}

std::optional<QString> SystemDesktop::clipboardText() const {
    const QMimeData* const content = QGuiApplication::clipboard()->mimeData();
    return content != nullptr && content->hasText() ? std::optional(content->text()) : std::nullopt;
}

void SystemDesktop::setClipboardText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

QList<FilePath> SystemDesktop::chooseFiles(const QString& message, const QString& prompt) {
    QFileDialog panel(QApplication::activeWindow(), message);
    panel.setFileMode(QFileDialog::ExistingFiles);
    panel.setLabelText(QFileDialog::Accept, prompt);
    return choose(panel);
}

std::optional<FilePath> SystemDesktop::chooseDirectory(const FilePath& start, const QString& prompt) {
    QFileDialog panel(QApplication::activeWindow());
    panel.setFileMode(QFileDialog::Directory);
    panel.setOption(QFileDialog::ShowDirsOnly);
    panel.setDirectory(start.text());
    panel.setLabelText(QFileDialog::Accept, prompt);
    if (panel.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return FilePath::fromText(panel.selectedFiles().constFirst());
}

std::optional<FilePath> SystemDesktop::chooseDestination(const QString& name) {
    QFileDialog panel(QApplication::activeWindow());
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    const QList<FilePath> chosen = choose(panel, FilePath::displayText(name));
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.constFirst());
}

void SystemDesktop::open(const FilePath& path) {
    openInDesktop(fileURL(path));
}

void SystemDesktop::openURL(const QString& url) {
    openInDesktop(QUrl(url));
}

void SystemDesktop::reveal(const FilePath& path) {
    // A call without a bus would never finish.
    if (!m_bus.isConnected()) {
        openInDesktop(fileURL(path.parent()));
        return;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{QString::fromLatin1(fileURL(path).toEncoded())} << QString();
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [watcher, directory = path.parent()] {
        // Without a file manager of that kind its directory must do.
        if (watcher->isError()) {
            openInDesktop(fileURL(directory));
        }
        watcher->deleteLater();
    });
}

/// Runs a panel for files where the last one was left, with a name filled in if there is one.
QList<FilePath> SystemDesktop::choose(QFileDialog& panel, const QString& name) {
    if (m_lastDirectory.isEmpty()) {
        m_lastDirectory = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    }
    panel.setDirectory(m_lastDirectory);
    if (!name.isEmpty()) {
        panel.selectFile(name);
    }
    QList<FilePath> chosen;
    if (panel.exec() == QDialog::Accepted) {
        for (const QString& file : panel.selectedFiles()) {
            chosen.append(FilePath::fromText(file));
        }
        m_lastDirectory = panel.directory().absolutePath();
    }
    return chosen;
}

} // namespace quillary
