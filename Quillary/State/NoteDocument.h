#pragma once

#include "Quillary/State/EditorStyle.h"
#include "Quillary/State/NoteTextView.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QPointF>
#include <QString>

#include <memory>
#include <optional>

namespace quillary {

class TextStorage;
class UndoManager;

/// The text of one note in memory, with its undo history and what the editor remembers of it. It outlives the view
/// that shows it. A document that nobody edits or shows costs its text and little more.
class NoteDocument {
public:
    explicit NoteDocument(QString text);
    ~NoteDocument();
    NoteDocument(const NoteDocument&) = delete;
    NoteDocument& operator=(const NoteDocument&) = delete;

    /// The buffer that edits go to; the same one for the document's whole life, made on first use.
    TextStorage& storage();

    /// The undo history; the same one for the document's whole life, made on first use.
    UndoManager& undoManager();

    /// The length of the text in UTF-16 units.
    qsizetype length() const;

    /// The whole text. Free of cost for a text that was never edited, one copy for any other.
    QString text() const;

    /// The text of a range within the document.
    QString text(TextRange range) const;

    /// Whether the text equals another, unit by unit.
    bool equals(QStringView other) const;

    /// Replaces the text by one from outside, as after a change on disk: it can't be undone, nor can anything before
    /// it, and the view styles and colours it anew.
    void replaceAll(const QString& text);

    /// The place that the editor was last scrolled to.
    QPointF scrollOrigin;

    /// The style that the text was last painted in, if it was.
    std::optional<EditorStyle> appliedStyle;

    /// The view that shows this document, or last did; null if there is none.
    WeakPointer<NoteTextView> editorView;

private:
    QString m_text;
    std::unique_ptr<TextStorage> m_storage;
    std::unique_ptr<UndoManager> m_undoManager;
};

} // namespace quillary
