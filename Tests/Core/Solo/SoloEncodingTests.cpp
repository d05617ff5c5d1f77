#include "QuillaryCore/Solo/SoloProtocol.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

QJsonObject object(const char* json) {
    return QJsonDocument::fromJson(json).object();
}

/// What stands between the brackets of a payload.
QString pasted(const QString& text) {
    const QString payload = SoloProtocol::pastePayload(text);
    EXPECT_TRUE(payload.startsWith(u"\x1B[200~"));
    EXPECT_TRUE(payload.endsWith(u"\x1B[201~"));
    return payload.sliced(6, payload.size() - 12);
}

/// As it reads: take out all of one, then all of the other, until neither is left.
QString withoutBrackets(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s);
    for (qsizetype before = -1; before != text.size();) {
        before = text.size();
        text.remove(u"\x1B[201~"_s);
        text.remove(u"\x1B[200~"_s);
    }
    return text;
}

} // namespace

TEST(SoloSpawnArguments, AreTwelveInOrder) {
    EXPECT_EQ(
        SoloProtocol::spawnArguments(7, 12, u"La nota"_s, u"-- primo\nmessaggio"_s),
        QStringList({u"processes"_s, u"spawn"_s, u"--project-id"_s, u"7"_s, u"--kind"_s, u"agent"_s,
                     u"--agent-tool-id"_s, u"12"_s, u"--name"_s, u"La nota"_s, u"--arg"_s, u"-- primo\nmessaggio"_s}));
}

TEST(SoloDeepLink, HasASlugOfTheName) {
    const struct {
        QString name;
        QString link;
    } cases[] = {
        {u"Claude: Fix #12!"_s, u"solo://proj/7/agent/claude-fix-12--31"_s},
        {u"!!!"_s, u"solo://proj/7/agent/agent--31"_s},
        {u""_s, u"solo://proj/7/agent/agent--31"_s},
        {QString(30, u'x'), u"solo://proj/7/agent/xxxxxxxxxxxxxxxxxxxx--31"_s},
        {u"una nota di prova, lunga"_s, u"solo://proj/7/agent/una-nota-di-prova-lu--31"_s},
        {u"diciannove lettere a b"_s, u"solo://proj/7/agent/diciannove-lettere-a--31"_s},
        {u"diciannovelettereab c"_s, u"solo://proj/7/agent/diciannovelettereab---31"_s},
        {u"Perché NO"_s, u"solo://proj/7/agent/perch-no--31"_s},
        {u"日本"_s, u"solo://proj/7/agent/agent--31"_s},
    };

    for (const auto& each : cases) {
        const auto link = SoloProtocol::deepLink(7, u"agent"_s, each.name, 31);
        ASSERT_TRUE(link) << qPrintable(each.name);
        EXPECT_EQ(link->toString(), each.link);
    }
}

TEST(SoloPastePayload, IsABracketedPaste) {
    EXPECT_EQ(SoloProtocol::pastePayload(u"a\r\nb"_s), u"\x1B[200~a\nb\x1B[201~"_s);
    EXPECT_EQ(SoloProtocol::pastePayload({}), u"\x1B[200~\x1B[201~"_s);
}

TEST(SoloPastePayload, TakesOutWhatWouldEndOrOpenABracket) {
    const struct {
        QString text;
        QString pasted;
    } cases[] = {
        {u"a\rb"_s, u"a\rb"_s},
        {u"a\r\r\nb"_s, u"a\r\nb"_s},
        {u"a\x1B[201~b"_s, u"ab"_s},
        {u"\x1B[200~ab\x1B[201~"_s, u"ab"_s},
        {u"[201~ \x1B 201~ \\e[201~ \x1B[202~ \x1B[20"_s, u"[201~ \x1B 201~ \\e[201~ \x1B[202~ \x1B[20"_s},
        {u"\x1B[20\x1B[201~1~"_s, u""_s},
        {u"\x1B[20\x1B[200~1~x"_s, u"x"_s},
        {u"\x1B\x1B[2\x1B[201~01~[200~x"_s, u"x"_s},
        {u"\x1B[201\r\n~"_s, u"\x1B[201\n~"_s},
    };

    for (const auto& each : cases) {
        EXPECT_EQ(pasted(each.text), each.pasted) << qPrintable(each.text);
    }
}

TEST(SoloPastePayload, LeavesNoBracketWhateverTheText) {
    const QString pieces[] = {u"\x1B"_s, u"["_s,       u"20"_s, u"0"_s,  u"1"_s,
                              u"~"_s,    u"\x1B[20"_s, u"1~"_s, u"\r"_s, u"\n"_s};
    QRandomGenerator random(1);
    for (int i = 0; i < 3000; ++i) {
        QString text;
        for (int j = 0; j < 40; ++j) {
            text += pieces[random.bounded(int(std::size(pieces)))];
        }
        ASSERT_EQ(pasted(text), withoutBrackets(text)) << qPrintable(text);
    }
}

TEST(SoloMessages, OpenAConversation) {
    EXPECT_EQ(SoloProtocol::initializeRequest(1),
              object(R"({"jsonrpc": "2.0", "id": 1, "method": "initialize", "params":
        {"protocolVersion": "2024-11-05", "capabilities": {}, "clientInfo": {"name": "Quillary", "version": "1.0"}}})"));
    EXPECT_EQ(SoloProtocol::initializedNotification(),
              object(R"({"jsonrpc": "2.0", "method": "notifications/initialized"})"));
}

TEST(SoloMessages, SendATextOrBytesAndNeverSubmit) {
    EXPECT_EQ(
        SoloProtocol::sendInputRequest(2, 31, 7, {.text = u"ciao"_s, .bytes = {}}),
        object(R"({"jsonrpc": "2.0", "id": 2, "method": "tools/call", "params": {"name": "send_input", "arguments":
                  {"process_id": 31, "submit": false, "project_id": 7, "input": "ciao"}}})"));
    EXPECT_EQ(
        SoloProtocol::sendInputRequest(3, 31, {}, {.text = {}, .bytes = "\x0D\xFF"}),
        object(R"({"jsonrpc": "2.0", "id": 3, "method": "tools/call", "params": {"name": "send_input", "arguments":
                  {"process_id": 31, "submit": false, "bytes": [13, 255]}}})"));
}

} // namespace quillary
