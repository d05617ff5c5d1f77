#pragma once

#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/Settings/SettingsForm.h"
#include "Quillary/State/AppSettings.h"

namespace quillary {

/// The shortcuts that the user may choose, and those that are fixed.
class ShortcutSettingsView : public SettingsForm {
    Q_OBJECT

public:
    ShortcutSettingsView(AppSettings* settings, KeyboardController* keyboard, QWidget* parent = nullptr);

private:
    void addCustomisable();
    void addFixed();

    AppSettings& m_settings;
    KeyboardController& m_keyboard;
};

} // namespace quillary
