#include "Quillary/Settings/ShortcutRow.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace quillary {

using namespace Qt::StringLiterals;

ShortcutRow::ShortcutRow(AppSettings* settings, KeyboardController* keyboard, ShortcutAction action, QWidget* parent)
    : QWidget(parent),
      m_settings(*settings),
      m_keyboard(*keyboard),
      m_action(action),
      m_message(new QLabel(this)),
      m_reset(new QToolButton(this)),
      m_button(new QPushButton(this)) {
    m_message->setFont(Theme::font(12));
    m_message->setTextFormat(Qt::PlainText);

    m_reset->setAutoRaise(true);
    m_reset->setIcon(symbolIcon(Symbol::refresh));
    m_reset->setToolTip(tr("Ripristina predefinita (") % defaultShortcut(action).displayString() % u")"_s);
    m_reset->setAccessibleName(m_reset->toolTip());
    QSizePolicy keepsItsPlace = m_reset->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_reset->setSizePolicy(keepsItsPlace);
    connect(m_reset, &QToolButton::clicked, settings, [this] { m_settings.resetShortcut(m_action); });

    m_button->setCheckable(true);
    m_button->setAutoDefault(false);
    m_button->setMinimumWidth(150);
    connect(m_button, &QPushButton::clicked, keyboard, [this] { m_keyboard.toggleRecording(m_action); });

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(new QLabel(displayName(action), this));
    layout->addStretch(1);
    layout->addWidget(m_message);
    layout->addWidget(m_reset);
    layout->addWidget(m_button);

    connect(settings, &AppSettings::shortcutsChanged, this, &ShortcutRow::update);
    connect(keyboard, &KeyboardController::recordingActionChanged, this, &ShortcutRow::update);
    connect(keyboard, &KeyboardController::recordingMessageChanged, this, &ShortcutRow::update);
    update();
}

void ShortcutRow::update() {
    const bool isRecording = m_keyboard.recordingAction() == m_action;
    const std::optional<KeyShortcut> shortcut = m_settings.shortcut(m_action);
    const QString text = shortcut ? shortcut->displayString() : tr("Nessuna");
    m_button->setText(isRecording ? tr("Premi i tasti…") : text);
    m_button->setChecked(isRecording);
    m_button->setAccessibleName(displayName(m_action) % u": "_s % m_button->text());
    m_reset->setVisible(!m_settings.isDefault(m_action));
    m_message->setText(isRecording ? m_keyboard.recordingMessage().value_or(QString()) : QString());
    m_button->setAccessibleDescription(m_message->text());
}

} // namespace quillary
