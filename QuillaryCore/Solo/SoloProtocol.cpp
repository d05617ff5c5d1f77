#include "QuillaryCore/Solo/SoloProtocol.h"

#include "QuillaryCore/Solo/JSONFields.h"
#include "QuillaryCore/Solo/SoloEnvelope.h"
#include "QuillaryCore/Unicode/Collation.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView bracketStart = u"\x1B[200~";
constexpr QStringView bracketEnd = u"\x1B[201~";
constexpr qsizetype longestSlug = 20;

/// The payload of an answer; `read` makes it of the fields of the envelope's `data`.
template <typename ReadPayload>
auto payloadOf(const QByteArray& output, ReadPayload read)
    -> Result<std::invoke_result_t<ReadPayload, JSONFields&>, SoloError> {
    using Payload = std::invoke_result_t<ReadPayload, JSONFields&>;
    const auto envelope = SoloEnvelope<Payload>::decode(output, read);
    if (!envelope) {
        return SoloError::unexpectedResponse();
    }
    return envelope->payload();
}

/// The objects of a list that the payload has under a key; `take` gets the fields of each. One that isn't as it should
/// be spoils the payload.
template <typename Take>
void forEachObject(JSONFields& payload, const QString& key, Take take) {
    const QJsonArray objects = payload.array(key);
    for (const QJsonValue& object : objects) {
        JSONFields fields(object.toObject());
        take(fields);
        if (!object.isObject() || !fields.isValid()) {
            payload.invalidate();
        }
    }
}

/// The order of plain texts: by code points, canonically equivalent texts being equal.
std::u32string plainOrderKey(const QString& text) {
    return text.normalized(QString::NormalizationForm_C).toStdU32String();
}

QJsonObject request(const QString& method) {
    return {{u"jsonrpc"_s, u"2.0"_s}, {u"method"_s, method}};
}

/// The texts of a tool's answer, joined by blanks; nothing if it is no list of objects.
std::optional<QString> contentText(const QJsonValue& content) {
    if (!content.isArray()) {
        return std::nullopt;
    }
    QStringList texts;
    const QJsonArray entries = content.toArray();
    for (const QJsonValue& entry : entries) {
        if (!entry.isObject()) {
            return std::nullopt;
        }
        if (const QJsonValue text = entry[u"text"_s]; text.isString()) {
            texts.append(text.toString());
        }
    }
    return texts.join(u' ');
}

SoloError sendFailed(const std::optional<QString>& message) {
    return SoloError::sendFailed(message ? *message
                                         : QCoreApplication::translate("SoloProtocol", "errore sconosciuto"));
}

} // namespace

QStringList SoloProtocol::spawnArguments(qint64 projectID, qint64 agentToolID, const QString& name,
                                         const QString& prompt) {
    return {u"processes"_s, u"spawn"_s, u"--project-id"_s,    QString::number(projectID),
            u"--kind"_s,    u"agent"_s, u"--agent-tool-id"_s, QString::number(agentToolID),
            u"--name"_s,    name,       u"--arg"_s,           prompt};
}

Result<QList<SoloAgent>, SoloError> SoloProtocol::agents(const QByteArray& processList) {
    auto running = payloadOf(processList, [](JSONFields& payload) {
        QList<SoloAgent> found;
        forEachObject(payload, u"processes"_s, [&found](JSONFields& process) {
            const SoloAgent agent{
                .id = process.integer(u"id"_s),
                .name = process.text(u"name"_s),
                .command = process.optionalText(u"command"_s).value_or(QString()),
                .projectId = process.optionalInteger(u"projectId"_s),
                .projectName = process.optionalText(u"projectName"_s),
            };
            const QString kind = process.text(u"kind"_s);
            const QString status = process.text(u"status"_s);
            if (kind == u"agent" && status == u"running") {
                found.append(agent);
            }
        });
        return found;
    });
    if (running) {
        std::ranges::stable_sort(*running, {}, [](const SoloAgent& agent) {
            return std::pair(plainOrderKey(agent.projectName.value_or(QString())), plainOrderKey(agent.name));
        });
    }
    return running;
}

Result<QList<SoloProject>, SoloError> SoloProtocol::projects(const QByteArray& output, const QString& locale) {
    auto all = payloadOf(output, [](JSONFields& payload) {
        QList<SoloProject> found;
        forEachObject(payload, u"projects"_s, [&found](JSONFields& project) {
            SoloProject each{
                .id = project.integer(u"id"_s),
                .name = project.text(u"name"_s),
                .path = project.optionalText(u"path"_s).value_or(QString()),
            };
            const QString displayName = project.optionalText(u"displayName"_s).value_or(QString());
            if (!displayName.isEmpty()) {
                each.name = displayName;
            }
            found.append(each);
        });
        return found;
    });
    if (all) {
        const QString collation = locale.isEmpty() ? interfaceLocale() : locale;
        std::ranges::stable_sort(*all, [&collation](const SoloProject& a, const SoloProject& b) {
            return localizedStandardCompare(a.name, b.name, collation) < 0;
        });
    }
    return all;
}

Result<QList<SoloAgentTool>, SoloError> SoloProtocol::agentTools(const QByteArray& output) {
    return payloadOf(output, [](JSONFields& payload) {
        QList<SoloAgentTool> found;
        forEachObject(payload, u"agentTools"_s, [&found](JSONFields& tool) {
            const SoloAgentTool each{
                .id = tool.integer(u"id"_s),
                .name = tool.text(u"name"_s),
                .toolType = tool.optionalText(u"toolType"_s).value_or(QString()),
            };
            if (tool.optionalBoolean(u"enabled"_s).value_or(true)) {
                found.append(each);
            }
        });
        return found;
    });
}

Result<qint64, SoloError> SoloProtocol::spawnedProcessID(const QByteArray& output) {
    return payloadOf(output, [](JSONFields& payload) { return payload.integer(u"id"_s); });
}

std::optional<QUrl> SoloProtocol::deepLink(qint64 projectID, const QString& type, const QString& name, qint64 id) {
    static const QRegularExpression others(u"[^a-z0-9]+"_s);
    QString slug = name.toLower().replace(others, u"-"_s);
    if (slug.startsWith(u'-')) {
        slug.remove(0, 1);
    }
    if (slug.endsWith(u'-')) {
        slug.chop(1);
    }
    slug = slug.isEmpty() ? type : slug.left(longestSlug);
    const QUrl link(u"solo://proj/%1/"_s.arg(projectID) + type + u'/' + slug + u"--" + QString::number(id));
    return link.isValid() ? std::optional(link) : std::nullopt;
}

QString SoloProtocol::pastePayload(const QString& text) {
    QString payload;
    payload.reserve(bracketStart.size() + text.size() + bracketEnd.size());
    payload += bracketStart;
    const qsizetype start = payload.size();
    const QStringView rest(text);
    for (qsizetype i = 0; i < rest.size(); ++i) {
        if (rest[i] == u'\r' && i + 1 < rest.size() && rest[i + 1] == u'\n') {
            continue;
        }
        payload += rest[i];
        // The two sequences can't overlap, so taking each out as soon as it stands complete, also of pieces around
        // one taken out before, leaves what taking them out in any order until none is left would.
        if (rest[i] == u'~') {
            const QStringView note = QStringView(payload).sliced(start);
            if (note.endsWith(bracketStart) || note.endsWith(bracketEnd)) {
                payload.chop(bracketStart.size());
            }
        }
    }
    payload += bracketEnd;
    return payload;
}

QJsonObject SoloProtocol::initializeRequest(qint64 id) {
    QJsonObject message = request(u"initialize"_s);
    message[u"id"_s] = id;
    message[u"params"_s] = QJsonObject{
        {u"protocolVersion"_s, u"2024-11-05"_s},
        {u"capabilities"_s, QJsonObject()},
        {u"clientInfo"_s, QJsonObject{{u"name"_s, u"Quillary"_s}, {u"version"_s, u"1.0"_s}}},
    };
    return message;
}

QJsonObject SoloProtocol::initializedNotification() {
    return request(u"notifications/initialized"_s);
}

QJsonObject SoloProtocol::sendInputRequest(qint64 id, qint64 processID, std::optional<qint64> projectID,
                                           const SoloInput& input) {
    QJsonObject arguments{{u"process_id"_s, processID}, {u"submit"_s, false}};
    if (projectID) {
        arguments[u"project_id"_s] = *projectID;
    }
    if (input.text) {
        arguments[u"input"_s] = *input.text;
    }
    if (input.bytes) {
        QJsonArray bytes;
        for (const char byte : *input.bytes) {
            bytes.append(static_cast<unsigned char>(byte));
        }
        arguments[u"bytes"_s] = bytes;
    }
    QJsonObject message = request(u"tools/call"_s);
    message[u"id"_s] = id;
    message[u"params"_s] = QJsonObject{{u"name"_s, u"send_input"_s}, {u"arguments"_s, arguments}};
    return message;
}

Status<SoloError> SoloProtocol::checkToolResponse(const QJsonObject& response) {
    if (response.isEmpty()) {
        return SoloError::unexpectedResponse();
    }
    if (const QJsonValue error = response[u"error"_s]; error.isObject()) {
        const QJsonValue message = error[u"message"_s];
        return sendFailed(message.isString() ? std::optional(message.toString()) : std::nullopt);
    }
    const QJsonValue result = response[u"result"_s];
    if (!result.isObject()) {
        return SoloError::unexpectedResponse();
    }
    if (!result[u"isError"_s].toBool(false)) {
        return Done();
    }
    return sendFailed(contentText(result[u"content"_s]));
}

} // namespace quillary
