#include "Quillary/Comparison/DiffHeader.h"

#include "Quillary/Comparison/NotePill.h"
#include "Quillary/Comparison/StatsView.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>

namespace quillary {

DiffHeader::DiffHeader(QWidget* parent)
    : QWidget(parent),
      m_old(new NotePill(Theme::diffRemoved, this)),
      m_new(new NotePill(Theme::diffAdded, this)),
      m_stats(new StatsView(this)),
      m_modes(new QButtonGroup(this)),
      m_showsAllLines(new QCheckBox(tr("Tutte le righe"), this)) {
    QToolButton* const swap = addButton(tr("Scambia i lati"));
    swap->setIcon(symbolIcon(Symbol::swap));
    connect(swap, &QToolButton::clicked, this, &DiffHeader::swapRequested);

    QToolButton* const close = addButton(tr("Chiudi il confronto (⎋)"));
    close->setIcon(symbolIcon(Symbol::close));
    connect(close, &QToolButton::clicked, this, &DiffHeader::closeRequested);
    // Not the button's own, which would only act when its drawing has gone down and up.
    auto* const escape = new QShortcut(Qt::Key_Escape, this);
    connect(escape, &QShortcut::activated, this, &DiffHeader::closeRequested);

    m_showsAllLines->setFont(Theme::sidebarDetail());
    connect(m_showsAllLines, &QCheckBox::clicked, this, &DiffHeader::showsAllLinesChosen);

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 10, 8);
    layout->setSpacing(6);
    layout->addWidget(m_old);
    layout->addWidget(swap);
    layout->addWidget(m_new);
    layout->addSpacing(8);
    layout->addWidget(m_stats);
    layout->addStretch();
    layout->addWidget(makePicker());
    layout->addSpacing(6);
    layout->addWidget(m_showsAllLines);
    layout->addWidget(close);
}

QToolButton* DiffHeader::addButton(const QString& help) {
    auto* const button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(help);
    button->setAccessibleName(help);
    return button;
}

QWidget* DiffHeader::makePicker() {
    auto* const picker = new QWidget(this);
    picker->setAccessibleName(tr("Vista"));
    picker->setToolTip(tr("Vista"));
    auto* const layout = new QHBoxLayout(picker);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (const auto& [mode, label] :
         {std::pair(DiffMode::sideBySide, tr("Affiancato")), std::pair(DiffMode::unified, tr("Unificato"))}) {
        auto* const button = new QPushButton(label, picker);
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setFont(Theme::sidebarDetail());
        m_modes->addButton(button, static_cast<int>(mode));
        layout->addWidget(button);
    }
    setMode(DiffMode::sideBySide);
    connect(m_modes, &QButtonGroup::idClicked, this,
            [this](int mode) { Q_EMIT modeChosen(static_cast<DiffMode>(mode)); });
    return picker;
}

void DiffHeader::setTitles(const QString& oldTitle, const QString& newTitle) {
    m_old->setTitle(oldTitle);
    m_new->setTitle(newTitle);
}

void DiffHeader::setStats(const DiffStats& stats) {
    m_stats->setStats(stats);
}

void DiffHeader::setMode(DiffMode mode) {
    m_modes->button(static_cast<int>(mode))->setChecked(true);
}

void DiffHeader::setShowsAllLines(bool showsAll) {
    m_showsAllLines->setChecked(showsAll);
}

} // namespace quillary
