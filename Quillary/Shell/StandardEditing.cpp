#include "Quillary/Shell/StandardEditing.h"

#include "Quillary/State/AppActions.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace quillary::StandardEditing {

void perform(QKeySequence::StandardKey key) {
    QWidget* const focused = QApplication::focusWidget();
    const QList<QKeySequence> bindings = QKeySequence::keyBindings(key);
    if (focused == nullptr || bindings.isEmpty()) {
        AppActions::shared().beep();
        return;
    }
    const QKeyCombination keys = bindings.constFirst()[0];
    QKeyEvent press(QEvent::KeyPress, keys.key(), keys.keyboardModifiers());
    // Straight to the widget: on the common way the key would be looked for among the shortcuts first and found in the
    // menu that it comes from, without end.
    static_cast<QObject*>(focused)->event(&press);
    if (!press.isAccepted()) {
        AppActions::shared().beep();
    }
}

} // namespace quillary::StandardEditing
