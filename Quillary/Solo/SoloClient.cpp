#include "Quillary/Solo/SoloClient.h"

#include "Quillary/Solo/ChildProcess.h"
#include "Quillary/Solo/MCPSession.h"
#include "QuillaryCore/Solo/SoloProtocol.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <poll.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// One message and its answer, which has to tell of success.
Status<SoloFailure> callTool(MCPSession& session, const QJsonObject& message, qint64 id) {
    if (auto sent = session.send(message); !sent) {
        return sent;
    }
    const auto response = session.response(id);
    if (!response) {
        return response.error();
    }
    if (const auto checked = SoloProtocol::checkToolResponse(*response); !checked) {
        return SoloFailure(checked.error());
    }
    return Done();
}

Status<SoloFailure> openConversation(MCPSession& session) {
    if (auto sent = session.send(SoloProtocol::initializeRequest(1)); !sent) {
        return sent;
    }
    if (const auto response = session.response(1); !response) {
        return response.error();
    }
    return session.send(SoloProtocol::initializedNotification());
}

void pauseUnlessCancelled(const Cancellation& cancellation) {
    pollfd waiting{cancellation.descriptor(), POLLIN, 0};
    poll(&waiting, 1, static_cast<int>(SoloClient::pauseBeforeSubmit.count()));
}

} // namespace

QString localizedDescription(const SoloFailure& failure) {
    if (const auto* const error = std::get_if<SoloError>(&failure)) {
        return error->errorDescription();
    }
    return std::get<SystemError>(failure).localizedDescription();
}

SoloClient SoloClient::find() {
    return {firstExecutable({u"/Applications/Solo.app/Contents/MacOS/solo-cli"_s,
                             u"~/Applications/Solo.app/Contents/MacOS/solo-cli"_s, u"~/.local/bin/solo"_s}),
            firstExecutable(
                {u"/Applications/Solo.app/Contents/MacOS/mcp"_s, u"~/Applications/Solo.app/Contents/MacOS/mcp"_s})};
}

std::optional<QString> SoloClient::firstExecutable(const QStringList& paths) {
    for (QString path : paths) {
        if (path == u"~" || path.startsWith(u"~/")) {
            path.replace(0, 1, QDir::homePath());
        }
        if (const QFileInfo file(path); file.isFile() && file.isExecutable()) {
            return path;
        }
    }
    return std::nullopt;
}

Result<QByteArray, SoloFailure> SoloClient::runCLI(const QStringList& arguments,
                                                   const Cancellation& cancellation) const {
    if (!m_cliPath) {
        return SoloFailure(SoloError::notInstalled());
    }
    // The system takes such an argument for one that ends there.
    for (const QString& argument : arguments) {
        if (argument.contains(QChar(u'\0'))) {
            return SoloFailure(SoloError::sendFailed(
                QCoreApplication::translate("SoloClient", "il testo contiene un carattere nullo")));
        }
    }
    const auto process = ChildProcess::start(*m_cliPath, QStringList{u"--json"_s} + arguments,
                                             ChildProcess::Input::none, m_timeLimit, cancellation);
    if (!process) {
        return SoloFailure(process.error());
    }
    ChildProcess& child = **process;
    while (child.readMore()) {
    }
    if (child.waitForSignalledEnd()) {
        return SoloFailure(SoloError::timedOut());
    }
    return child.output();
}

Status<SoloFailure> SoloClient::paste(const QString& text, qint64 intoProcess, std::optional<qint64> projectID,
                                      bool submit, const Cancellation& cancellation) const {
    if (!m_mcpPath) {
        return SoloFailure(SoloError::notInstalled());
    }
    const auto server = ChildProcess::start(*m_mcpPath, {}, ChildProcess::Input::pipe, m_timeLimit, cancellation);
    if (!server) {
        return SoloFailure(server.error());
    }
    MCPSession session(**server);
    if (auto opened = openConversation(session); !opened) {
        return opened;
    }
    const SoloProtocol::SoloInput paste{.text = SoloProtocol::pastePayload(text), .bytes = {}};
    if (auto pasted = callTool(session, SoloProtocol::sendInputRequest(2, intoProcess, projectID, paste), 2); !pasted) {
        return pasted;
    }
    if (!submit) {
        return Done();
    }
    // A return within the paste would not submit, so it travels by itself, once the terminal has taken the paste in.
    pauseUnlessCancelled(cancellation);
    const SoloProtocol::SoloInput carriageReturn{.text = {}, .bytes = "\r"};
    return callTool(session, SoloProtocol::sendInputRequest(3, intoProcess, projectID, carriageReturn), 3);
}

} // namespace quillary
