#pragma once

#include "Quillary/State/WeakPointer.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QString>

namespace quillary {

class NoteDocument;

/// What the state knows of the view that shows a document's text.
class NoteTextView : public WeakTarget {
public:
    virtual ~NoteTextView() = default;

    /// The document on show; null in the placeholder.
    virtual NoteDocument* shownDocument() const = 0;

    virtual TextSelection selection() const = 0;

    /// Replaces a range as an edit of the user's would, in one undoable step and with all that follows an edit. False,
    /// and nothing happens, if the view refuses.
    virtual bool replaceText(TextRange range, const QString& text) = 0;

    /// Forgets which language the text is coloured for, so that the next update colours it anew.
    virtual void resetHighlightedLanguage() = 0;
};

} // namespace quillary
