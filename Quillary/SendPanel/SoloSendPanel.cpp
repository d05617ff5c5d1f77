#include "Quillary/SendPanel/SoloSendPanel.h"

#include "Quillary/SendPanel/AgentChip.h"
#include "Quillary/SendPanel/AgentRow.h"
#include "Quillary/SendPanel/FlowLayout.h"
#include "Quillary/SendPanel/ProjectPicker.h"
#include "Quillary/SendPanel/SearchBox.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/Solo/SoloSessions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/Theme/SegmentedPicker.h"
#include "Quillary/Theme/SymbolLabel.h"
#include "Quillary/Theme/Theme.h"
#include "Quillary/Theme/ToolTip.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int agentIDRole = Qt::UserRole;
constexpr int failureSize = 16;

QLabel* sectionLabel(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setFont(Theme::font(11, QFont::DemiBold));
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QLabel* quietLabel(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setFont(Theme::font(11));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    return label;
}

QVBoxLayout* columnOf(QWidget* page) {
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    return column;
}

} // namespace

SoloSendPanel::SoloSendPanel(SoloController& solo, AppSettings& settings, const Message& message, QWidget* parent)
    : QDialog(parent), m_solo(solo), m_settings(settings), m_message(message) {
    setWindowTitle(tr("Invia a Solo"));
    setWindowModality(Qt::WindowModal);

    // Made in the order in which the keyboard goes through them.
    QWidget* const header = makeHeader();
    m_modes = makeModePicker();
    m_progress = makeProgress();
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(makeNewSession());
    m_pages->addWidget(makeOpenSession());
    m_bringToFront = new QCheckBox(tr("Porta Solo in primo piano dopo l'invio"), this);
    m_bringToFront->setChecked(settings.soloBringToFront());
    m_failure = makeFailure();

    auto* const bar = new QVBoxLayout;
    bar->setSpacing(4);
    bar->addWidget(m_modes);
    bar->addWidget(m_progress);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(12);
    column->addWidget(header);
    column->addLayout(bar);
    column->addWidget(m_pages, 1);
    column->addWidget(m_bringToFront);
    column->addWidget(m_failure);
    resize(440, std::min(560, heightOfScreen()));

    connectAll();
    showMode();
    showTools();
    showProjects();
    showSessions();
    showError();
    m_pages->currentWidget()->findChild<SearchBox*>()->setFocus();
    m_solo.refresh();
    showProgress();
}

void SoloSendPanel::connectAll() {
    connect(m_bringToFront, &QCheckBox::toggled, &m_settings, &AppSettings::setSoloBringToFront);
    connect(&m_settings, &AppSettings::soloModeChanged, this, &SoloSendPanel::showMode);
    connect(&m_settings, &AppSettings::soloAgentToolIDChanged, this, &SoloSendPanel::showTools);
    connect(&m_settings, &AppSettings::soloProjectIDChanged, this, &SoloSendPanel::showProjects);
    connect(&m_solo, &SoloController::toolsChanged, this, &SoloSendPanel::showTools);
    connect(&m_solo, &SoloController::projectsChanged, this, &SoloSendPanel::showProjects);
    connect(&m_solo, &SoloController::runningAgentsChanged, this, &SoloSendPanel::showSessions);
    connect(&m_solo, &SoloController::isLoadingChanged, this, &SoloSendPanel::showProgress);
    connect(&m_solo, &SoloController::isSendingChanged, this, &SoloSendPanel::showProgress);
    connect(&m_solo, &SoloController::errorMessageChanged, this, &SoloSendPanel::showError);
}

QWidget* SoloSendPanel::makeHeader() {
    auto* const header = new QWidget(this);
    auto* const title = new QLabel(tr("Invia a Solo"), header);
    title->setFont(Theme::font(15, QFont::DemiBold));
    auto* const note = new QLabel(header);
    note->setTextFormat(Qt::PlainText);
    constexpr int titleWidth = 320;
    note->setText(note->fontMetrics().elidedText(shownName(m_message.title), Qt::ElideMiddle, titleWidth));
    note->setToolTip(plainToolTip(m_message.title));
    const QString extent = m_message.isSelection ? tr("Selezione") : tr("Nota intera");
    QLabel* const size =
        quietLabel(extent + u" · " + QString::number(clusterCount(m_message.text)) + tr(" caratteri"), header);

    m_refresh = new QToolButton(header);
    m_refresh->setAutoRaise(true);
    m_refresh->setIcon(symbolIcon(Symbol::refresh));
    m_refresh->setText(tr("Aggiorna"));
    m_refresh->setToolTip(tr("Aggiorna"));
    m_refresh->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_refresh->setFocusPolicy(Qt::TabFocus);
    connect(m_refresh, &QToolButton::clicked, &m_solo, &SoloController::refresh);

    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(title);
    texts->addWidget(note);
    texts->addWidget(size);
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(texts, 1);
    row->addWidget(m_refresh, 0, Qt::AlignTop);
    return header;
}

SegmentedPicker* SoloSendPanel::makeModePicker() {
    auto* const picker = new SegmentedPicker(this);
    for (const SoloController::Mode mode : SoloController::allModes) {
        picker->addSegment(static_cast<int>(mode), SoloController::displayName(mode));
    }
    connect(picker, &SegmentedPicker::chosen, this, [this](int id) {
        m_settings.setSoloMode(SoloController::rawValue(static_cast<SoloController::Mode>(id)));
    });
    return picker;
}

QProgressBar* SoloSendPanel::makeProgress() {
    auto* const progress = new QProgressBar(this);
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setFixedHeight(4);
    progress->setAccessibleName(tr("Attendi Solo"));
    QSizePolicy keepsItsPlace = progress->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    progress->setSizePolicy(keepsItsPlace);
    return progress;
}

QWidget* SoloSendPanel::makeFailure() {
    auto* const failure = new QWidget(this);
    auto* const image = new SymbolLabel(failure);
    image->setSymbol(Symbol::warning, failureSize);
    image->setAccessibleName(tr("Attenzione"));
    m_error = new QLabel(failure);
    m_error->setWordWrap(true);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* const row = new QHBoxLayout(failure);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(image, 0, Qt::AlignTop);
    row->addWidget(m_error, 1);
    return failure;
}

QWidget* SoloSendPanel::makeNewSession() {
    auto* const page = new QWidget(m_pages);
    m_chips = new QWidget(page);
    m_chipLayout = new FlowLayout(6, m_chips);
    m_projects = new ProjectPicker(page);
    m_start = new QPushButton(symbolIcon(Symbol::send), tr("Avvia sessione"), page);
    m_start->setDefault(true);

    QVBoxLayout* const column = columnOf(page);
    column->addWidget(sectionLabel(tr("Agent"), page));
    column->addWidget(m_chips);
    column->addWidget(quietLabel(tr("Apre una nuova sessione con la nota come primo messaggio."), page));
    column->addSpacing(4);
    column->addWidget(sectionLabel(tr("Progetto"), page));
    column->addWidget(m_projects, 1);
    column->addWidget(m_start, 0, Qt::AlignRight);

    connect(m_projects, &ProjectPicker::chosen, this, [this](qint64 id) { m_settings.setSoloProjectID(id); });
    connect(m_start, &QPushButton::clicked, this, [this] { m_solo.startSession(m_message.text, m_message.title); });
    return page;
}

QWidget* SoloSendPanel::makeOpenSession() {
    auto* const page = new QWidget(m_pages);
    m_sessionQuery = new SearchBox(page);
    m_sessionQuery->setPlaceholder(tr("Cerca sessione o progetto"));
    m_sessions = new QListWidget(page);
    m_sessions->setAccessibleName(tr("Sessioni"));
    m_sessions->setItemDelegate(new AgentRow(m_sessions));
    m_sessions->setMouseTracking(true);
    m_sessionQuery->setList(m_sessions);
    m_sessions->setSelectionMode(QAbstractItemView::NoSelection);
    m_sessions->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_noSession = new QLabel(tr("Nessuna sessione agent attiva in Solo."), page);
    m_noSession->setAlignment(Qt::AlignCenter);
    m_noSession->setForegroundRole(QPalette::PlaceholderText);
    m_submit = new QCheckBox(tr("Premi Invio dopo l'incolla"), page);
    m_submit->setChecked(m_settings.soloSubmitAfterPaste());

    QVBoxLayout* const column = columnOf(page);
    column->addWidget(m_sessionQuery);
    column->addWidget(m_sessions, 1);
    column->addWidget(m_noSession, 1);
    column->addWidget(m_submit);

    connect(m_sessionQuery, &QLineEdit::textChanged, this, &SoloSendPanel::showSessions);
    connect(m_sessions, &QListWidget::itemClicked, this, &SoloSendPanel::sendTo);
    connect(m_sessions, &QListWidget::itemActivated, this, &SoloSendPanel::sendTo);
    connect(m_submit, &QCheckBox::toggled, &m_settings, &AppSettings::setSoloSubmitAfterPaste);
    return page;
}

void SoloSendPanel::showMode() {
    const SoloController::Mode mode = SoloController::modeFromRawValue(m_settings.soloMode());
    m_modes->setSelection(static_cast<int>(mode));
    m_pages->setCurrentIndex(static_cast<int>(mode));
}

void SoloSendPanel::showTools() {
    if (m_shownTools != m_solo.tools()) {
        m_shownTools = m_solo.tools();
        makeChips();
    }
    const QList<AgentChip*> chips = m_chips->findChildren<AgentChip*>(Qt::FindDirectChildrenOnly);
    for (qsizetype i = 0; i < chips.size(); ++i) {
        const bool isChosen = m_shownTools[i].id == m_settings.soloAgentToolID();
        chips[i]->setChecked(isChosen);
        // The keyboard comes to the chosen one, and goes on to others with the arrows.
        chips[i]->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    }
    showProgress();
}

void SoloSendPanel::makeChips() {
    qDeleteAll(m_chips->findChildren<AgentChip*>(Qt::FindDirectChildrenOnly));
    QWidget* above = m_modes->lastSegment();
    for (const SoloAgentTool& tool : std::as_const(m_shownTools)) {
        auto* const chip = new AgentChip(tool.name, m_chips);
        connect(chip, &AgentChip::clicked, this, [this, id = tool.id] { m_settings.setSoloAgentToolID(id); });
        m_chipLayout->addWidget(chip);
        setTabOrder(std::exchange(above, chip), chip);
        chip->show();
    }
}

void SoloSendPanel::showProjects() {
    m_projects->setProjects(m_solo.projects(), m_settings.soloProjectID());
    showProgress();
}

void SoloSendPanel::showSessions() {
    m_sessions->clear();
    const QList<SoloSessionGroup> groups = soloSessions(m_solo.runningAgents(), m_sessionQuery->text());
    for (const SoloSessionGroup& group : groups) {
        auto* const heading = new QListWidgetItem(group.name, m_sessions);
        heading->setData(AgentRow::isHeadingRole, true);
        heading->setFlags(Qt::NoItemFlags);
        for (const SoloAgent& agent : group.agents) {
            auto* const row = new QListWidgetItem(agent.name, m_sessions);
            row->setData(agentIDRole, agent.id);
            row->setToolTip(plainToolTip(agent.command));
        }
    }
    const bool isEmpty = m_solo.runningAgents().isEmpty();
    // What goes first: for a moment with both the panel would grow, and stay so.
    (isEmpty ? static_cast<QWidget*>(m_sessions) : m_noSession)->hide();
    (isEmpty ? static_cast<QWidget*>(m_noSession) : m_sessions)->show();
}

void SoloSendPanel::showProgress() {
    const bool isSending = m_solo.isSending();
    m_progress->setVisible(isSending || m_solo.isLoading());
    enable(*m_refresh, !m_solo.isLoading());
    enable(*m_sessions, !isSending);
    enable(*m_start, !isSending && m_settings.soloAgentToolID() && m_settings.soloProjectID());
}

// What is disabled while it has the keyboard gets it back, so that a refused text is sent again by one key; unless the
// user has gone on to another control.
void SoloSendPanel::enable(QWidget& control, bool isEnabled) {
    const bool hadFocus = control.hasFocus();
    control.setEnabled(isEnabled);
    if (hadFocus && !isEnabled) {
        m_waitsForFocus = &control;
        m_hasFocusMeanwhile = focusWidget();
    } else if (isEnabled && m_waitsForFocus == &control) {
        m_waitsForFocus = nullptr;
        if (focusWidget() == m_hasFocusMeanwhile) {
            control.setFocus();
        }
    }
}

void SoloSendPanel::showError() {
    m_error->setText(m_solo.errorMessage().value_or(QString()));
    m_failure->setVisible(m_solo.errorMessage().has_value());
}

bool SoloSendPanel::event(QEvent* event) {
    const bool isTaken = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        // How high tools and a failure are depends on the width, which a window's own minimum doesn't know of. Where
        // the screen has no room for it all, the projects scroll.
        const int wanted = layout()->totalHeightForWidth(width());
        const int least = wanted - m_projects->sizeHint().height() + m_projects->minimumSizeHint().height();
        resize(width(), std::max(height(), std::min(wanted, std::max(least, heightOfScreen()))));
    }
    return isTaken;
}

/// What a screen has room for below the title bar.
int SoloSendPanel::heightOfScreen() const {
    // A window that has no frame yet will get one.
    const int frame = std::max(frameGeometry().height() - height(), style()->pixelMetric(QStyle::PM_TitleBarHeight));
    return screen()->availableSize().height() - frame;
}

void SoloSendPanel::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_failure != nullptr) {
        showError();
    }
}

void SoloSendPanel::sendTo(const QListWidgetItem* row) {
    if (m_solo.isSending()) {
        return;
    }
    const qint64 id = row->data(agentIDRole).toLongLong();
    const QList<SoloAgent> agents = m_solo.runningAgents();
    const auto agent = std::ranges::find(agents, id, &SoloAgent::id);
    if (agent != agents.end() && !row->data(AgentRow::isHeadingRole).toBool()) {
        m_solo.paste(m_message.text, *agent);
    }
}

} // namespace quillary
