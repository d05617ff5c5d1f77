#include "Quillary/State/NoteDocument.h"

#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <utility>

namespace quillary {

NoteDocument::NoteDocument(QString text) : m_text(std::move(text)) {}

NoteDocument::~NoteDocument() = default;

TextStorage& NoteDocument::storage() {
    if (!m_storage) {
        m_storage = std::make_unique<TextStorage>(std::exchange(m_text, {}));
    }
    return *m_storage;
}

UndoManager& NoteDocument::undoManager() {
    if (!m_undoManager) {
        m_undoManager = std::make_unique<UndoManager>(storage());
    }
    return *m_undoManager;
}

qsizetype NoteDocument::length() const {
    return m_storage ? m_storage->length() : m_text.size();
}

QString NoteDocument::text() const {
    return m_storage ? m_storage->text() : m_text;
}

QString NoteDocument::text(TextRange range) const {
    return m_storage ? m_storage->text(range) : m_text.mid(range.location, range.length);
}

bool NoteDocument::equals(QStringView other) const {
    return m_storage ? m_storage->equals(other) : m_text == other;
}

void NoteDocument::replaceAll(const QString& text) {
    if (m_storage) {
        m_storage->beginEditing();
        m_storage->replace({0, m_storage->length()}, text);
        m_storage->endEditing();
    } else {
        m_text = text;
    }
    appliedStyle.reset();
    if (NoteTextView* const view = editorView) {
        view->resetHighlightedLanguage();
    }
    if (m_undoManager) {
        m_undoManager->removeAllActions();
    }
}

} // namespace quillary
