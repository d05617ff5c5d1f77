#include "Quillary/Detail/SoloButton.h"

#include "Quillary/Theme/Symbol.h"

namespace quillary {

SoloButton::SoloButton(SoloController& solo, QWidget* parent) : QToolButton(parent), m_solo(solo) {
    setAutoRaise(true);
    setToolTip(tr("Invia a Solo (⇧⌘↩)"));
    setAccessibleName(toolTip());
    connect(this, &QToolButton::clicked, &solo, &SoloController::showPanel);
    connect(&solo, &SoloController::confirmationChanged, this, &SoloButton::update);
    update();
}

void SoloButton::update() {
    setIcon(symbolIcon(m_solo.confirmation() ? Symbol::sent : Symbol::send));
    // What was done is told to those who don't see the picture change, too.
    setAccessibleDescription(m_solo.confirmation().value_or(QString()));
}

} // namespace quillary
