#pragma once

#include "QuillaryCore/Text/TextRange.h"
#include "QuillaryCore/Text/TextReplacement.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <span>

namespace quillary {

class TextStorage;

/// How an edit came about, which decides what it joins with: runs of typing, of backspaces and of forward deletions
/// become one undo step each; anything else, the deletion of a word for instance, is a step of its own.
enum class EditKind {
    typing,
    deletingBackward,
    deletingForward,
    other,
};

/// The undo history of one text. All undoable edits pass through `replace` and `replaceAll`; it keeps what an edit
/// removed and the length that it inserted, so its memory grows with what was typed or deleted and never with the size
/// of the note. A history does not outlive a change of the text by anyone else.
///
/// As in Qt's own documents an edit joins the step before it if it is of the same kind and begins where that one left
/// off, and a line's end never joins: Enter is a step of its own, and so is the deletion of a line's end.
class UndoManager : public QObject {
    Q_OBJECT

public:
    /// The storage must outlive the manager.
    explicit UndoManager(TextStorage& storage, QObject* parent = nullptr);
    ~UndoManager() override;

    /// Replaces a range of the storage as one undoable edit. `before` is the selection that undo brings back.
    /// Whatever was undone and not redone is dropped. What changes nothing is no edit.
    void replace(TextRange range, QStringView text, EditKind kind, TextSelection before);

    /// Replaces disjoint ranges, in ascending order and all given in the unchanged text, as one edit, which the storage
    /// announces as one change. Gives `before` as it lies in the changed text, which is what redo shows.
    TextSelection replaceAll(std::span<const TextReplacement> replacements, TextSelection before);

    /// Edits between the two are one step; groups nest, an empty one leaves no step.
    void beginGroup();
    void endGroup();

    /// Makes the next edit start a step of its own, as after a caret motion or a visit to another note.
    void breakCoalescing();

    /// Whether there is a step to take back, or to do again. Neither while a group is open.
    bool canUndo() const;
    bool canRedo() const;

    /// Takes back the last step and gives the selection to show; nothing if there is no step. The storage announces
    /// one change, whatever the step holds.
    std::optional<TextSelection> undo();

    /// Does the last undone step again and gives the selection to show.
    std::optional<TextSelection> redo();

    /// Forgets everything, as after a replacement of the text from outside.
    void removeAllActions();

Q_SIGNALS:
    /// When canUndo or canRedo may have a new answer.
    void changed();

private:
    class History;
    std::unique_ptr<History> m_history;
};

} // namespace quillary
