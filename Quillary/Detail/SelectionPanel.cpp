#include "Quillary/Detail/SelectionPanel.h"

#include "Quillary/Detail/CardPile.h"
#include "Quillary/Detail/NoteCard.h"
#include "Quillary/Sidebar/MoveToFolderMenuItems.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/Theme/PaddedButton.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/WrappingLabel.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostTitles = 6;
constexpr int widestText = 560;

QPushButton* makeButton(const QString& text, QWidget* parent) {
    auto* const button = new PaddedButton(text, parent);
    button->setAutoDefault(true);
    return button;
}

} // namespace

SelectionPanel::SelectionPanel(NotesStore& store, QWidget* parent) : QScrollArea(parent), m_store(store) {
    setAccessibleName(tr("Note selezionate"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);

    auto* const content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    content->setAutoFillBackground(true);
    m_hints = new WrappingLabel(content);
    m_hints->setFont(Theme::sidebarDetail());
    m_hints->setForegroundRole(QPalette::PlaceholderText);
    m_hints->setAlignment(Qt::AlignCenter);
    m_hints->setPreferredWidth(widestText);

    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(18);
    layout->addStretch(2);
    layout->addWidget(makePair());
    layout->addWidget(makeStack());
    layout->addLayout(makeActions());
    layout->addWidget(m_hints);
    layout->addStretch(3);
    setWidget(content);

    connect(&store, &NotesStore::noteChanged, this, [this](NoteItem* note, NoteField field) {
        const bool shows = field == NoteField::url || field == NoteField::snippet ||
                           field == NoteField::characterCount || field == NoteField::document;
        if (shows && m_items.first(std::min(m_items.size(), mostTitles)).contains(note->shared_from_this())) {
            update();
        }
    });
}

QWidget* SelectionPanel::makePair() {
    m_pair = new QWidget;
    m_first = new NoteCard(m_pair);
    m_second = new NoteCard(m_pair);
    QPushButton* const swap = makeButton(tr("Scambia A e B"), m_pair);
    swap->setIcon(symbolIcon(Symbol::swap));
    connect(swap, &QPushButton::clicked, &m_store, &NotesStore::swapComparison);

    auto* const cards = new QHBoxLayout;
    cards->setSpacing(16);
    cards->addStretch(1);
    cards->addWidget(m_first, 100);
    cards->addWidget(m_second, 100);
    cards->addStretch(1);
    auto* const layout = new QVBoxLayout(m_pair);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addLayout(cards);
    layout->addWidget(swap, 0, Qt::AlignHCenter);
    return m_pair;
}

QWidget* SelectionPanel::makeStack() {
    m_stack = new QWidget;
    m_pile = new CardPile(m_stack);
    m_number = new QLabel(m_stack);
    m_number->setFont(Theme::font(16, QFont::DemiBold));
    m_number->setTextFormat(Qt::PlainText);
    m_number->setAlignment(Qt::AlignCenter);
    m_titles = new WrappingLabel(m_stack);
    m_titles->setAlignment(Qt::AlignCenter);
    m_titles->setForegroundRole(QPalette::PlaceholderText);
    m_titles->setPreferredWidth(widestText);
    m_titles->setMaximumLines(3);

    auto* const layout = new QVBoxLayout(m_stack);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_pile);
    layout->addSpacing(8);
    layout->addWidget(m_number);
    layout->addWidget(m_titles);
    return m_stack;
}

QBoxLayout* SelectionPanel::makeActions() {
    m_cancel = makeButton(tr("Annulla"), widget());
    m_move = makeButton(tr("Sposta in"), widget());
    m_newFolder = makeButton(tr("Nuova cartella"), widget());
    m_compare = makeButton(tr("Confronta differenze"), widget());
    m_moveMenu = new QMenu(m_move);
    m_move->setMenu(m_moveMenu);

    connect(m_cancel, &QPushButton::clicked, &m_store, &NotesStore::clearMultiSelection);
    connect(m_moveMenu, &QMenu::aboutToShow, this, &SelectionPanel::fillMoveMenu);
    connect(m_newFolder, &QPushButton::clicked, this, [this] { m_store.createFolder(m_store.actionTargets()); });
    connect(m_compare, &QPushButton::clicked, &m_store, &NotesStore::showDiff);

    m_actions = new QHBoxLayout;
    m_actions->setSpacing(8);
    m_actions->addStretch();
    for (QPushButton* const button : {m_cancel, m_move, m_newFolder, m_compare}) {
        m_actions->addWidget(button);
    }
    m_actions->addStretch();
    return m_actions;
}

void SelectionPanel::setItems(const QList<NoteItemPtr>& items) {
    m_items = items;
    m_pair->setVisible(isPair());
    m_stack->setVisible(!isPair());
    m_compare->setVisible(isPair());
    m_compare->setDefault(isPair());
    m_newFolder->setDefault(!isPair());
    m_hints->setText(isPair()
                         ? tr("↩ confronta  ·  ⌘G nuova cartella  ·  ⌘-clic per cambiare selezione  ·  ⎋ annulla")
                         : tr("↩ oppure ⌘G nuova cartella con le note  ·  trascinale su una cartella  ·  ⎋ annulla"));
    update();
    arrange();
}

/// No proxy, which the Tab key would take for a stop, and pass by all before it.
void SelectionPanel::focusInEvent(QFocusEvent* event) {
    (isPair() ? m_compare : m_newFolder)->setFocus(event->reason());
}

void SelectionPanel::update() {
    if (isPair()) {
        m_first->setItem(*m_items.first(), u"A"_s, Theme::diffRemoved);
        m_second->setItem(*m_items.last(), u"B"_s, Theme::diffAdded);
        return;
    }
    m_pile->setItems(m_items);
    m_number->setText(tr("%1 note selezionate").arg(m_items.size()));
    m_titles->setText(titlesLine());
}

QString SelectionPanel::titlesLine() const {
    QStringList titles;
    for (const NoteItemPtr& item : m_items.first(std::min(m_items.size(), mostTitles))) {
        titles.append(shownName(item->title()));
    }
    if (m_items.size() > mostTitles) {
        titles.append(u"…"_s);
    }
    return titles.join(u" · "_s);
}

void SelectionPanel::fillMoveMenu() {
    m_moveMenu->clear();
    MoveToFolderMenuItems{m_store, m_items}.addTo(*m_moveMenu);
}

bool SelectionPanel::performKey(int key) {
    switch (key) {
    case Qt::Key_Escape:
        m_cancel->click();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        (isPair() ? m_compare : m_newFolder)->click();
        return true;
    default:
        return false;
    }
}

void SelectionPanel::keyPressEvent(QKeyEvent* event) {
    if (!performKey(event->key())) {
        QScrollArea::keyPressEvent(event);
    }
}

void SelectionPanel::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    arrange();
}

/// Puts the actions below each other where they don't fit beside each other.
void SelectionPanel::arrange() {
    int width = 0;
    for (const QPushButton* const button : {m_cancel, m_move, m_newFolder, m_compare}) {
        width += button->isHidden() ? 0 : button->sizeHint().width() + m_actions->spacing();
    }
    const QMargins margins = widget()->layout()->contentsMargins();
    const bool fits = width <= viewport()->width() - margins.left() - margins.right();
    m_actions->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

QSize SelectionPanel::viewportSizeHint() const {
    return {};
}

} // namespace quillary
