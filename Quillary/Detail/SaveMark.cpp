#include "Quillary/Detail/SaveMark.h"

#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

SaveMark::SaveMark(QWidget* parent) : QWidget(parent) {
    setFixedSize(5, 5);
}

void SaveMark::setDirty(bool isDirty) {
    if (m_isDirty != isDirty) {
        m_isDirty = isDirty;
        update();
    }
}

void SaveMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_isDirty ? Theme::accentDot : Theme::diffAdded.in(palette()));
    painter.drawEllipse(rect());
}

} // namespace quillary
