#include "Quillary/Sidebar/InlineTextField.h"

#include <QKeyEvent>

#include <utility>

namespace quillary {

namespace {

bool endsEditing(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

} // namespace

InlineTextField::InlineTextField(const QString& text, const QFont& font, QWidget* parent) : QLineEdit(text, parent) {
    setFont(font);
}

bool InlineTextField::event(QEvent* event) {
    // Shortcuts of the window on these keys wait until the title is done.
    if (event->type() == QEvent::ShortcutOverride && endsEditing(static_cast<QKeyEvent*>(event)->key())) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void InlineTextField::showEvent(QShowEvent* event) {
    QLineEdit::showEvent(event);
    setFocus(Qt::OtherFocusReason);
    selectAll();
}

void InlineTextField::keyPressEvent(QKeyEvent* event) {
    if (!endsEditing(event->key())) {
        QLineEdit::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Escape) {
        cancel();
    } else {
        commit();
    }
}

void InlineTextField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // The field's own menu and a look at another window give the focus back.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        commit();
    }
}

void InlineTextField::commit() {
    if (!std::exchange(m_isFinished, true)) {
        Q_EMIT committed(text());
    }
}

void InlineTextField::cancel() {
    if (!std::exchange(m_isFinished, true)) {
        Q_EMIT cancelled();
    }
}

} // namespace quillary
