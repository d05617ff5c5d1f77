#include "Quillary/Detail/FormatMenuButton.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QStyleOptionToolButton>

namespace quillary {

FormatMenuButton::FormatMenuButton(NotesStore& store, QWidget* parent) : QToolButton(parent), m_store(store) {
    setAutoRaise(true);
    setPopupMode(QToolButton::InstantPopup);
    setIcon(symbolIcon(Symbol::chevronDown));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setToolTip(tr("Formato della nota"));
    setAccessibleName(toolTip());
    QFont font = Theme::sidebarDetail();
    font.setWeight(QFont::DemiBold);
    setFont(font);

    auto* const menu = new QMenu(this);
    auto* const group = new QActionGroup(menu);
    for (const NoteFormat format : allNoteFormats) {
        QAction* const action = menu->addAction(displayName(format));
        action->setCheckable(true);
        action->setData(static_cast<int>(format));
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, format] {
            if (m_item != nullptr) {
                m_store.changeFormat(*m_item, format);
            }
        });
    }
    connect(menu, &QMenu::aboutToShow, this, &FormatMenuButton::markPresentFormat);
    setMenu(menu);
}

void FormatMenuButton::initStyleOption(QStyleOptionToolButton* option) const {
    QToolButton::initStyleOption(option);
    // The arrow is the button's icon, behind the text; the style's own would lie over the text.
    option->features &= ~QStyleOptionToolButton::HasMenu;
    option->direction = Qt::RightToLeft;
    // The style makes room for two blanks before the arrow; one of them stands before the text instead.
    option->text.prepend(u' ');
}

void FormatMenuButton::setItem(const NoteItemPtr& item) {
    m_item = item;
    setText(item == nullptr ? QString() : badge(item->format()));
    setAccessibleDescription(item == nullptr ? QString() : displayName(item->format()));
}

void FormatMenuButton::markPresentFormat() {
    for (QAction* const action : menu()->actions()) {
        action->setChecked(m_item != nullptr && action->data().toInt() == static_cast<int>(m_item->format()));
    }
}

} // namespace quillary
