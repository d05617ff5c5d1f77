#include "Quillary/SendPanel/SoloSendPanel.h"

#include "Quillary/SendPanel/AgentChip.h"
#include "Quillary/SendPanel/AgentRow.h"
#include "Quillary/SendPanel/FlowLayout.h"
#include "Quillary/SendPanel/ProjectPicker.h"
#include "Quillary/SendPanel/SearchBox.h"
#include "Quillary/Solo/SoloSessions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int agentIDRole = Qt::UserRole;

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

    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(3);
    m_progress->setAccessibleName(tr("Attendi Solo"));
    QSizePolicy keepsItsPlace = m_progress->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(keepsItsPlace);
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(makeNewSession());
    m_pages->addWidget(makeOpenSession());
    m_bringToFront = new QCheckBox(tr("Porta Solo in primo piano dopo l'invio"), this);
    m_bringToFront->setChecked(settings.soloBringToFront());
    m_error = new QLabel(this);
    m_error->setWordWrap(true);
    m_error->setTextFormat(Qt::PlainText);
    m_error->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(12);
    column->addWidget(makeHeader());
    column->addWidget(makeModePicker());
    column->addWidget(m_progress);
    column->addWidget(m_pages, 1);
    column->addWidget(m_bringToFront);
    column->addWidget(m_error);
    resize(440, 520);

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
    showMode();
    showTools();
    showProjects();
    showSessions();
    showError();
    m_solo.refresh();
    showProgress();
}

QWidget* SoloSendPanel::makeHeader() {
    auto* const header = new QWidget(this);
    auto* const title = new QLabel(tr("Invia a Solo"), header);
    title->setFont(Theme::font(15, QFont::DemiBold));
    auto* const note = new QLabel(header);
    note->setTextFormat(Qt::PlainText);
    constexpr int titleWidth = 320;
    note->setText(note->fontMetrics().elidedText(m_message.title, Qt::ElideMiddle, titleWidth));
    note->setToolTip(m_message.title);
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

QWidget* SoloSendPanel::makeModePicker() {
    auto* const picker = new QWidget(this);
    auto* const row = new QHBoxLayout(picker);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_modes = new QButtonGroup(picker);
    for (const SoloController::Mode mode : SoloController::allModes) {
        auto* const segment = new QPushButton(SoloController::displayName(mode), picker);
        segment->setCheckable(true);
        segment->setAutoDefault(false);
        m_modes->addButton(segment, static_cast<int>(mode));
        row->addWidget(segment, 1);
    }
    connect(m_modes, &QButtonGroup::idClicked, this, [this](int id) {
        m_settings.setSoloMode(SoloController::rawValue(static_cast<SoloController::Mode>(id)));
    });
    return picker;
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
    m_modes->button(static_cast<int>(mode))->setChecked(true);
    m_pages->setCurrentIndex(static_cast<int>(mode));
}

void SoloSendPanel::showTools() {
    const QList<AgentChip*> old = m_chips->findChildren<AgentChip*>(Qt::FindDirectChildrenOnly);
    const bool sameTools = std::ranges::equal(
        old, m_solo.tools(), {}, [](const AgentChip* chip) { return chip->text(); }, &SoloAgentTool::name);
    if (sameTools) {
        for (qsizetype i = 0; i < old.size(); ++i) {
            old[i]->setChecked(m_solo.tools()[i].id == m_settings.soloAgentToolID());
        }
        showProgress();
        return;
    }
    qDeleteAll(old);
    for (const SoloAgentTool& tool : m_solo.tools()) {
        auto* const chip = new AgentChip(tool.name, m_chips);
        chip->setChecked(tool.id == m_settings.soloAgentToolID());
        connect(chip, &AgentChip::clicked, this, [this, chip, id = tool.id] {
            // A click on the chosen one leaves it chosen.
            chip->setChecked(true);
            m_settings.setSoloAgentToolID(id);
        });
        m_chipLayout->addWidget(chip);
        chip->show();
    }
    showProgress();
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
            row->setToolTip(agent.command);
        }
    }
    const bool isEmpty = m_solo.runningAgents().isEmpty();
    m_sessions->setVisible(!isEmpty);
    m_noSession->setVisible(isEmpty);
}

void SoloSendPanel::showProgress() {
    const bool isSending = m_solo.isSending();
    m_progress->setVisible(isSending || m_solo.isLoading());
    m_refresh->setEnabled(!m_solo.isLoading());
    m_sessions->setEnabled(!isSending);
    m_start->setEnabled(!isSending && m_settings.soloAgentToolID() && m_settings.soloProjectID());
}

void SoloSendPanel::showError() {
    m_error->setText(m_solo.errorMessage().value_or(QString()));
    m_error->setVisible(m_solo.errorMessage().has_value());
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
