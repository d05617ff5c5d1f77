#include "Quillary/Settings/ShortcutSettingsView.h"

#include "Quillary/Settings/FixedShortcutRow.h"
#include "Quillary/Settings/ShortcutRow.h"
#include "Quillary/Settings/WarningLabel.h"

#include <array>
#include <utility>

namespace quillary {

ShortcutSettingsView::ShortcutSettingsView(AppSettings* settings, KeyboardController* keyboard, QWidget* parent)
    : SettingsForm(parent), m_settings(*settings), m_keyboard(*keyboard) {
    addCustomisable();
    addFixed();
    addSpace();
    addNote(tr("⌘ Ctrl · ⌥ Alt · ⌃ Super · ⇧ Maiusc"));
}

void ShortcutSettingsView::addCustomisable() {
    addSection(tr("Personalizzabili"));
    for (const ShortcutAction action : allShortcutActions) {
        addWideRow(new ShortcutRow(&m_settings, &m_keyboard, action, this));
    }
    auto* const warning =
        new WarningLabel(tr("La scorciatoia globale è già usata da un'altra app: scegline un'altra."), this);
    addRow(warning);
    const auto update = [this, warning] { warning->setVisible(m_keyboard.globalHotKeyFailed()); };
    connect(&m_keyboard, &KeyboardController::globalHotKeyFailedChanged, warning, update);
    update();
    addNote(tr("Fai clic su una scorciatoia e premi la nuova combinazione. ⎋ annulla, ⌫ disattiva."));
}

void ShortcutSettingsView::addFixed() {
    addSection(tr("Fisse"));
    const std::array<std::pair<QString, QString>, 10> rows{{
        {tr("Vai alla nota 1–9"), tr("⌘1 … ⌘9")},
        {tr("Nuova nota / dagli appunti"), tr("⌘N  ⇧⌘N")},
        {tr("Salva / Salva come…"), tr("⌘S  ⇧⌘S")},
        {tr("Copia contenuto della nota"), tr("⌥⌘C")},
        {tr("Seleziona più note"), tr("⌘-clic  ⇧-clic")},
        {tr("Nuova cartella con le note selezionate"), tr("⌘G")},
        {tr("Nuova cartella vuota"), tr("⌥⌘N")},
        {tr("Confronta due note selezionate"), tr("⇧⌘D")},
        {tr("Trova / Trova e sostituisci"), tr("⌘F  ⌥⌘F")},
        {tr("Dimensione testo"), tr("⌘+  ⌘−  ⌘0")},
    }};
    for (const auto& [label, keys] : rows) {
        addWideRow(new FixedShortcutRow(label, keys, this));
    }
}

} // namespace quillary
