#include "Quillary/Solo/MCPSession.h"

#include "Quillary/Solo/ChildProcess.h"

#include <QJsonDocument>
#include <QJsonValue>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// Whether a response carries this id. One that is written as a text or with a fraction doesn't.
bool answers(const QJsonObject& message, qint64 id) {
    const QJsonValue answered = message.value(u"id"_s);
    return answered.isDouble() && answered.toInteger(id - 1) == id;
}

} // namespace

Status<SoloFailure> MCPSession::send(const QJsonObject& message) {
    const auto written = m_server.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
    if (written) {
        return Done();
    }
    if (m_server.wasStopped()) {
        return SoloFailure(SoloError::timedOut());
    }
    return SoloFailure(written.error());
}

Result<QJsonObject, SoloFailure> MCPSession::response(qint64 id) {
    QByteArray& buffer = m_server.output();
    while (true) {
        const qsizetype end = buffer.indexOf('\n', m_searched);
        if (end < 0) {
            m_searched = buffer.size();
            if (!m_server.readMore()) {
                return SoloFailure(SoloError::timedOut());
            }
            continue;
        }
        const QJsonObject message = QJsonDocument::fromJson(buffer.first(end)).object();
        buffer.remove(0, end + 1);
        m_searched = 0;
        if (answers(message, id)) {
            return message;
        }
    }
}

} // namespace quillary
