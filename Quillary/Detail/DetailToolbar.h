#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QWidget>

#include <optional>

namespace quillary {

class CopyContentButton;
class EditableTitle;
class ElidedLabel;
class FormatMenuButton;
class PreviewButton;
class SoloButton;
class SoloController;
class SymbolLabel;

/// The strip above the detail pane: the title of the note, or of a multiple selection, and the note's commands.
class DetailToolbar : public QWidget {
    Q_OBJECT

public:
    /// All must outlive it.
    DetailToolbar(NotesStore& store, AppSettings& settings, SoloController& solo, QWidget* parent = nullptr);

    /// Follows a note, or shows the title of a multiple selection, or neither.
    void follow(const NoteItemPtr& item, const std::optional<QString>& selectionTitle);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void update();

    NoteItemPtr m_item;
    EditableTitle* m_title;
    SymbolLabel* m_selectionImage;
    ElidedLabel* m_selectionTitle;
    FormatMenuButton* m_format;
    PreviewButton* m_preview;
    SoloButton* m_solo;
    CopyContentButton* m_copy;
    NotesStore& m_store;
};

} // namespace quillary
