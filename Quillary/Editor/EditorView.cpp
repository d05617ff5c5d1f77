#include "Quillary/Editor/EditorView.h"

#include "Quillary/Editor/EditorCoordinator.h"
#include "Quillary/Editor/FindBar.h"

#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillary {

EditorView::EditorView(NotesStore* store, AppSettings* settings, FindController* find, QWidget* parent)
    : QWidget(parent),
      m_textViews(new QStackedWidget(this)),
      m_coordinator(std::make_unique<EditorCoordinator>(*store, *settings, *find, *m_textViews)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new FindBar(*find, this));
    layout->addWidget(m_textViews, 1);
}

EditorView::~EditorView() = default;

void EditorView::setActive(bool isActive) {
    m_coordinator->setActive(isActive);
}

ZoomableTextView* EditorView::textView() const {
    return m_coordinator->textView();
}

} // namespace quillary
