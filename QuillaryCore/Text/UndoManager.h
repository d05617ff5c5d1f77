#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace quillary {

class TextStorage;

/// How an edit came about, which decides what it joins with: runs of typing, of backspaces and of forward deletions
/// become one undo step each; anything else is a step of its own.
enum class EditKind {
    typing,
    deletingBackward,
    deletingForward,
    other,
};

/// The undo history of one text. All undoable edits pass through `replace`; it keeps what an edit removed and the
/// length that it inserted, so its memory grows with what was typed or deleted and never with the size of the note.
class UndoManager : public QObject {
    Q_OBJECT

public:
    /// The storage must outlive the manager.
    explicit UndoManager(TextStorage& storage, QObject* parent = nullptr);
    ~UndoManager() override;

    /// Replaces a range of the storage as one undoable edit. `before` is the selection that undo brings back.
    /// Whatever was undone and not redone is dropped.
    void replace(TextRange range, QStringView text, EditKind kind, TextSelection before);

    /// Edits between the two are one step; groups nest, an empty one leaves no step.
    void beginGroup();
    void endGroup();

    /// Makes the next edit start a step of its own, as after a caret motion or a visit to another note.
    void breakCoalescing();

    bool canUndo() const;
    bool canRedo() const;

    /// Takes back the last step and gives the selection to show; nothing if there is no step.
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
