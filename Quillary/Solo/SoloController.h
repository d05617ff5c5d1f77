#pragma once

#include "Quillary/Solo/Cancellation.h"
#include "Quillary/Solo/SoloClient.h"
#include "QuillaryCore/Solo/SoloAgent.h"
#include "QuillaryCore/Solo/SoloAgentTool.h"
#include "QuillaryCore/Solo/SoloProject.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QUrl>

#include <functional>
#include <optional>
#include <type_traits>

namespace quillary {

class AppSettings;

/// What stands behind the send panel: what Solo offers, and the two ways of handing it a text. Its state belongs to the
/// main thread; processes run on threads of its own, and none outlives it.
class SoloController : public QObject {
    Q_OBJECT

public:
    /// The ways of delivering a text.
    enum class Mode { newSession, openSession };

    static constexpr std::array allModes{Mode::newSession, Mode::openSession};

    static QString rawValue(Mode mode);

    /// The mode of a raw value; a new session if there is none such.
    static Mode modeFromRawValue(const QString& rawValue);

    static QString displayName(Mode mode);

    /// `settings` must outlive it. Solo is looked for once, here.
    explicit SoloController(AppSettings& settings, QObject* parent = nullptr);
    SoloController(AppSettings& settings, SoloClient client, QObject* parent = nullptr);

    /// Ends what is running; a text that is under way may or may not have arrived.
    ~SoloController() override;

    const SoloClient& client() const { return m_client; }

    bool isPanelPresented() const { return m_isPanelPresented; }

    void setPanelPresented(bool isPresented);

    // What the last refresh found.

    const QList<SoloAgentTool>& tools() const { return m_tools; }

    const QList<SoloProject>& projects() const { return m_projects; }

    const QList<SoloAgent>& runningAgents() const { return m_runningAgents; }

    /// A refresh is under way.
    bool isLoading() const { return m_isLoading; }

    /// A text is under way.
    bool isSending() const { return m_isSending; }

    /// The last failure.
    const std::optional<QString>& errorMessage() const { return m_errorMessage; }

    /// The last success; it stays until the panel opens again.
    const std::optional<QString>& confirmation() const { return m_confirmation; }

    /// Opens the panel; without Solo's command line there is none, and a beep instead.
    void showPanel();

    /// Asks Solo for tools, projects and running agents; all three or none of them take the place of the old ones.
    /// Stored choices that are gone move to another.
    void refresh();

    /// Starts a session of the chosen tool in the chosen project with a text as its first message. Does nothing unless
    /// both are chosen.
    void startSession(const QString& text, const QString& title);

    /// Pastes a text into the terminal of a running agent.
    void paste(const QString& text, const SoloAgent& into);

Q_SIGNALS:
    void isPanelPresentedChanged();
    void toolsChanged();
    void projectsChanged();
    void runningAgentsChanged();
    void isLoadingChanged();
    void isSendingChanged();
    void errorMessageChanged();
    void confirmationChanged();

private:
    struct Offer {
        QList<SoloAgentTool> tools;
        QList<SoloProject> projects;
        QList<SoloAgent> agents;
    };

    /// The link to a session that got a text, if there is one.
    using Link = std::optional<QUrl>;

    template <typename T>
    void assign(T& field, const std::type_identity_t<T>& value, void (SoloController::*changed)());
    template <typename Work, typename Finish>
    void inBackground(Work work, Finish finish);
    static Result<Offer, SoloFailure> askForOffer(const SoloClient& client, const Cancellation& cancellation);
    void take(const Offer& offer);
    void perform(const QString& confirmation, std::function<Result<Link, SoloFailure>()> send);

    AppSettings& m_settings;
    SoloClient m_client;
    bool m_isPanelPresented = false;
    QList<SoloAgentTool> m_tools;
    QList<SoloProject> m_projects;
    QList<SoloAgent> m_runningAgents;
    bool m_isLoading = false;
    bool m_isSending = false;
    std::optional<QString> m_errorMessage;
    std::optional<QString> m_confirmation;
    /// Counts the refreshes, so that an overtaken one does not put old lists over new ones.
    qint64 m_refresh = 0;
    Cancellation m_cancellation;
    QThreadPool m_threads;
};

} // namespace quillary
