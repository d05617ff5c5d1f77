#include "Quillary/Dialogs/ConfirmationDialog.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/PaddedButton.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/WrappingLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The results of `QDialog::done`: 0 cancels, and what is above is an answer.
constexpr int firstAnswer = 1;

} // namespace

ConfirmationDialog::ConfirmationDialog(QWidget* window)
    : QDialog(window, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint),
      m_title(new WrappingLabel(this)),
      m_message(new WrappingLabel(this)),
      m_buttons(new QHBoxLayout),
      m_cancel(new PaddedButton(tr("Annulla"), this)) {
    setWindowTitle(u"Quillary"_s);
    setWindowModality(Qt::WindowModal);
    constexpr int textWidth = 400;
    m_title->setFont(Theme::font(14, QFont::DemiBold));
    for (WrappingLabel* const label : {m_title, m_message}) {
        label->setPreferredWidth(textWidth);
        label->setMinimumWidth(textWidth);
    }

    m_buttons->setSpacing(8);
    m_buttons->addStretch();
    m_buttons->addWidget(m_cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 16);
    layout->setSpacing(8);
    layout->addWidget(m_title);
    layout->addWidget(m_message);
    layout->addSpacing(8);
    layout->addLayout(m_buttons);

    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::finished, this, [this](int result) {
        if (result >= firstAnswer) {
            Q_EMIT answered(result - firstAnswer);
        } else {
            Q_EMIT cancelled();
        }
    });
}

void ConfirmationDialog::setTexts(const QString& title, const QString& message) {
    m_title->setText(title);
    m_message->setText(message);
    setAccessibleName(title);
    setAccessibleDescription(message);
    adjustHeight();
}

void ConfirmationDialog::setAnswers(const QList<Answer>& answers, int defaultAnswer) {
    qDeleteAll(std::exchange(m_answers, {}));
    m_destructive.clear();
    for (const Answer& answer : answers) {
        auto* const button = new PaddedButton(answer.text, this);
        const int result = firstAnswer + static_cast<int>(m_answers.size());
        connect(button, &QPushButton::clicked, this, [this, result] { done(result); });
        // After the stretch and the answers before, and before "Annulla".
        m_buttons->insertWidget(result, button);
        m_answers.append(button);
        if (answer.isDestructive) {
            m_destructive.append(button);
        }
    }
    QWidget* before = nullptr;
    for (QPushButton* const button : m_answers + QList{m_cancel}) {
        if (before != nullptr) {
            setTabOrder(before, button);
        }
        before = button;
    }
    m_default = defaultAnswer < 0 ? m_cancel : m_answers.at(defaultAnswer);
    m_default->setDefault(true);
    colourDestructive();
    adjustHeight();
}

void ConfirmationDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colourDestructive();
    }
}

void ConfirmationDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // The answer to a question is seen to have the keyboard before any key moves it.
    setAttribute(Qt::WA_KeyboardFocusChange);
    m_default->setFocus(Qt::OtherFocusReason);
}

/// Red, as far as it can be read on the darkest or, in the dark, the lightest ground that the style paints for a
/// button: a default one, or one that is pressed or under the mouse, goes from the button's colour towards the
/// highlight's.
void ConfirmationDialog::colourDestructive() {
    constexpr float mostHighlight = 0.7F;
    for (QPushButton* const button : std::as_const(m_destructive)) {
        QPalette colours = palette();
        QColor highlight = colours.color(QPalette::Highlight);
        highlight.setAlphaF(mostHighlight);
        const QColor ground = over(highlight, colours.color(QPalette::Button));
        colours.setColor(QPalette::ButtonText,
                         readable(Theme::diffRemoved.in(colours), ground, colours.color(QPalette::ButtonText)));
        button->setPalette(colours);
    }
}

/// Makes the dialog as wide as its buttons and as high as its texts need at that width.
void ConfirmationDialog::adjustHeight() {
    layout()->activate();
    const int width = layout()->totalSizeHint().width();
    setFixedSize(width, layout()->totalHeightForWidth(width));
}

} // namespace quillary
