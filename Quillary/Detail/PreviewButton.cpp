#include "Quillary/Detail/PreviewButton.h"

#include "Quillary/Theme/Symbol.h"

namespace quillary {

using namespace Qt::StringLiterals;

PreviewButton::PreviewButton(NotesStore& store, AppSettings& settings, QWidget* parent)
    : QToolButton(parent), m_settings(settings) {
    setAutoRaise(true);
    setIcon(symbolIcon(Symbol::preview));
    setCheckable(true);
    connect(this, &QToolButton::clicked, this, [this, &store] {
        // The note alone decides whether its preview shows.
        setChecked(!isChecked());
        store.togglePreview();
    });
    connect(&settings, &AppSettings::shortcutsChanged, this, &PreviewButton::update);
    update();
}

void PreviewButton::setItem(const NoteItemPtr& item) {
    m_item = item;
    update();
}

void PreviewButton::update() {
    const bool isPossible = m_item != nullptr && m_item->canPreview();
    setEnabled(isPossible);
    setChecked(isPossible && m_item->showsPreview());
    if (const QString help = previewHelp(); help != toolTip()) {
        setToolTip(help);
        setAccessibleName(help);
    }
}

QString PreviewButton::previewHelp() const {
    if (m_item != nullptr && !m_item->canPreview() && supportsPreview(m_item->format())) {
        return tr("Anteprima disattivata per le note oltre 1 MB");
    }
    const QString help = isChecked() ? tr("Torna all'editor") : tr("Anteprima formattata");
    const std::optional<KeyShortcut> shortcut = m_settings.shortcut(ShortcutAction::togglePreview);
    return shortcut ? QString(help % u" ("_s % shortcut->displayString() % u')') : help;
}

} // namespace quillary
