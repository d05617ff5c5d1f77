#include "Quillary/Previews/PreviewHeader.h"

#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace quillary {

PreviewHeader::PreviewHeader(QWidget* parent)
    : QWidget(parent), m_summary(new QLabel(this)), m_layout(new QHBoxLayout(this)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    m_summary->setFont(Theme::sidebarDetail());
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setForegroundRole(QPalette::PlaceholderText);
    m_summary->setMinimumWidth(0);
    m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_layout->setContentsMargins(18, 6, 12, 7);
    m_layout->setSpacing(8);
    m_layout->addWidget(m_summary, 1);
}

QString PreviewHeader::summary() const {
    return m_summary->text();
}

void PreviewHeader::setSummary(const QString& summary) {
    m_summary->setText(summary);
    // In a narrow window the text is cut off.
    m_summary->setToolTip(summary.toHtmlEscaped());
}

void PreviewHeader::addControl(QWidget* control) {
    control->setFont(Theme::sidebarDetail());
    m_layout->addWidget(control);
}

void PreviewHeader::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    QPainter painter(this);
    const double line = Hairline::thicknessOn(*this);
    painter.fillRect(QRectF(0, height() - line, width(), line), Theme::separator(palette()));
}

} // namespace quillary
