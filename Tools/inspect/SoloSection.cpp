#include "QuillaryCore/Solo/SoloProtocol.h"
#include "Tools/inspect/Sections.h"

#include <utility>

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

void writeOptional(AnswerWriter& answer, QStringView name, const std::optional<QString>& value) {
    if (value) {
        answer.member(name, *value);
    } else {
        answer.nullMember(name);
    }
}

void writeSoloValue(AnswerWriter& answer, const SoloAgent& agent) {
    answer.beginObject();
    answer.member(u"id", agent.id);
    answer.member(u"name", agent.name);
    answer.member(u"command", agent.command);
    if (agent.projectId) {
        answer.member(u"projectId", *agent.projectId);
    } else {
        answer.nullMember(u"projectId");
    }
    writeOptional(answer, u"projectName", agent.projectName);
    answer.endObject();
}

void writeSoloValue(AnswerWriter& answer, const SoloProject& project) {
    answer.beginObject();
    answer.member(u"id", project.id);
    answer.member(u"name", project.name);
    answer.member(u"path", project.path);
    answer.endObject();
}

void writeSoloValue(AnswerWriter& answer, const SoloAgentTool& tool) {
    answer.beginObject();
    answer.member(u"id", tool.id);
    answer.member(u"name", tool.name);
    answer.member(u"toolType", tool.toolType);
    answer.endObject();
}

void writeSoloValue(AnswerWriter& answer, qint64 id) {
    answer.integer(id);
}

template <typename T>
void writeSoloValue(AnswerWriter& answer, const QList<T>& values) {
    answer.beginArray();
    for (const T& value : values) {
        writeSoloValue(answer, value);
    }
    answer.endArray();
}

/// Binds the reading of an answer of Solo to the writer of what it gives.
template <typename Read>
Prepared preparedReading(Arguments& arguments, Read read) {
    return prepared([body = arguments.text(u"body"_s).toUtf8(), read = std::move(read)] { return read(body); },
                    [](AnswerWriter& answer, const auto& result) {
                        if (result) {
                            answer.key(u"result");
                            writeSoloValue(answer, *result);
                        } else {
                            answer.member(u"failure", result.error().errorDescription());
                        }
                    });
}

/// Binds the making of a message to its writer.
template <typename Make>
Prepared preparedMessage(Make make) {
    return prepared(std::move(make), [](AnswerWriter& answer, const QJsonObject& message) {
        answer.key(u"message");
        answer.object(message);
    });
}

Prepared readSoloProjects(Arguments& arguments) {
    const QString locale = arguments.optionalText(u"locale"_s).value_or(QString());
    return preparedReading(arguments,
                           [locale](const QByteArray& body) { return SoloProtocol::projects(body, locale); });
}

Prepared makeSpawnArguments(Arguments& arguments) {
    return prepared(
        [projectID = arguments.integer(u"projectID"_s), toolID = arguments.integer(u"agentToolID"_s),
         name = arguments.text(u"name"_s), prompt = arguments.text(u"prompt"_s)] {
            return SoloProtocol::spawnArguments(projectID, toolID, name, prompt);
        },
        [](AnswerWriter& answer, const QStringList& vector) { answer.textsMember(u"arguments", vector); });
}

Prepared makeDeepLink(Arguments& arguments) {
    return prepared([projectID = arguments.integer(u"projectID"_s), type = arguments.text(u"type"_s),
                     name = arguments.text(u"name"_s),
                     id = arguments.integer(u"id"_s)] { return SoloProtocol::deepLink(projectID, type, name, id); },
                    [](AnswerWriter& answer, const std::optional<QUrl>& link) {
                        writeOptional(answer, u"link",
                                      link ? std::optional(link->toString(QUrl::FullyEncoded)) : std::nullopt);
                    });
}

Prepared makePastePayload(Arguments& arguments) {
    return prepared([text = arguments.text(u"text"_s)] { return SoloProtocol::pastePayload(text); },
                    [](AnswerWriter& answer, const QString& payload) { answer.member(u"text", payload); });
}

Prepared makeSendInputRequest(Arguments& arguments) {
    SoloProtocol::SoloInput input{.text = arguments.optionalText(u"text"_s), .bytes = {}};
    if (arguments.has(u"bytes"_s)) {
        QByteArray bytes;
        for (const qint64 byte : arguments.integers(u"bytes"_s)) {
            if (byte < 0 || byte > 255) {
                arguments.fail(u"bytes must be from 0 to 255"_s);
            }
            bytes.append(static_cast<char>(byte));
        }
        input.bytes = bytes;
    }
    return preparedMessage([id = arguments.integer(u"id"_s), processID = arguments.integer(u"processID"_s),
                            projectID = arguments.optionalInteger(u"projectID"_s), input = std::move(input)] {
        return SoloProtocol::sendInputRequest(id, processID, projectID, input);
    });
}

Prepared checkSoloToolResponse(Arguments& arguments) {
    return prepared([response = arguments.object(u"response"_s)] { return SoloProtocol::checkToolResponse(response); },
                    [](AnswerWriter& answer, const Status<SoloError>& status) {
                        if (status) {
                            answer.member(u"ok", true);
                        } else {
                            answer.member(u"failure", status.error().errorDescription());
                        }
                    });
}

} // namespace

void addSoloOperations(OperationTable& table) {
    table.insert(u"solo.agents"_s,
                 [](Arguments& arguments) { return preparedReading(arguments, &SoloProtocol::agents); });
    table.insert(u"solo.projects"_s, readSoloProjects);
    table.insert(u"solo.agentTools"_s,
                 [](Arguments& arguments) { return preparedReading(arguments, &SoloProtocol::agentTools); });
    table.insert(u"solo.spawnedProcessID"_s,
                 [](Arguments& arguments) { return preparedReading(arguments, &SoloProtocol::spawnedProcessID); });
    table.insert(u"solo.spawnArguments"_s, makeSpawnArguments);
    table.insert(u"solo.deepLink"_s, makeDeepLink);
    table.insert(u"solo.pastePayload"_s, makePastePayload);
    table.insert(u"solo.initializeRequest"_s, [](Arguments& arguments) {
        return preparedMessage([id = arguments.integer(u"id"_s)] { return SoloProtocol::initializeRequest(id); });
    });
    table.insert(u"solo.initializedNotification"_s,
                 [](Arguments&) { return preparedMessage([] { return SoloProtocol::initializedNotification(); }); });
    table.insert(u"solo.sendInputRequest"_s, makeSendInputRequest);
    table.insert(u"solo.checkToolResponse"_s, checkSoloToolResponse);
}

} // namespace quillary::inspect
