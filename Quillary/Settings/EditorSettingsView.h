#pragma once

#include "Quillary/Settings/SettingsForm.h"
#include "Quillary/State/AppSettings.h"

namespace quillary {

/// The font of the text, with a sample of it.
class EditorSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit EditorSettingsView(AppSettings* settings, QWidget* parent = nullptr);

private:
    void addText();
    void addSample();

    AppSettings& m_settings;
};

} // namespace quillary
