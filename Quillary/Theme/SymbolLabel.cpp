#include "Quillary/Theme/SymbolLabel.h"

#include <QPainter>
#include <QPixmap>

namespace quillary {

void SymbolLabel::setSymbol(Symbol symbol, int side) {
    m_symbol = symbol;
    // An empty picture makes the room, and an image of this for screen readers.
    QPixmap room(side, side);
    room.fill(Qt::transparent);
    setPixmap(room);
    update();
}

void SymbolLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawSymbol(painter, m_symbol, contentsRect(), palette().color(foregroundRole()));
}

} // namespace quillary
