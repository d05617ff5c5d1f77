#include "Quillary/Comparison/DiffHeader.h"

#include "Quillary/Comparison/DiffHeaderLayout.h"
#include "Quillary/Comparison/NotePill.h"
#include "Quillary/Comparison/StatsView.h"
#include "Quillary/Theme/SegmentedPicker.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QCheckBox>
#include <QShortcut>
#include <QToolButton>

namespace quillary {

DiffHeader::DiffHeader(QWidget* parent)
    : QWidget(parent),
      m_old(new NotePill(Theme::diffRemoved, this)),
      m_new(new NotePill(Theme::diffAdded, this)),
      m_stats(new StatsView(this)),
      m_modes(new SegmentedPicker(this, SegmentedPicker::Place::toolbar)) {
    // Made in the order in which the Tab key goes through them.
    QToolButton* const swap = addButton(tr("Scambia i lati"));
    swap->setIcon(symbolIcon(Symbol::swap));
    connect(swap, &QToolButton::clicked, this, &DiffHeader::swapRequested);

    fillPicker();
    m_showsAllLines = new QCheckBox(tr("Tutte le righe"), this);

    QToolButton* const close = addButton(tr("Chiudi il confronto (⎋)"));
    close->setIcon(symbolIcon(Symbol::close));
    connect(close, &QToolButton::clicked, this, &DiffHeader::closeRequested);
    // Not the button's own, which would only act when its drawing has gone down and up.
    auto* const escape = new QShortcut(Qt::Key_Escape, this);
    connect(escape, &QShortcut::activated, this, &DiffHeader::closeRequested);

    // As of all controls here: a click leaves the keys to the rows.
    m_showsAllLines->setFocusPolicy(Qt::TabFocus);
    m_showsAllLines->setFont(Theme::sidebarDetail());
    connect(m_showsAllLines, &QCheckBox::clicked, this, &DiffHeader::showsAllLinesChosen);

    auto* const layout = new DiffHeaderLayout(this);
    layout->addWidget(m_old);
    layout->addWidget(swap);
    layout->addWidget(m_new);
    layout->addWidget(m_stats);
    layout->addWidget(m_modes);
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

void DiffHeader::fillPicker() {
    m_modes->setAccessibleName(tr("Vista"));
    m_modes->setToolTip(tr("Vista"));
    m_modes->setFont(Theme::sidebarDetail());
    m_modes->addSegment(static_cast<int>(DiffMode::sideBySide), tr("Affiancato"));
    m_modes->addSegment(static_cast<int>(DiffMode::unified), tr("Unificato"));
    setMode(DiffMode::sideBySide);
    connect(m_modes, &SegmentedPicker::chosen, this, [this](int id) {
        const auto mode = static_cast<DiffMode>(id);
        setMode(mode);
        Q_EMIT modeChosen(mode);
    });
}

void DiffHeader::setTitles(const QString& oldTitle, const QString& newTitle) {
    m_old->setTitle(oldTitle);
    m_new->setTitle(newTitle);
}

void DiffHeader::setStats(const DiffStats& stats) {
    m_stats->setStats(stats);
}

void DiffHeader::setMode(DiffMode mode) {
    m_modes->setSelection(static_cast<int>(mode));
}

void DiffHeader::setShowsAllLines(bool showsAll) {
    m_showsAllLines->setChecked(showsAll);
}

} // namespace quillary
