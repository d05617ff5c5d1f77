#include "Quillary/MenuBarExtra/MenuBarExtra.h"

#include "Quillary/MenuBarExtra/MenuBarIcon.h"
#include "Quillary/State/AppActions.h"

#include <QSystemTrayIcon>

namespace quillary {

using namespace Qt::StringLiterals;

MenuBarExtra::MenuBarExtra(NotesStore* store, AppSettings* settings, const QDBusConnection& bus, QObject* parent)
    : QObject(parent), m_settings(*settings), m_content(store, settings), m_host(bus), m_colorScheme(bus) {
    connect(&m_content, &MenuBarContent::settingsRequested, this, &MenuBarExtra::settingsRequested);
    connect(&m_host, &StatusNotifierHost::isPresentChanged, this, &MenuBarExtra::update);
    connect(settings, &AppSettings::showsMenuBarExtraChanged, this, &MenuBarExtra::update);
    connect(&m_colorScheme, &DesktopColorScheme::prefersDarkChanged, this, &MenuBarExtra::updateImage);
    update();
}

MenuBarExtra::~MenuBarExtra() = default;

void MenuBarExtra::update() {
    const bool isWanted = m_settings.showsMenuBarExtra() && m_host.isPresent();
    if (isWanted == isShown()) {
        return;
    }
    if (isWanted) {
        // Not before there is a panel: Qt asks once whether there is one, and keeps the answer.
        m_item = std::make_unique<QSystemTrayIcon>();
        m_item->setContextMenu(m_content.menu());
        m_item->setToolTip(u"Quillary"_s);
        connect(m_item.get(), &QSystemTrayIcon::activated, this, [](QSystemTrayIcon::ActivationReason reason) {
            // Panels that open the menu on any click never say this.
            if (reason == QSystemTrayIcon::Trigger) {
                AppActions::shared().showMainWindow();
            }
        });
        updateImage();
        m_item->show();
    } else {
        m_item.reset();
    }
    Q_EMIT isShownChanged();
}

void MenuBarExtra::updateImage() {
    if (m_item != nullptr) {
        m_item->setIcon(MenuBarIcon::image(m_colorScheme.prefersDark()));
    }
}

} // namespace quillary
