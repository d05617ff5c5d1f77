#pragma once

#include <QObject>

namespace quillary {

class KeyboardController;
struct KeyPress;

/// Shows each key that goes to a window of the application to the dispatcher, before menus and widgets see it.
///
/// A key goes first through the search for a shortcut and then to the focused widget. What the dispatcher is going to
/// consume is kept from the first by claiming it, and is answered and swallowed on its second way.
class KeyMonitor : public QObject {
    Q_OBJECT

public:
    /// The controller must outlive it.
    explicit KeyMonitor(KeyboardController* keyboard, QObject* parent = nullptr);

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    KeyboardController& m_keyboard;
};

} // namespace quillary
