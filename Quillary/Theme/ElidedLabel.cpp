#include "Quillary/Theme/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

namespace quillary {

using namespace Qt::StringLiterals;

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const {
    const int margins = contentsMargins().left() + contentsMargins().right();
    return {fontMetrics().horizontalAdvance(u"…"_s) + margins, sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect room = contentsRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, room.width());
    style()->drawItemText(&painter, room, static_cast<int>(alignment()), palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace quillary
