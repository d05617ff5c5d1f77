#pragma once

#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QWidget>

namespace quillary {

/// The window of the settings. Each control writes through at once.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    /// All must outlive it.
    SettingsView(AppSettings* settings, NotesStore* store, KeyboardController* keyboard, QWidget* parent = nullptr);

    /// Shows the window, before all others.
    void present();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    KeyboardController& m_keyboard;
};

} // namespace quillary
