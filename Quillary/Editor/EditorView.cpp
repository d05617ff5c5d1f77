#include "Quillary/Editor/EditorView.h"

#include "Quillary/Editor/EditorCoordinator.h"

namespace quillary {

EditorView::EditorView(NotesStore* store, AppSettings* settings, QWidget* parent)
    : QStackedWidget(parent), m_coordinator(std::make_unique<EditorCoordinator>(*store, *settings, *this)) {}

EditorView::~EditorView() = default;

void EditorView::setActive(bool isActive) {
    m_coordinator->setActive(isActive);
}

ZoomableTextView* EditorView::textView() const {
    return m_coordinator->textView();
}

} // namespace quillary
