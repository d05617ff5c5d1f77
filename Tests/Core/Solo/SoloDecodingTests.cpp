#include "QuillaryCore/Solo/SoloProtocol.h"

#include <QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// The description of the error that a list of processes gives; empty if it is none.
QString failure(const QByteArray& output) {
    const auto agents = SoloProtocol::agents(output);
    return agents ? QString() : agents.error().errorDescription();
}

QByteArray ok(const QByteArray& data) {
    return R"({"ok": true, "data": )" + data + "}";
}

QStringList names(const auto& list) {
    QStringList result;
    for (const auto& each : list) {
        result.append(each.name);
    }
    return result;
}

QString toolFailure(const char* response) {
    const auto status = SoloProtocol::checkToolResponse(QJsonDocument::fromJson(response).object());
    return status ? QString() : status.error().errorDescription();
}

} // namespace

TEST(SoloEnvelope, AFailureTellsThatSoloIsNotRunning) {
    EXPECT_EQ(failure(R"({"ok":true})"), u"Solo non risponde. È aperto?\n"_s);
    EXPECT_EQ(failure(R"({"ok":true,"data":null})"), u"Solo non risponde. È aperto?\n"_s);
    EXPECT_EQ(failure(R"({"ok":false})"), u"Solo non risponde. È aperto?\n"_s);
    EXPECT_EQ(failure(R"({"ok":false,"error":{}})"), u"Solo non risponde. È aperto?\n"_s);
    EXPECT_EQ(failure(R"({"ok":false,"error":{"message":"x"}})"), u"Solo non risponde. È aperto?\nx"_s);
    EXPECT_EQ(failure(R"({"ok":false,"data":{"processes":[]},"error":{"message":"x"}})"),
              u"Solo non risponde. È aperto?\nx"_s);
}

TEST(SoloEnvelope, IsReadWholeOrNotRecognised) {
    const char* const outputs[] = {
        "",
        "usage: solo [--json] COMMAND",
        "[]",
        R"({"data":{"processes":[]}})",
        R"({"ok":1,"data":{"processes":[]}})",
        R"({"ok":true,"data":[]})",
        R"({"ok":true,"data":{}})",
        R"({"ok":true,"data":{"processes":{}}})",
        R"({"ok":true,"data":{"processes":[1]}})",
        R"({"ok":false,"data":{"processes":7},"error":{"message":"x"}})",
        R"({"ok":false,"error":"x"})",
        R"({"ok":false,"error":{"message":7}})",
        R"({"ok":true,"data":{"processes":[]}} trailing)",
        // One malformed process spoils the list, also where it would have been dropped.
        R"({"ok":true,"data":{"processes":[{"id":"1","name":"a","kind":"agent","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1.5,"name":"a","kind":"agent","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1e30,"name":"a","kind":"agent","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":true,"name":"a","kind":"agent","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1,"kind":"agent","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1,"name":"a","status":"running"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1,"name":"a","kind":"terminal"}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1,"name":"a","kind":"terminal","status":"running","command":7}]}})",
        R"({"ok":true,"data":{"processes":[{"id":1,"name":"a","kind":"agent","status":"running","projectId":"7"}]}})",
    };
    for (const char* const output : outputs) {
        EXPECT_EQ(failure(output), u"Risposta di Solo non riconosciuta."_s) << output;
    }
}

TEST(SoloAgents, AreTheRunningProcessesOfKindAgent) {
    const auto agents = SoloProtocol::agents(ok(R"({"processes": [
        {"id": 1, "name": "a", "kind": "terminal", "status": "running"},
        {"id": 2, "name": "b", "kind": "agent", "status": "stopped"},
        {"id": 3, "name": "c", "kind": "Agent", "status": "running"},
        {"id": 9007199254740993, "name": "d", "kind": "agent", "status": "running", "command": "claude", "projectId": 7.0,
         "projectName": "p", "more": []},
        {"id": 5, "name": "e", "kind": "agent", "status": "running", "command": null, "projectId": null}]})"));
    ASSERT_TRUE(agents);
    EXPECT_THAT(*agents, testing::ElementsAre(SoloAgent{5, u"e"_s, u""_s, {}, {}},
                                              SoloAgent{9007199254740993, u"d"_s, u"claude"_s, 7, u"p"_s}));
}

TEST(SoloAgents, AreInTheOrderOfProjectAndName) {
    const auto agents = SoloProtocol::agents(ok(R"({"processes": [
        {"id": 1, "name": "z", "kind": "agent", "status": "running", "projectName": "b"},
        {"id": 2, "name": "b", "kind": "agent", "status": "running", "projectName": "a"},
        {"id": 3, "name": "B", "kind": "agent", "status": "running", "projectName": "a"},
        {"id": 4, "name": "x", "kind": "agent", "status": "running"},
        {"id": 5, "name": "b", "kind": "agent", "status": "running", "projectName": "a"},
        {"id": 6, "name": "y", "kind": "agent", "status": "running", "projectName": ""},
        {"id": 7, "name": "10", "kind": "agent", "status": "running", "projectName": "Z"},
        {"id": 8, "name": "2", "kind": "agent", "status": "running", "projectName": "Z"}]})"));
    ASSERT_TRUE(agents);
    QList<qint64> ids;
    for (const SoloAgent& agent : *agents) {
        ids.append(agent.id);
    }
    EXPECT_EQ(ids, QList<qint64>({4, 6, 7, 8, 3, 2, 5, 1}));
}

TEST(SoloAgents, CanBeReadByTheirOwnKeys) {
    const auto read = [](const char* json) { return SoloAgent::fromJson(QJsonDocument::fromJson(json).object()); };
    EXPECT_EQ(read(R"({"id": 1, "name": "a", "command": "c", "projectId": 2, "projectName": "p"})"),
              (SoloAgent{1, u"a"_s, u"c"_s, 2, u"p"_s}));
    EXPECT_EQ(read(R"({"id": 1, "name": "a", "command": "c"})"), (SoloAgent{1, u"a"_s, u"c"_s, {}, {}}));
    EXPECT_EQ(read(R"({"id": 1, "name": "a"})"), std::nullopt);
    EXPECT_EQ(read(R"({"id": 1, "name": "a", "command": "c", "projectId": "2"})"), std::nullopt);
}

TEST(SoloProjects, ShowTheirDisplayNameInTheOrderOfAPerson) {
    const auto projects = SoloProtocol::projects(ok(R"({"projects": [
        {"id": 1, "name": "Progetto 10", "path": "/tmp/p"},
        {"id": 2, "name": "x", "displayName": "Progetto 2"},
        {"id": 3, "name": "alfa", "displayName": ""}]})"),
                                                 u"it"_s);
    ASSERT_TRUE(projects);
    EXPECT_THAT(*projects,
                testing::ElementsAre(SoloProject{3, u"alfa"_s, u""_s}, SoloProject{2, u"Progetto 2"_s, u""_s},
                                     SoloProject{1, u"Progetto 10"_s, u"/tmp/p"_s}));
}

TEST(SoloAgentTools, AreThoseThatAreNotSwitchedOff) {
    const auto tools = SoloProtocol::agentTools(ok(R"({"agentTools": [
        {"id": 3, "name": "c", "toolType": "claude", "enabled": true},
        {"id": 2, "name": "b", "enabled": false},
        {"id": 1, "name": "a"}]})"));
    ASSERT_TRUE(tools);
    EXPECT_THAT(*tools, testing::ElementsAre(SoloAgentTool{3, u"c"_s, u"claude"_s}, SoloAgentTool{1, u"a"_s, u""_s}));
    const auto spoiled = SoloProtocol::agentTools(ok(R"({"agentTools": [{"id": 3, "name": "c", "enabled": "yes"}]})"));
    ASSERT_FALSE(spoiled);
    EXPECT_EQ(spoiled.error(), SoloError::unexpectedResponse());
}

TEST(SoloSpawnedProcess, IsTheIdOfThePayload) {
    const auto id = SoloProtocol::spawnedProcessID(ok(R"({"id": 31})"));
    ASSERT_TRUE(id);
    EXPECT_EQ(*id, 31);
    EXPECT_EQ(SoloProtocol::spawnedProcessID(ok(R"({"id": "31"})")).error(), SoloError::unexpectedResponse());
    EXPECT_EQ(SoloProtocol::spawnedProcessID(ok("{}")).error(), SoloError::unexpectedResponse());
}

TEST(SoloToolResponse, TheFirstCaseThatFitsDecides) {
    const struct {
        const char* response;
        QString failure;
    } cases[] = {
        {"{}", u"Risposta di Solo non riconosciuta."_s},
        {R"({"error": {"message": "no"}, "result": {}})", u"Invio non riuscito: no"_s},
        {R"({"error": {"message": 7}})", u"Invio non riuscito: errore sconosciuto"_s},
        {R"({"error": {}})", u"Invio non riuscito: errore sconosciuto"_s},
        {R"({"error": "x", "result": {}})", u""_s},
        {R"({"error": null})", u"Risposta di Solo non riconosciuta."_s},
        {R"({"id": 2})", u"Risposta di Solo non riconosciuta."_s},
        {R"({"result": []})", u"Risposta di Solo non riconosciuta."_s},
        {R"({"result": {}})", u""_s},
        {R"({"result": {"isError": false, "content": 7}})", u""_s},
        {R"({"result": {"isError": 1}})", u""_s},
        {R"({"result": {"isError": true}})", u"Invio non riuscito: errore sconosciuto"_s},
        {R"({"result": {"isError": true, "content": {}}})", u"Invio non riuscito: errore sconosciuto"_s},
        {R"({"result": {"isError": true, "content": ["a"]}})", u"Invio non riuscito: errore sconosciuto"_s},
        {R"({"result": {"isError": true, "content": []}})", u"Invio non riuscito: "_s},
        {R"({"result": {"isError": true, "content": [{"text": "a"}, {"type": "image"}, {"text": 7}, {"text": "b"}]}})",
         u"Invio non riuscito: a b"_s},
    };

    for (const auto& each : cases) {
        EXPECT_EQ(toolFailure(each.response), each.failure) << each.response;
    }
}

TEST(SoloError, SaysWhatTheUserReads) {
    EXPECT_EQ(SoloError::notInstalled().errorDescription(),
              u"Solo non è installato (manca la riga di comando «solo»)."_s);
    EXPECT_EQ(SoloError::timedOut().errorDescription(), u"Solo non ha risposto in tempo."_s);
}

} // namespace quillary
