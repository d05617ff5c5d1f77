#include "Quillary/Solo/SoloController.h"

#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "QuillaryCore/Solo/SoloProtocol.h"

#include <algorithm>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The threads wait and don't compute, so that the machine's cores are no measure for them: one that waits for a Solo
/// that is silent must not hold up another.
constexpr int mostThreads = 32;

/// Runs a command and reads its answer.
template <typename Decode>
auto answer(const SoloClient& client, const QStringList& arguments, const Cancellation& cancellation, Decode decode)
    -> Result<std::remove_cvref_t<decltype(*decode(QByteArray()))>, SoloFailure> {
    const auto output = client.runCLI(arguments, cancellation);
    if (!output) {
        return output.error();
    }
    const auto decoded = decode(*output);
    if (!decoded) {
        return SoloFailure(decoded.error());
    }
    return *decoded;
}

template <typename List>
bool containsID(const List& list, std::optional<qint64> id) {
    return id && std::ranges::any_of(list, [id](const auto& each) { return each.id == *id; });
}

/// The name of the one with this id.
template <typename List>
QString nameOf(const List& list, qint64 id, const QString& otherwise) {
    const auto found = std::ranges::find_if(list, [id](const auto& each) { return each.id == id; });
    return found == list.end() ? otherwise : found->name;
}

/// The tool that is chosen where the user's choice is gone.
std::optional<qint64> preferredTool(const QList<SoloAgentTool>& tools) {
    const auto claude = std::ranges::find(tools, u"claude"_s, &SoloAgentTool::toolType);
    if (claude != tools.end()) {
        return claude->id;
    }
    return tools.isEmpty() ? std::nullopt : std::optional(tools.constFirst().id);
}

} // namespace

QString SoloController::rawValue(Mode mode) {
    return mode == Mode::newSession ? u"newSession"_s : u"openSession"_s;
}

SoloController::Mode SoloController::modeFromRawValue(const QString& rawValue) {
    return rawValue == u"openSession" ? Mode::openSession : Mode::newSession;
}

QString SoloController::displayName(Mode mode) {
    return mode == Mode::newSession ? tr("Nuova sessione") : tr("Sessione aperta");
}

SoloController::SoloController(AppSettings& settings, QObject* parent)
    : SoloController(settings, SoloClient::find(), parent) {}

SoloController::SoloController(AppSettings& settings, SoloClient client, QObject* parent)
    : QObject(parent), m_settings(settings), m_client(std::move(client)) {
    m_threads.setMaxThreadCount(mostThreads);
}

SoloController::~SoloController() {
    m_cancellation.cancel();
    m_threads.waitForDone();
}

void SoloController::setPanelPresented(bool isPresented) {
    assign(m_isPanelPresented, isPresented, &SoloController::isPanelPresentedChanged);
}

void SoloController::showPanel() {
    if (!m_client.cliPath()) {
        AppActions::shared().beep();
        return;
    }
    assign(m_confirmation, std::nullopt, &SoloController::confirmationChanged);
    setPanelPresented(true);
}

void SoloController::refresh() {
    assign(m_isLoading, true, &SoloController::isLoadingChanged);
    assign(m_errorMessage, std::nullopt, &SoloController::errorMessageChanged);
    inBackground([this, client = m_client] { return askForOffer(client, m_cancellation); },
                 [this, refresh = ++m_refresh](const Result<Offer, SoloFailure>& offer) {
                     if (refresh != m_refresh) {
                         return;
                     }
                     if (offer) {
                         take(*offer);
                     } else {
                         assign(m_errorMessage, localizedDescription(offer.error()),
                                &SoloController::errorMessageChanged);
                     }
                     assign(m_isLoading, false, &SoloController::isLoadingChanged);
                 });
}

/// A background thread's work: the commands one by one, so that a Solo that doesn't answer costs its time once.
Result<SoloController::Offer, SoloFailure> SoloController::askForOffer(const SoloClient& client,
                                                                       const Cancellation& cancellation) {
    const auto tools = answer(client, {u"agents"_s, u"list"_s}, cancellation, &SoloProtocol::agentTools);
    if (!tools) {
        return tools.error();
    }
    const auto projects = answer(client, {u"projects"_s, u"list"_s, u"--limit"_s, u"200"_s}, cancellation,
                                 [](const QByteArray& output) { return SoloProtocol::projects(output); });
    if (!projects) {
        return projects.error();
    }
    const auto agents = answer(client, {u"processes"_s, u"list"_s, u"--status"_s, u"running"_s, u"--limit"_s, u"200"_s},
                               cancellation, &SoloProtocol::agents);
    if (!agents) {
        return agents.error();
    }
    return Offer{*tools, *projects, *agents};
}

void SoloController::take(const Offer& offer) {
    assign(m_tools, offer.tools, &SoloController::toolsChanged);
    assign(m_projects, offer.projects, &SoloController::projectsChanged);
    assign(m_runningAgents, offer.agents, &SoloController::runningAgentsChanged);
    if (!containsID(m_tools, m_settings.soloAgentToolID())) {
        m_settings.setSoloAgentToolID(preferredTool(m_tools));
    }
    if (!containsID(m_projects, m_settings.soloProjectID())) {
        m_settings.setSoloProjectID(m_projects.isEmpty() ? std::nullopt : std::optional(m_projects.constFirst().id));
    }
}

void SoloController::startSession(const QString& text, const QString& title) {
    const std::optional<qint64> projectID = m_settings.soloProjectID();
    const std::optional<qint64> toolID = m_settings.soloAgentToolID();
    if (!projectID || !toolID) {
        return;
    }
    const QString confirmation = tr("Nuova sessione ") + nameOf(m_tools, *toolID, u"agent"_s) + tr(" avviata in ") +
                                 nameOf(m_projects, *projectID, {});
    perform(confirmation, [=, this, client = m_client]() -> Result<Link, SoloFailure> {
        const auto processID = answer(client, SoloProtocol::spawnArguments(*projectID, *toolID, title, text),
                                      m_cancellation, &SoloProtocol::spawnedProcessID);
        if (!processID) {
            return processID.error();
        }
        return SoloProtocol::deepLink(*projectID, u"process"_s, title, *processID);
    });
}

void SoloController::paste(const QString& text, const SoloAgent& into) {
    QString confirmation = tr("Inviata a ") + into.name;
    if (into.projectName) {
        confirmation += u" · " + *into.projectName;
    }
    const bool submit = m_settings.soloSubmitAfterPaste();
    perform(confirmation, [=, this, agent = into, client = m_client]() -> Result<Link, SoloFailure> {
        if (const auto sent = client.paste(text, agent.id, agent.projectId, submit, m_cancellation); !sent) {
            return sent.error();
        }
        return agent.projectId ? SoloProtocol::deepLink(*agent.projectId, u"process"_s, agent.name, agent.id)
                               : std::nullopt;
    });
}

void SoloController::perform(const QString& confirmation, std::function<Result<Link, SoloFailure>()> send) {
    assign(m_isSending, true, &SoloController::isSendingChanged);
    assign(m_errorMessage, std::nullopt, &SoloController::errorMessageChanged);
    inBackground(std::move(send), [this, confirmation](const Result<Link, SoloFailure>& sent) {
        if (sent) {
            assign(m_confirmation, confirmation, &SoloController::confirmationChanged);
            setPanelPresented(false);
            Desktop* const desktop = AppActions::shared().desktop;
            if (*sent && desktop && m_settings.soloBringToFront()) {
                desktop->openURL((*sent)->toString(QUrl::FullyEncoded));
            }
        } else {
            assign(m_errorMessage, localizedDescription(sent.error()), &SoloController::errorMessageChanged);
        }
        assign(m_isSending, false, &SoloController::isSendingChanged);
    });
}

/// Runs blocking work on another thread and what follows on the main one. The work may use what of this object never
/// changes; the object waits for it before it ends.
template <typename Work, typename Finish>
void SoloController::inBackground(Work work, Finish finish) {
    m_threads.start([this, work = std::move(work), finish = std::move(finish)]() mutable {
        auto result = work();
        QMetaObject::invokeMethod(
            this, [finish = std::move(finish), result = std::move(result)] { finish(result); }, Qt::QueuedConnection);
    });
}

template <typename T>
void SoloController::assign(T& field, const std::type_identity_t<T>& value, void (SoloController::*changed)()) {
    if (field != value) {
        field = value;
        Q_EMIT(this->*changed)();
    }
}

} // namespace quillary
