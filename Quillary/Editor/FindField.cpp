#include "Quillary/Editor/FindField.h"

#include "Quillary/Theme/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace quillary {

FindField::FindField(const QString& placeholder, Symbol symbol, QWidget* parent) : QLineEdit(parent) {
    constexpr int smallestWidth = 50;
    constexpr int space = 10;
    setFrame(false);
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    addAction(symbolIcon(symbol), QLineEdit::LeadingPosition)->setText(placeholder);
    setMinimumWidth(qRound(smallestWidth * Theme::textScale()));
    setMinimumHeight(fontMetrics().height() + space);

    // The frame is drawn below the text, so the field itself stays clear.
    QPalette clearBase = palette();
    clearBase.setColor(QPalette::Base, Qt::transparent);
    setPalette(clearBase);
}

void FindField::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    if (m_submitsBackwards && event->modifiers().testFlag(Qt::ShiftModifier)) {
        Q_EMIT submittedBackwards();
    } else {
        Q_EMIT submitted();
    }
}

void FindField::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? palette().color(QPalette::Link) : Theme::separator(palette()));
    painter.setBrush(Theme::searchFill(palette()));
    constexpr double radius = 6;
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.end();
    QLineEdit::paintEvent(event);
}

} // namespace quillary
