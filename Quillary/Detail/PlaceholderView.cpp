#include "Quillary/Detail/PlaceholderView.h"

#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/WrappingLabel.h"

#include <QLabel>
#include <QVBoxLayout>

namespace quillary {

PlaceholderView::PlaceholderView(QWidget* parent)
    : QWidget(parent), m_title(new QLabel(this)), m_detail(new WrappingLabel(this)), m_hints(new QLabel(this)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    QFont titleFont = Theme::sidebarTitle();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    m_title->setFont(titleFont);
    m_detail->setFont(Theme::sidebarTitle());
    m_hints->setFont(Theme::sidebarDetail());

    constexpr int widestText = 460;
    m_detail->setPreferredWidth(widestText);
    m_detail->setMaximumWidth(widestText);
    m_detail->setForegroundRole(QPalette::PlaceholderText);
    m_hints->setForegroundRole(QPalette::PlaceholderText);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 12, 24, 12);
    layout->setSpacing(8);
    layout->addStretch(2);
    for (QLabel* const label : {m_title, static_cast<QLabel*>(m_detail), m_hints}) {
        label->setAlignment(Qt::AlignCenter);
        label->setTextFormat(Qt::PlainText);
    }
    layout->addWidget(m_title);
    auto* const detailRow = new QHBoxLayout;
    detailRow->addWidget(m_detail);
    layout->addLayout(detailRow);
    layout->addWidget(m_hints);
    layout->addStretch(3);
}

void PlaceholderView::setTexts(const QString& title, const QString& detail, const QStringList& hints) {
    m_title->setText(title);
    m_detail->setText(detail);
    m_detail->setVisible(!detail.isEmpty());
    m_hints->setText(hints.join(u'\n'));
    m_hints->setVisible(!hints.isEmpty());
}

} // namespace quillary
