#include "Quillary/Solo/SoloClient.h"

#include "FakeSolo.h"
#include "Quillary/Solo/Cancellation.h"
#include "QuillaryCore/Solo/SoloProtocol.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <sys/wait.h>
#include <thread>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SoloClientTest : public testing::Test {
protected:
    /// No child is left behind, and no descriptor.
    void SetUp() override { m_descriptors = descriptors(); }

    void TearDown() override {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left behind";
        EXPECT_EQ(descriptors(), m_descriptors);
    }

    static qsizetype descriptors() { return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size(); }

    QString runCLI(const QStringList& arguments) {
        const auto output = client.runCLI(arguments, cancellation);
        return output ? QString::fromUtf8(*output) : u"failed: "_s + localizedDescription(output.error());
    }

    QString paste(const QString& text, std::optional<qint64> projectID = 7, bool submit = false) {
        const auto done = client.paste(text, 31, projectID, submit, cancellation);
        return done ? u"done"_s : localizedDescription(done.error());
    }

    /// A client that waits for another time than usual.
    static SoloClient limited(std::chrono::milliseconds timeLimit) {
        return {test::FakeSolo::program(), test::FakeSolo::program(), timeLimit};
    }

    test::FakeSolo solo;
    Cancellation cancellation;
    SoloClient client{test::FakeSolo::program(), test::FakeSolo::program()};

private:
    qsizetype m_descriptors = 0;
};

const QString timedOut = u"Solo non ha risposto in tempo."_s;

/// An answer that opens a conversation, and one to the request of this id.
const QStringList opened{u"read"_s, u"out {\"id\": 1, \"result\": {}}"_s, u"read"_s};
const QString answered2 = u"out {\"id\": 2, \"result\": {}}"_s;
const QString answered3 = u"out {\"id\": 3, \"result\": {}}"_s;

} // namespace

TEST_F(SoloClientTest, TakesTheFirstPathThatIsAnExecutableFile) {
    const auto make = [this](const QString& name, QFile::Permissions permissions) {
        QFile file(solo.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.setPermissions(permissions));
    };
    const QFile::Permissions plain = QFile::ReadOwner | QFile::WriteOwner;
    make(u"plain"_s, plain);
    make(u"first"_s, plain | QFile::ExeOwner | QFile::ExeUser);
    make(u"second"_s, plain | QFile::ExeOwner | QFile::ExeUser);
    ASSERT_TRUE(QDir(solo.path({})).mkdir(u"directory"_s));

    EXPECT_EQ(SoloClient::firstExecutable({solo.path(u"missing"_s), solo.path(u"directory"_s), solo.path(u"plain"_s),
                                           solo.path(u"first"_s), solo.path(u"second"_s)}),
              solo.path(u"first"_s));
    EXPECT_EQ(SoloClient::firstExecutable({solo.path(u"directory"_s), solo.path(u"plain"_s)}), std::nullopt);
    EXPECT_EQ(SoloClient::firstExecutable({}), std::nullopt);
}

TEST_F(SoloClientTest, FindsSoloUnderTheHomeDirectory) {
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(solo.path({})));
    ASSERT_TRUE(QDir(solo.path({})).mkpath(u".local/bin"_s));
    ASSERT_TRUE(QFile::link(test::FakeSolo::program(), solo.path(u".local/bin/solo"_s)));
    const SoloClient found = SoloClient::find();
    qputenv("HOME", home);
    EXPECT_EQ(found.cliPath(), QDir::cleanPath(solo.path(u".local/bin/solo"_s)));
    EXPECT_EQ(found.mcpPath(), std::nullopt);
}

TEST_F(SoloClientTest, WithoutSoloEveryCallSaysSo) {
    client = SoloClient({}, {});
    EXPECT_EQ(runCLI({u"agents"_s}), u"failed: Solo non è installato (manca la riga di comando «solo»)."_s);
    EXPECT_EQ(paste(u"x"_s), u"Solo non è installato (manca la riga di comando «solo»)."_s);
}

TEST_F(SoloClientTest, ProgramsThatCantStartGiveTheSystemsError) {
    client = SoloClient(u"/nowhere/solo"_s, u"/nowhere/mcp"_s);
    EXPECT_EQ(runCLI({u"agents"_s}), u"failed: "_s + SystemError{ENOENT}.localizedDescription());
    EXPECT_EQ(paste(u"x"_s), SystemError{ENOENT}.localizedDescription());
}

TEST_F(SoloClientTest, ACommandGetsItsArgumentsAndGivesItsOutputWhateverItsExitCode) {
    solo.play(u"agents.list"_s, {u"out {\"ok\": false}"_s, u"exit 3"_s});
    EXPECT_EQ(runCLI({u"agents"_s, u"list"_s}), u"{\"ok\": false}\n"_s);
    EXPECT_EQ(solo.log(u"agents.list"_s), QStringList(u"--json\x1F"
                                                      "agents\x1Flist"_s));
}

TEST_F(SoloClientTest, TextsArriveUnchanged) {
    solo.play(u"processes.spawn"_s, {u"out {}"_s});
    const QString prompt = u"-- \"perché\" $HOME `x` \U0001F600 città\\n"_s;
    runCLI(SoloProtocol::spawnArguments(1, 2, u"n"_s, prompt));
    ASSERT_EQ(solo.log(u"processes.spawn"_s).size(), 1);
    EXPECT_EQ(solo.log(u"processes.spawn"_s).constFirst().split(u'\x1F').constLast(), prompt);
}

TEST_F(SoloClientTest, ALargeOutputIsReadInFull) {
    solo.play(u"agents.list"_s, {u"errors 1000000"_s, u"big 20000000"_s, u"errors 1000000"_s, u"out end"_s});
    const QString output = runCLI({u"agents"_s, u"list"_s});
    EXPECT_EQ(output.size(), 20'000'004);
    EXPECT_TRUE(output.endsWith(u"xend\n"));
}

TEST_F(SoloClientTest, ACommandThatASignalEndsHasTimedOut) {
    solo.play(u"agents.list"_s, {u"out {}"_s, u"crash"_s});
    EXPECT_EQ(runCLI({u"agents"_s, u"list"_s}), u"failed: "_s + timedOut);
}

TEST_F(SoloClientTest, AnArgumentThatIsTooLongIsTheSystemsError) {
    solo.play(u"processes.spawn"_s, {u"out {}"_s});
    EXPECT_EQ(runCLI(SoloProtocol::spawnArguments(1, 2, u"n"_s, QString(200'000, u'x'))),
              u"failed: "_s + SystemError{E2BIG}.localizedDescription());
    EXPECT_TRUE(solo.log(u"processes.spawn"_s).isEmpty());
}

TEST_F(SoloClientTest, ATextWithANulIsNoArgument) {
    solo.play(u"processes.spawn"_s, {u"out {}"_s});
    EXPECT_EQ(runCLI(SoloProtocol::spawnArguments(1, 2, u"n"_s, u"a\0b"_s)),
              u"failed: Invio non riuscito: il testo contiene un carattere nullo"_s);
    EXPECT_TRUE(solo.log(u"processes.spawn"_s).isEmpty());
}

TEST_F(SoloClientTest, ACommandThatNeverEndsIsEnded) {
    solo.play(u"agents.list"_s, {u"out {}"_s, u"hang"_s});
    client = limited(200ms);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(runCLI({u"agents"_s, u"list"_s}), u"failed: "_s + timedOut);
    EXPECT_GE(timer.elapsed(), 200);
}

TEST_F(SoloClientTest, AnotherProcessThatHoldsTheOutputIsNotWaitedForForEver) {
    solo.play(u"agents.list"_s, {u"out {}"_s, u"hold-output"_s});
    client = limited(500ms);
    // By the limit the command may have ended by itself, or not yet.
    EXPECT_THAT(runCLI({u"agents"_s, u"list"_s}), testing::AnyOf(u"{}\n"_s, u"failed: "_s + timedOut));
}

TEST_F(SoloClientTest, ACancelledCommandEndsSoonAlsoIfItDoesNotListen) {
    for (const QStringList& steps : {QStringList{u"hang"_s}, QStringList{u"ignore-term"_s, u"hang"_s}}) {
        QFile::remove(solo.path(u"agents.list.log"_s));
        solo.play(u"agents.list"_s, steps);
        client = limited(1h);
        const Cancellation cancelled;
        std::thread canceller([this, &cancelled] {
            while (solo.log(u"agents.list"_s).size() < 2) {
                std::this_thread::yield();
            }
            cancelled.cancel();
        });
        const auto output = client.runCLI({u"agents"_s, u"list"_s}, cancelled);
        canceller.join();
        ASSERT_FALSE(output);
        EXPECT_EQ(localizedDescription(output.error()), timedOut);
    }
}

TEST_F(SoloClientTest, APasteIsOneConversation) {
    solo.play(u"mcp"_s, opened + QStringList{u"read"_s, answered2, u"read"_s});
    EXPECT_EQ(paste(u"ciao\r\nmondo"_s), u"done"_s);
    const QList<QJsonObject> messages = solo.messages();
    ASSERT_GE(messages.size(), 3);
    EXPECT_EQ(messages[0], SoloProtocol::initializeRequest(1));
    EXPECT_EQ(messages[1], SoloProtocol::initializedNotification());
    EXPECT_EQ(messages[2],
              SoloProtocol::sendInputRequest(2, 31, 7, {.text = u"\x1B[200~ciao\nmondo\x1B[201~"_s, .bytes = {}}));
    EXPECT_LE(messages.size(), 4);
    for (qsizetype i = 3; i < messages.size(); ++i) {
        EXPECT_TRUE(messages[i].isEmpty()) << "a third message";
    }
}

TEST_F(SoloClientTest, TheReturnTravelsByItself) {
    solo.play(u"mcp"_s, opened + QStringList{u"read"_s, answered2, u"read"_s, answered3});
    EXPECT_EQ(paste(u"x"_s, std::nullopt, true), u"done"_s);
    const QList<QJsonObject> messages = solo.messages();
    ASSERT_GE(messages.size(), 4);
    EXPECT_EQ(messages[2], SoloProtocol::sendInputRequest(2, 31, {}, {.text = u"\x1B[200~x\x1B[201~"_s, .bytes = {}}));
    EXPECT_EQ(messages[3], SoloProtocol::sendInputRequest(3, 31, {}, {.text = {}, .bytes = "\r"}));
}

TEST_F(SoloClientTest, SkipsWhatIsNoResponseToTheRequest) {
    solo.play(u"mcp"_s,
              {u"out Solo MCP 1.0"_s, u"out"_s, u"out [1]"_s, u"out {\"method\": \"log\"}"_s, u"read"_s,
               u"out {\"id\": \"1\"}"_s, u"raw {\"id\": 1, \"result\""_s, u"sleep 0.05"_s, u"raw : {}}\\n"_s, u"read"_s,
               u"read"_s, u"raw {\"id\": 1, \"error\": {}}\\n{\"id\": 2.5}\\n{\"id\": 2, \"result\": {}}\\n"_s,
               u"read"_s});
    EXPECT_EQ(paste(u"x"_s), u"done"_s);
}

TEST_F(SoloClientTest, TwoResponsesInOneReadAreServedOneAtATime) {
    solo.play(u"mcp"_s,
              opened + QStringList{u"read"_s, u"raw {\"id\": 2, \"result\": {}}\\n{\"id\": 3, \"result\": {}}\\n"_s,
                                   u"read"_s});
    EXPECT_EQ(paste(u"x"_s, 7, true), u"done"_s);
}

TEST_F(SoloClientTest, ARefusedPasteIsNotSubmitted) {
    solo.play(u"mcp"_s, opened + QStringList{u"read"_s, u"out {\"id\": 2, \"error\": {\"message\": \"no\"}}"_s,
                                             u"read"_s, answered3});
    EXPECT_EQ(paste(u"x"_s, 7, true), u"Invio non riuscito: no"_s);
    for (qsizetype i = 3; i < solo.messages().size(); ++i) {
        EXPECT_TRUE(solo.messages()[i].isEmpty());
    }
}

TEST_F(SoloClientTest, AServerThatGoesAwayHasTimedOut) {
    for (const QStringList& steps :
         {QStringList{u"exit 0"_s}, QStringList{u"read"_s, u"close-output"_s, u"read"_s, u"read"_s},
          QStringList{u"crash"_s}, opened + QStringList{u"read"_s, u"raw {\"id\": 2"_s, u"exit 0"_s}}) {
        solo.play(u"mcp"_s, steps);
        const QString outcome = paste(u"x"_s);
        // It may be gone before it is written to.
        EXPECT_THAT(outcome, testing::AnyOf(timedOut, SystemError{EPIPE}.localizedDescription()))
            << qPrintable(steps.join(u", "));
    }
}

TEST_F(SoloClientTest, AServerThatEndedBeforeItIsWrittenToGivesTheSystemsError) {
    // More than the pipe holds, so that the write meets the closed end.
    solo.play(u"mcp"_s, opened + QStringList{u"exit 0"_s});
    EXPECT_THAT(paste(QString(1'000'000, u'x')), testing::AnyOf(timedOut, SystemError{EPIPE}.localizedDescription()));
}

TEST_F(SoloClientTest, ALargePasteDoesNotBlockOnAServerThatTalksMeanwhile) {
    solo.play(u"mcp"_s, opened + QStringList{u"big 1000000"_s, u"out"_s, u"read"_s, answered2, u"read"_s});
    EXPECT_EQ(paste(QString(3'000'000, u'x')), u"done"_s);
}

TEST_F(SoloClientTest, TheTimeLimitIsOneForAWholeConversation) {
    // Each answer takes less than the limit, and both together more.
    solo.play(u"mcp"_s, {u"read"_s, u"sleep 0.6"_s, u"out {\"id\": 1}"_s, u"read"_s, u"read"_s, u"sleep 0.6"_s,
                         answered2, u"read"_s});
    client = limited(1s);
    EXPECT_EQ(paste(u"x"_s), timedOut);
}

TEST_F(SoloClientTest, TheTimeLimitHoldsForAServerThatDoesNotRead) {
    solo.play(u"mcp"_s, {u"out {\"id\": 1}"_s, u"hang"_s});
    client = limited(500ms);
    EXPECT_EQ(paste(QString(3'000'000, u'x')), timedOut);
}

TEST_F(SoloClientTest, TheTimeLimitHoldsForAServerThatKeepsTalking) {
    solo.play(u"mcp"_s, {u"read"_s, u"ignore-term"_s, u"chatter"_s});
    client = limited(500ms);
    EXPECT_EQ(paste(u"x"_s), timedOut);
}

TEST_F(SoloClientTest, TheReturnWaitsForTheTerminalToTakeThePasteIn) {
    EXPECT_EQ(SoloClient::pauseBeforeSubmit, 200ms);
    solo.play(u"mcp"_s, opened + QStringList{u"read"_s, answered2, u"read"_s, answered3});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(paste(u"x"_s, 7, true), u"done"_s);
    EXPECT_GE(timer.elapsed(), SoloClient::pauseBeforeSubmit.count());
}

TEST(SoloClient, LimitsACallToTenSeconds) {
    EXPECT_EQ(SoloClient({}, {}).timeLimit(), 10s);
    EXPECT_EQ(SoloClient::find().timeLimit(), 10s);
}

} // namespace quillary
