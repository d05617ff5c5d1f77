#include "Quillary/Sidebar/SidebarView.h"

#include "Quillary/Sidebar/SearchField.h"
#include "Quillary/Sidebar/SidebarFooter.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace quillary {

SidebarView::SidebarView(NotesStore& store, QAction* newNote, QWidget* parent) : QWidget(parent) {
    // In the order in which Tab goes through them.
    auto* const search = new SearchField(store, this);
    auto* const newNoteButton = new QToolButton(this);
    newNoteButton->setAutoRaise(true);
    newNoteButton->setDefaultAction(newNote);
    newNoteButton->setToolButtonStyle(Qt::ToolButtonIconOnly);
    newNoteButton->setIconSize({18, 18});
    newNoteButton->setAccessibleName(newNote->toolTip());

    auto* const top = new QHBoxLayout;
    // As high as the toolbar beside it, with which it lies on one line.
    top->setContentsMargins(10, 6, 8, 7);
    top->setSpacing(6);
    top->addWidget(search, 1);
    top->addWidget(newNoteButton);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(top);
    layout->addWidget(new SidebarList(store, this), 1);
    layout->addWidget(new Hairline(Qt::Horizontal, this));
    layout->addWidget(new SidebarFooter(store, this));
}

void SidebarView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::sidebarBackground.in(palette()));
}

} // namespace quillary
