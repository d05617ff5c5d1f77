#include "Quillary/SendPanel/SearchBox.h"

#include "Quillary/Theme/Symbol.h"

#include <QAbstractItemView>
#include <QAction>
#include <QKeyEvent>

namespace quillary {

SearchBox::SearchBox(QWidget* parent) : QLineEdit(parent) {
    addAction(symbolIcon(Symbol::search), QLineEdit::LeadingPosition)->setText(tr("Cerca"));
    QAction* const clearAction = addAction(symbolIcon(Symbol::clear), QLineEdit::TrailingPosition);
    clearAction->setText(tr("Cancella"));
    clearAction->setVisible(false);
    connect(clearAction, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, clearAction,
            [clearAction](const QString& text) { clearAction->setVisible(!text.isEmpty()); });
}

void SearchBox::setPlaceholder(const QString& placeholder) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
}

void SearchBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down && m_list != nullptr && m_list->isVisible()) {
        m_list->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace quillary
