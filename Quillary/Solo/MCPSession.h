#pragma once

#include "Quillary/Solo/SoloClient.h"

#include <QJsonObject>

namespace quillary {

class ChildProcess;

/// The framing of one conversation with an MCP server over its standard streams: each message is one JSON object on a
/// line of its own.
class MCPSession {
public:
    /// Talks to a server that has been started; it must outlive the session.
    explicit MCPSession(ChildProcess& server) : m_server(server) {}

    Status<SoloFailure> send(const QJsonObject& message);

    /// The response to the request of this id. Whatever else the server says meanwhile is dropped. Fails when the
    /// server ends or is ended before.
    Result<QJsonObject, SoloFailure> response(qint64 id);

private:
    ChildProcess& m_server;
    /// How much of the server's output was searched for the end of a line.
    qsizetype m_searched = 0;
};

} // namespace quillary
