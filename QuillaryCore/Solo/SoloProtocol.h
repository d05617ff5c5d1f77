#pragma once

#include "QuillaryCore/Result.h"
#include "QuillaryCore/Solo/SoloAgent.h"
#include "QuillaryCore/Solo/SoloAgentTool.h"
#include "QuillaryCore/Solo/SoloError.h"
#include "QuillaryCore/Solo/SoloProject.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace quillary {

/// What we and Solo say to each other, without the processes that carry it: the arguments of Solo's command line and
/// its answers in JSON, and the messages to its MCP server (JSON-RPC 2.0).
namespace SoloProtocol {

/// The arguments that start an agent's session with a first message.
QStringList spawnArguments(qint64 projectID, qint64 agentToolID, const QString& name, const QString& prompt);

/// The running agents in the command line's list of processes, by project and name in plain text order; those
/// without a project come first.
Result<QList<SoloAgent>, SoloError> agents(const QByteArray& processList);

/// The projects, by name as a person of the locale expects; without a locale, of the interface's.
Result<QList<SoloProject>, SoloError> projects(const QByteArray& output, const QString& locale = {});

/// The agent programs that are not switched off, in the order received.
Result<QList<SoloAgentTool>, SoloError> agentTools(const QByteArray& output);

/// The id of the process that was started.
Result<qint64, SoloError> spawnedProcessID(const QByteArray& output);

/// The link that opens a session in Solo; nothing if it would be no valid URL.
std::optional<QUrl> deepLink(qint64 projectID, const QString& type, const QString& name, qint64 id);

/// A text as a terminal's bracketed paste (xterm's mode 2004), so that line ends in it submit nothing. CR LF becomes
/// LF, and whatever would end the bracket or open another is taken out, also where taking one out makes another.
QString pastePayload(const QString& text);

/// The messages of an MCP conversation (protocol version 2024-11-05).
QJsonObject initializeRequest(qint64 id);
QJsonObject initializedNotification();

/// What is put into a session's terminal: a text, or bytes from 0 to 255, or neither. It is never submitted by this.
struct SoloInput {
    std::optional<QString> text;
    std::optional<QByteArray> bytes;
};

QJsonObject sendInputRequest(qint64 id, qint64 processID, std::optional<qint64> projectID, const SoloInput& input);

/// Whether the answer to a request of a tool tells of success.
Status<SoloError> checkToolResponse(const QJsonObject& response);

} // namespace SoloProtocol

} // namespace quillary
