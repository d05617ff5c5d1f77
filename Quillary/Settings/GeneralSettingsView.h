#pragma once

#include "Quillary/Settings/SettingsForm.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

namespace quillary {

/// Where the notes are, how the application looks, and what becomes of new notes.
class GeneralSettingsView : public SettingsForm {
    Q_OBJECT

public:
    GeneralSettingsView(AppSettings* settings, NotesStore* store, QWidget* parent = nullptr);

private:
    void addArchive();
    void addAppearance();
    void addNotes();
    void chooseDirectory();

    AppSettings& m_settings;
    NotesStore& m_store;
};

} // namespace quillary
