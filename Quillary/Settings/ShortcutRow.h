#pragma once

#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/State/AppSettings.h"

#include <QWidget>

class QPushButton;
class QToolButton;

namespace quillary {

class WarningLabel;

/// One action with its shortcut, which is recorded anew by a click on it.
class ShortcutRow : public QWidget {
    Q_OBJECT

public:
    ShortcutRow(AppSettings* settings, KeyboardController* keyboard, ShortcutAction action, QWidget* parent = nullptr);

private:
    void update();

    AppSettings& m_settings;
    KeyboardController& m_keyboard;
    ShortcutAction m_action;
    WarningLabel* m_message;
    QToolButton* m_reset;
    QPushButton* m_button;
};

} // namespace quillary
