#include "Quillary/Theme/Appearance.h"

#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Style.h"

#include <QApplication>
#include <QToolTip>

namespace quillary {

Appearance::Appearance(QObject* parent) : QObject(parent) {
    QApplication::setStyle(new Style);
    connect(&m_desktop, &DesktopColorScheme::prefersDarkChanged, this, &Appearance::update);
    connect(&m_desktop, &DesktopColorScheme::prefersHighContrastChanged, this, &Appearance::update);
    update();
}

void Appearance::apply(AppAppearance appearance) {
    m_appearance = appearance;
    update();
}

void Appearance::update() {
    const bool dark =
        m_appearance == AppAppearance::dark || (m_appearance == AppAppearance::system && m_desktop.prefersDark());
    const QPalette palette = m_desktop.prefersHighContrast()
                                 ? (dark ? highContrastDarkPalette() : highContrastLightPalette())
                                 : (dark ? darkPalette() : lightPalette());
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}

} // namespace quillary
