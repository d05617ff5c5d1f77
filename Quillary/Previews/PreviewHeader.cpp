#include "Quillary/Previews/PreviewHeader.h"

#include "Quillary/Theme/ElidedLabel.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QBoxLayout>
#include <QPainter>

namespace quillary {

PreviewHeader::PreviewHeader(QWidget* parent)
    : QWidget(parent),
      m_summary(new ElidedLabel(this)),
      m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      m_controls(new QBoxLayout(QBoxLayout::LeftToRight)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_summary->setFont(Theme::sidebarDetail());
    m_summary->setForegroundRole(QPalette::PlaceholderText);
    constexpr int spacing = 8;
    m_layout->setContentsMargins(18, 6, 12, 7);
    m_layout->setSpacing(spacing);
    m_layout->addWidget(m_summary, 1);
    m_layout->addLayout(m_controls);
    m_controls->setSpacing(spacing);
    m_controls->addStretch();
}

QString PreviewHeader::summary() const {
    return m_summary->text();
}

void PreviewHeader::setSummary(const QString& summary) {
    m_summary->setText(summary);
    // In a very narrow window the text has no room for its end.
    m_summary->setToolTip(summary.toHtmlEscaped());
    arrange();
}

void PreviewHeader::addControl(QWidget* control) {
    control->setFont(Theme::sidebarDetail());
    // A click leaves the keys to what is previewed.
    control->setFocusPolicy(Qt::TabFocus);
    m_controls->addWidget(control);
    arrange();
}

void PreviewHeader::arrange() {
    const QMargins margins = m_layout->contentsMargins();
    const int needed = margins.left() + m_summary->sizeHint().width() + m_layout->spacing() +
                       m_controls->sizeHint().width() + margins.right();
    m_layout->setDirection(width() < needed ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void PreviewHeader::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void PreviewHeader::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    QPainter painter(this);
    const double line = Hairline::thicknessOn(*this);
    painter.fillRect(QRectF(0, height() - line, width(), line), Theme::separator(palette()));
}

} // namespace quillary
