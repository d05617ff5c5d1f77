#include "Quillary/Sidebar/SidebarFooter.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QUrl>

namespace quillary {

SidebarFooter::SidebarFooter(NotesStore& store, QWidget* parent)
    : QWidget(parent), m_store(store), m_name(new QLabel(this)), m_count(new QLabel(this)) {
    auto* const openButton = new QToolButton(this);
    openButton->setAutoRaise(true);
    openButton->setIcon(symbolIcon(Symbol::folder));
    openButton->setToolTip(tr("Apri cartella delle note"));
    openButton->setAccessibleName(openButton->toolTip());
    connect(openButton, &QToolButton::clicked, this, [this] {
        const QByteArray path = m_store.fileStore().directory().bytes();
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(path)));
    });

    for (QLabel* const label : {m_name, m_count}) {
        label->setFont(Theme::sidebarDetail());
        label->setForegroundRole(QPalette::PlaceholderText);
        label->setTextFormat(Qt::PlainText);
    }
    m_name->setMinimumWidth(0);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 4, 14, 6);
    layout->setSpacing(4);
    layout->addWidget(openButton);
    layout->addWidget(m_name, 1);
    layout->addWidget(m_count);

    connect(&store, &NotesStore::notesChanged, this, &SidebarFooter::update);
    update();
}

void SidebarFooter::update() {
    const FilePath& directory = m_store.fileStore().directory();
    m_name->setText(FilePath::displayText(directory.fileName()));
    m_name->setToolTip(FilePath::displayText(directory.text()));
    const qsizetype count = m_store.notes().size();
    m_count->setText(count == 1 ? tr("1 nota") : tr("%L1 note").arg(count));
}

} // namespace quillary
