#include "Quillary/Detail/ZoomControl.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QToolButton>

#include <cmath>

namespace quillary {

using namespace Qt::StringLiterals;

ZoomControl::ZoomControl(AppSettings& settings, QWidget* parent)
    : QWidget(parent),
      m_settings(settings),
      m_smaller(makeButton(tr("Riduci testo (⌘−)"))),
      m_percentage(makeButton(tr("Dimensione predefinita (⌘0)"))),
      m_larger(makeButton(tr("Ingrandisci testo (⌘+)  ·  anche pizzicando il trackpad"))) {
    m_smaller->setIcon(symbolIcon(Symbol::remove));
    m_larger->setIcon(symbolIcon(Symbol::add));
    // Room for the longest text, so that the buttons beside it stay under the mouse.
    m_percentage->setFixedWidth(m_percentage->fontMetrics().horizontalAdvance(u"000%"_s) + 12);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (QToolButton* const button : {m_smaller, m_percentage, m_larger}) {
        layout->addWidget(button);
    }
    connect(m_smaller, &QToolButton::clicked, this, [this] { step(-1); });
    connect(m_larger, &QToolButton::clicked, this, [this] { step(+1); });
    connect(m_percentage, &QToolButton::clicked, this,
            [this] { m_settings.setFontSize(AppSettings::defaultFontSize); });
    connect(&settings, &AppSettings::fontSizeChanged, this, &ZoomControl::update);
    update();
}

QToolButton* ZoomControl::makeButton(const QString& help) {
    auto* const button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setFont(Theme::sidebarDetail());
    button->setIconSize({12, 12});
    button->setToolTip(help);
    button->setAccessibleName(help);
    return button;
}

void ZoomControl::step(int by) {
    m_settings.setFontSize(AppSettings::clampedFontSize(m_settings.fontSize() + by));
}

void ZoomControl::update() {
    const double size = m_settings.fontSize();
    m_smaller->setEnabled(size > AppSettings::smallestFontSize);
    m_larger->setEnabled(size < AppSettings::largestFontSize);
    m_percentage->setText(QString::number(std::lround(size / AppSettings::defaultFontSize * 100)) % u'%');
}

} // namespace quillary
