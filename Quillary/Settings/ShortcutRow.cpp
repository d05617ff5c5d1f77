#include "Quillary/Settings/ShortcutRow.h"

#include "Quillary/Settings/WarningLabel.h"
#include "Quillary/Theme/Symbol.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace quillary {

using namespace Qt::StringLiterals;

ShortcutRow::ShortcutRow(AppSettings* settings, KeyboardController* keyboard, ShortcutAction action, QWidget* parent)
    : QWidget(parent),
      m_settings(*settings),
      m_keyboard(*keyboard),
      m_action(action),
      m_message(new WarningLabel({}, this)),
      m_reset(new QToolButton(this)),
      m_button(new QPushButton(this)) {
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

    auto* const line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(new QLabel(displayName(action), this));
    line->addStretch(1);
    line->addWidget(m_reset);
    line->addWidget(m_button);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addLayout(line);
    layout->addWidget(m_message);

    connect(settings, &AppSettings::shortcutsChanged, this, &ShortcutRow::update);
    connect(keyboard, &KeyboardController::recordingActionChanged, this, &ShortcutRow::update);
    connect(keyboard, &KeyboardController::recordingMessageChanged, this, &ShortcutRow::update);
    update();
}

void ShortcutRow::update() {
    const bool isRecording = m_keyboard.recordingAction() == m_action;
    const std::optional<KeyShortcut> shortcut = m_settings.shortcut(m_action);
    const QString keys = shortcut ? shortcut->displayString() : tr("Nessuna");
    const QString text = isRecording ? tr("Premi i tasti…") : keys;
    // The key "&" is no mark of a mnemonic.
    m_button->setText(QString(text).replace(u'&', "&&"_L1));
    m_button->setChecked(isRecording);
    m_button->setAccessibleName(displayName(m_action) % u": "_s % text);
    m_reset->setVisible(!m_settings.isDefault(m_action));
    m_message->setText(isRecording ? m_keyboard.recordingMessage().value_or(QString()) : QString());
    m_message->setVisible(!m_message->text().isEmpty());
    m_button->setAccessibleDescription(m_message->text());
}

} // namespace quillary
