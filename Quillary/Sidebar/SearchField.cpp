#include "Quillary/Sidebar/SearchField.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QAction>
#include <QKeyEvent>
#include <QPainter>

namespace quillary {

SearchField::SearchField(NotesStore& store, QWidget* parent) : QLineEdit(parent), m_store(store) {
    setFrame(false);
    setPlaceholderText(tr("Cerca"));
    setAccessibleName(tr("Cerca"));
    addAction(symbolIcon(Symbol::search), QLineEdit::LeadingPosition)->setText(tr("Cerca"));
    QAction* const clearAction = addAction(symbolIcon(Symbol::clear), QLineEdit::TrailingPosition);
    clearAction->setToolTip(tr("Cancella"));
    clearAction->setText(tr("Cancella"));
    clearAction->setVisible(false);

    // The frame is drawn below the text, so the field itself stays clear.
    QPalette clearBase = palette();
    clearBase.setColor(QPalette::Base, Qt::transparent);
    setPalette(clearBase);
    setMinimumHeight(fontMetrics().height() + 12);

    connect(clearAction, &QAction::triggered, this, [this] {
        m_store.setSearchQuery({});
        setFocus(Qt::OtherFocusReason);
    });
    connect(this, &QLineEdit::textChanged, this, [this, clearAction](const QString& text) {
        clearAction->setVisible(!text.isEmpty());
        m_store.setSearchQuery(text);
    });
    connect(&store, &NotesStore::searchQueryChanged, this, [this] {
        if (text() != m_store.searchQuery()) {
            setText(m_store.searchQuery());
        }
    });
    connect(&store, &NotesStore::searchFocusTokenChanged, this, [this] {
        setFocus(Qt::ShortcutFocusReason);
        selectAll();
    });
}

void SearchField::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
        m_store.selectAdjacent(-1);
        break;
    case Qt::Key_Down:
        m_store.selectAdjacent(+1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_store.commitSearch();
        break;
    case Qt::Key_Escape:
        m_store.cancelSearch();
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void SearchField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double radius = 6;
    constexpr double ringWidth = 1.5;
    constexpr double inset = ringWidth / 2;
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Link), ringWidth) : QPen(Qt::NoPen));
    painter.setBrush(Theme::searchFill(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    painter.end();
    QLineEdit::paintEvent(event);
}

} // namespace quillary
