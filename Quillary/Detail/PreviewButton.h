#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QToolButton>

namespace quillary {

/// Switches the note on show between the editor and its preview.
class PreviewButton : public QToolButton {
    Q_OBJECT

public:
    PreviewButton(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);

    /// Shows a note, or none, as it is now.
    void setItem(const NoteItemPtr& item);

private:
    void update();
    QString previewHelp() const;

    AppSettings& m_settings;
    NoteItemPtr m_item;
};

} // namespace quillary
