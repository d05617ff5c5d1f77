#include "Quillary/Detail/TitleButton.h"

#include "Quillary/Theme/Theme.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

namespace quillary {

namespace {

constexpr int sideMargin = 8;
constexpr int edgeMargin = 4;

} // namespace

TitleButton::TitleButton(QWidget* parent) : QAbstractButton(parent) {
    QFont font = Theme::sidebarTitle();
    font.setWeight(QFont::DemiBold);
    setFont(font);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::IBeamCursor);
}

void TitleButton::setTitle(const QString& title) {
    m_title = title;
    setAccessibleName(title);
    updateGeometry();
    update();
}

QSize TitleButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(m_title) + 2 * sideMargin + 1, fontMetrics().height() + 2 * edgeMargin};
}

bool TitleButton::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave || event->type() == QEvent::Enter ||
        event->type() == QEvent::Leave) {
        update();
    }
    return QAbstractButton::event(event);
}

void TitleButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void TitleButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || hasFocus()) {
        constexpr double radius = 5;
        painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Link), 1) : QPen(Qt::NoPen));
        painter.setBrush(Theme::searchFill(palette()));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
    const QRect room = rect().adjusted(sideMargin, 0, -sideMargin, 0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(room, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_title, Qt::ElideRight, room.width()));
}

} // namespace quillary
