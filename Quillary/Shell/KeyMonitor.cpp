#include "Quillary/Shell/KeyMonitor.h"

#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Keyboard/KeyEvents.h"
#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/State/AppActions.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWindow>

namespace quillary {

namespace {

template <typename Text>
bool isEditable(const QWidget* widget) {
    const auto* const text = qobject_cast<const Text*>(widget);
    return text != nullptr && !text->isReadOnly();
}

bool isEditableText(const QWidget* widget) {
    // The note's text refuses edits only for as long as something else lies over it.
    return qobject_cast<const ZoomableTextView*>(widget) != nullptr || isEditable<QLineEdit>(widget) ||
           isEditable<QPlainTextEdit>(widget) || isEditable<QTextEdit>(widget);
}

bool isMainWindow(const QObject* window) {
    const AppWindow* const mainWindow = AppActions::shared().mainWindow;
    const auto* const widget = dynamic_cast<const QWidget*>(mainWindow);
    return widget != nullptr && widget->windowHandle() == window;
}

/// The key for the menu of what has the keyboard, for keyboards that have no key of its own for that. Qt knows only
/// that one on Linux.
bool opensMenu(const QKeyEvent& key) {
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier;
}

} // namespace

KeyMonitor::KeyMonitor(KeyboardController* keyboard, QObject* parent) : QObject(parent), m_keyboard(*keyboard) {
    qApp->installEventFilter(this);
}

bool KeyMonitor::eventFilter(QObject* receiver, QEvent* event) {
    const bool isSearch = event->type() == QEvent::ShortcutOverride;
    // Windows come first, widgets see the same event once more. An open menu has its keys for itself.
    if ((!isSearch && event->type() != QEvent::KeyPress) || !receiver->isWindowType() ||
        QApplication::activePopupWidget() != nullptr) {
        return false;
    }
    const auto& key = *static_cast<QKeyEvent*>(event);
    const std::optional<KeyShortcut> shortcut = KeyEvents::shortcut(key);
    if (!shortcut) {
        return false;
    }
    const KeyPress press{*shortcut, isMainWindow(receiver), isEditableText(QApplication::focusWidget()),
                         key.isAutoRepeat()};
    const bool consumed = isSearch ? m_keyboard.wouldConsume(press) : m_keyboard.handle(press);
    if (consumed) {
        event->accept();
        return true;
    }
    if (!isSearch && opensMenu(key)) {
        // The window hands it to the control that has the keyboard.
        QCoreApplication::postEvent(receiver, new QContextMenuEvent(QContextMenuEvent::Keyboard, QPoint(), QPoint()));
        return true;
    }
    return false;
}

} // namespace quillary
