#include "Quillary/Detail/NoteCard.h"

#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/Sidebar/SidebarModel.h"
#include "Quillary/Theme/ElidedLabel.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/WrappingLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace quillary {

namespace {

constexpr int padding = 12;
// In the desktop's ordinary size of texts: four lines between the title and the count.
constexpr double cardHeight = 148;
constexpr double cardWidth = 250;
constexpr double radius = 9;

} // namespace

NoteCard::NoteCard(QWidget* parent)
    : QFrame(parent),
      m_label(new QLabel(this)),
      m_title(new ElidedLabel(this)),
      m_badge(new QLabel(this)),
      m_snippet(new WrappingLabel(this)),
      m_count(new ElidedLabel(this)) {
    setFixedHeight(static_cast<int>(std::lround(cardHeight * Theme::textScale())));
    setMinimumWidth(96);
    setMaximumWidth(static_cast<int>(std::lround(cardWidth * Theme::textScale())));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    // Large and bold, so that the tint is legible on the card.
    m_label->setFont(Theme::font(19, QFont::Bold));
    m_label->setTextFormat(Qt::PlainText);
    m_title->setFont(Theme::font(13, QFont::DemiBold));
    m_snippet->setFont(Theme::sidebarDetail());
    m_snippet->setForegroundRole(QPalette::PlaceholderText);
    m_snippet->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_snippet->setMaximumLines(4);
    m_count->setFont(Theme::sidebarDetail());
    m_count->setForegroundRole(QPalette::PlaceholderText);
    m_badge->setFont(Theme::font(10.5, QFont::DemiBold));
    m_badge->setTextFormat(Qt::PlainText);
    m_badge->setForegroundRole(QPalette::PlaceholderText);

    auto* const header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(m_label);
    header->addWidget(m_title, 1);
    auto* const footer = new QHBoxLayout;
    footer->setSpacing(8);
    footer->addWidget(m_count, 1);
    footer->addWidget(m_badge);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding + 2, padding, padding + 2, padding - 2);
    layout->setSpacing(6);
    layout->addLayout(header);
    layout->addWidget(m_snippet, 1);
    layout->addLayout(footer);
}

void NoteCard::setItem(const NoteItem& item, const QString& label, std::optional<AdaptiveColor> tint) {
    const QString title = shownName(item.title());
    m_tint = tint;
    m_label->setText(label);
    m_label->setVisible(!label.isEmpty());
    m_title->setText(title);
    m_snippet->setText(SidebarModel::excerpt(item));
    m_count->setText(tr("%1 caratteri").arg(item.characterCount()));
    m_badge->setText(badge(item.format()));
    setAccessibleName(label.isEmpty() ? title : QString(label % u' ' % title));
    applyTint();
    update();
}

int NoteCard::headerHeight() const {
    return m_title->sizeHint().height() + padding + padding / 2;
}

void NoteCard::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        applyTint();
    }
}

void NoteCard::applyTint() {
    if (m_tint) {
        QPalette tinted = m_label->palette();
        tinted.setColor(m_label->foregroundRole(), m_tint->in(palette()));
        m_label->setPalette(tinted);
    }
}

void NoteCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_tint ? m_tint->in(palette()) : palette().color(QPalette::Mid), 1));
    painter.setBrush(palette().color(QPalette::AlternateBase));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace quillary
