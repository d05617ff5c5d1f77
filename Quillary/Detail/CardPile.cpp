#include "Quillary/Detail/CardPile.h"

#include "Quillary/Detail/NoteCard.h"

#include <algorithm>

namespace quillary {

namespace {

constexpr qsizetype mostCards = 3;
/// How much narrower, on either side, a card is than the one before it.
constexpr int narrowing = 14;

} // namespace

CardPile::CardPile(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CardPile::setItems(const QList<NoteItemPtr>& items) {
    const qsizetype count = std::min(items.size(), mostCards);
    while (m_cards.size() > count) {
        delete m_cards.takeLast();
    }
    while (m_cards.size() < count) {
        auto* const card = new NoteCard(this);
        card->lower();
        card->show();
        m_cards.append(card);
    }
    for (qsizetype index = 0; index < count; ++index) {
        m_cards[index]->setItem(*items[index]);
    }
    arrange();
    updateGeometry();
}

QSize CardPile::sizeHint() const {
    if (m_cards.isEmpty()) {
        return {};
    }
    const NoteCard* const front = m_cards.first();
    const int behind = static_cast<int>(m_cards.size() - 1) * front->headerHeight();
    return {front->maximumWidth(), front->maximumHeight() + behind};
}

QSize CardPile::minimumSizeHint() const {
    return m_cards.isEmpty() ? QSize() : QSize(m_cards.first()->minimumWidth(), sizeHint().height());
}

void CardPile::resizeEvent(QResizeEvent*) {
    arrange();
}

void CardPile::arrange() {
    for (qsizetype index = 0; index < m_cards.size(); ++index) {
        NoteCard* const card = m_cards[index];
        const int depth = static_cast<int>(index);
        const int inFront = static_cast<int>(m_cards.size()) - 1 - depth;
        const int cardWidth = std::min(width(), card->maximumWidth()) - 2 * narrowing * depth;
        card->setGeometry((width() - cardWidth) / 2, inFront * card->headerHeight(), cardWidth, card->maximumHeight());
    }
}

} // namespace quillary
