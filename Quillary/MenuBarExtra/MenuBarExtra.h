#pragma once

#include "Quillary/MenuBarExtra/MenuBarContent.h"
#include "Quillary/Platform/DesktopColorScheme.h"
#include "Quillary/Platform/StatusNotifierHost.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>

class QSystemTrayIcon;

namespace quillary {

/// The mark in the desktop's panel, with its menu. It is there while the user wants it and a panel shows such marks.
class MenuBarExtra : public QObject {
    Q_OBJECT

public:
    /// The store and the settings must outlive it. `bus` is where panels are looked for; Qt shows the mark on the
    /// session's.
    MenuBarExtra(NotesStore* store, AppSettings* settings, const QDBusConnection& bus = QDBusConnection::sessionBus(),
                 QObject* parent = nullptr);
    ~MenuBarExtra() override;

    bool isShown() const { return m_item != nullptr; }

    MenuBarContent& content() { return m_content; }

Q_SIGNALS:
    void isShownChanged();

    /// The user asked for the window of the settings.
    void settingsRequested();

private:
    void update();
    void updateImage();

    AppSettings& m_settings;
    MenuBarContent m_content;
    StatusNotifierHost m_host;
    DesktopColorScheme m_colorScheme;
    std::unique_ptr<QSystemTrayIcon> m_item;
};

} // namespace quillary
