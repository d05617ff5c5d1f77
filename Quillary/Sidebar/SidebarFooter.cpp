#include "Quillary/Sidebar/SidebarFooter.h"

#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/ToolTip.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace quillary {

SidebarFooter::SidebarFooter(NotesStore& store, QWidget* parent)
    : QWidget(parent), m_store(store), m_name(new QLabel(this)), m_count(new QLabel(this)) {
    auto* const openButton = new QToolButton(this);
    openButton->setAutoRaise(true);
    openButton->setIcon(symbolIcon(Symbol::folder));
    openButton->setToolTip(tr("Apri cartella delle note"));
    openButton->setAccessibleName(openButton->toolTip());
    connect(openButton, &QToolButton::clicked, this, [this] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->open(m_store.fileStore().directory());
        }
    });
    auto* const newFolderButton = new QToolButton(this);
    newFolderButton->setAutoRaise(true);
    newFolderButton->setIcon(symbolIcon(Symbol::newFolder));
    newFolderButton->setToolTip(tr("Nuova cartella (⌥⌘N)"));
    newFolderButton->setAccessibleName(newFolderButton->toolTip());
    connect(newFolderButton, &QToolButton::clicked, this, [this] { m_store.createFolder({}); });

    for (QLabel* const label : {m_name, m_count}) {
        label->setFont(Theme::sidebarDetail());
        label->setForegroundRole(QPalette::PlaceholderText);
        label->setTextFormat(Qt::PlainText);
    }
    m_name->setMinimumWidth(0);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* const layout = new QHBoxLayout(this);
    // As high as the status bar beside it, with which it lies on one line.
    layout->setContentsMargins(10, 1, 8, 3);
    layout->setSpacing(4);
    layout->addWidget(openButton);
    layout->addWidget(m_name, 1);
    layout->addWidget(m_count);
    layout->addWidget(newFolderButton);

    connect(&store, &NotesStore::notesChanged, this, &SidebarFooter::update);
    // One empty directory after another changes no notes.
    connect(&store.settings(), &AppSettings::notesDirectoryChanged, this, &SidebarFooter::update);
    update();
}

void SidebarFooter::update() {
    const FilePath& directory = m_store.settings().notesDirectory();
    m_name->setText(FilePath::displayText(directory.fileName()));
    m_name->setToolTip(plainToolTip(FilePath::displayText(directory.text())));
    const qsizetype count = m_store.notes().size();
    m_count->setText(count == 1 ? tr("1 nota") : tr("%1 note").arg(count));
}

} // namespace quillary
