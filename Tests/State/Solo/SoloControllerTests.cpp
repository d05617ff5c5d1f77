#include "Quillary/Solo/SoloController.h"

#include "FakeSolo.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"

#include "Tests/State/FakeDesktop.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

class SoloControllerTest : public testing::Test {
protected:
    void SetUp() override {
        AppActions::shared().desktop = &desktop;
        solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": [
            {"id": 4, "name": "Codex", "toolType": "codex"}, {"id": 5, "name": "Claude", "toolType": "claude"}]}})"_s
                                         .simplified()});
        solo.play(u"projects.list"_s, {uR"(out {"ok": true, "data": {"projects": [
            {"id": 8, "name": "Zeta"}, {"id": 9, "name": "Alfa"}]}})"_s.simplified()});
        solo.play(u"processes.list"_s, {uR"(out {"ok": true, "data": {"processes": [
            {"id": 31, "name": "Sessione", "kind": "agent", "status": "running", "projectId": 9, "projectName": "Alfa"},
            {"id": 32, "name": "Libera", "kind": "agent", "status": "running"}]}})"_s.simplified()});
        solo.play(u"processes.spawn"_s, {uR"(out {"ok": true, "data": {"id": 77}})"_s});
        solo.play(u"mcp"_s, {u"read"_s, u"out {\"id\": 1, \"result\": {}}"_s, u"read"_s, u"read"_s,
                             u"out {\"id\": 2, \"result\": {}}"_s, u"read"_s, u"out {\"id\": 3, \"result\": {}}"_s});
    }

    static bool await(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 30'000); }

    void refresh() {
        controller.refresh();
        EXPECT_TRUE(controller.isLoading());
        ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    }

    void awaitSent() {
        EXPECT_TRUE(controller.isSending());
        ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    }

    test::FakeSolo solo;
    test::FakeDesktop desktop;
    AppSettings settings{Preferences(FilePath::fromText(solo.path(u"preferences.json"_s)))};
    SoloController controller{settings, SoloClient(test::FakeSolo::program(), test::FakeSolo::program())};
};

const SoloAgent inProject{31, u"Sessione"_s, u""_s, 9, u"Alfa"_s};
const SoloAgent withoutProject{32, u"Libera"_s, u""_s, {}, {}};

} // namespace

TEST_F(SoloControllerTest, WithoutTheCommandLineThereIsNoPanel) {
    SoloController missing(settings, SoloClient({}, test::FakeSolo::program()));
    missing.showPanel();
    EXPECT_FALSE(missing.isPanelPresented());
    EXPECT_EQ(desktop.beeps, 1);
    missing.refresh();
    ASSERT_TRUE(await([&missing] { return !missing.isLoading(); }));
    EXPECT_EQ(missing.errorMessage(), u"Solo non è installato (manca la riga di comando «solo»)."_s);
}

TEST_F(SoloControllerTest, ARefreshTakesWhatSoloOffers) {
    refresh();
    EXPECT_EQ(controller.errorMessage(), std::nullopt);
    EXPECT_THAT(controller.tools(), testing::ElementsAre(SoloAgentTool{4, u"Codex"_s, u"codex"_s},
                                                         SoloAgentTool{5, u"Claude"_s, u"claude"_s}));
    EXPECT_THAT(controller.projects(),
                testing::ElementsAre(SoloProject{9, u"Alfa"_s, u""_s}, SoloProject{8, u"Zeta"_s, u""_s}));
    EXPECT_THAT(controller.runningAgents(), testing::ElementsAre(withoutProject, inProject));
    EXPECT_EQ(solo.log(u"projects.list"_s), QStringList(u"--json projects list --limit 200"_s.replace(u' ', u'\x1F')));
    EXPECT_EQ(solo.log(u"processes.list"_s),
              QStringList(u"--json processes list --status running --limit 200"_s.replace(u' ', u'\x1F')));
}

TEST_F(SoloControllerTest, ChoicesThatAreGoneMoveToAnother) {
    settings.setSoloAgentToolID(99);
    settings.setSoloProjectID(99);
    refresh();
    EXPECT_EQ(settings.soloAgentToolID(), 5) << "the tool of the preferred type, although others come first";
    EXPECT_EQ(settings.soloProjectID(), 9) << "the first project";

    solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": [{"id": 1, "name": "a"}]}})"_s});
    solo.play(u"projects.list"_s, {uR"(out {"ok": true, "data": {"projects": []}})"_s});
    refresh();
    EXPECT_EQ(settings.soloAgentToolID(), 1);
    EXPECT_EQ(settings.soloProjectID(), std::nullopt);

    solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": []}})"_s});
    refresh();
    EXPECT_EQ(settings.soloAgentToolID(), std::nullopt);
}

TEST_F(SoloControllerTest, ChoicesThatAreStillThereStay) {
    settings.setSoloAgentToolID(4);
    settings.setSoloProjectID(8);
    QSignalSpy toolChanges(&settings, &AppSettings::soloAgentToolIDChanged);
    QSignalSpy projectChanges(&settings, &AppSettings::soloProjectIDChanged);
    refresh();
    EXPECT_EQ(settings.soloAgentToolID(), 4);
    EXPECT_EQ(settings.soloProjectID(), 8);
    EXPECT_EQ(toolChanges.size() + projectChanges.size(), 0);
}

TEST_F(SoloControllerTest, AFailingRefreshKeepsTheListsAndStopsThere) {
    refresh();
    solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": []}})"_s});
    solo.play(u"projects.list"_s, {uR"(out {"ok": false, "error": {"message": "connessione rifiutata"}})"_s});
    refresh();
    EXPECT_EQ(controller.errorMessage(), u"Solo non risponde. È aperto?\nconnessione rifiutata"_s);
    EXPECT_EQ(controller.tools().size(), 2);
    EXPECT_EQ(controller.runningAgents().size(), 2);
    EXPECT_EQ(solo.log(u"processes.list"_s).size(), 1) << "nothing is asked after the failure";

    solo.play(u"projects.list"_s, {u"out usage: solo"_s});
    controller.refresh();
    EXPECT_EQ(controller.errorMessage(), std::nullopt) << "while it is loading";
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    EXPECT_EQ(controller.errorMessage(), u"Risposta di Solo non riconosciuta."_s);
}

TEST_F(SoloControllerTest, ANewSessionGetsTheNoteAsItsFirstMessage) {
    refresh();
    controller.showPanel();
    EXPECT_TRUE(controller.isPanelPresented());
    controller.startSession(u"testo"_s, u"La mia nota"_s);
    awaitSent();
    EXPECT_EQ(controller.errorMessage(), std::nullopt);
    EXPECT_EQ(controller.confirmation(), u"Nuova sessione Claude avviata in Alfa"_s);
    EXPECT_FALSE(controller.isPanelPresented());
    EXPECT_EQ(desktop.opened, QStringList(u"solo://proj/9/process/la-mia-nota--77"_s));

    controller.showPanel();
    EXPECT_EQ(controller.confirmation(), std::nullopt);
}

TEST_F(SoloControllerTest, NamesThatAreNotKnownHaveStandIns) {
    settings.setSoloAgentToolID(1);
    settings.setSoloProjectID(2);
    controller.startSession(u"testo"_s, u"t"_s);
    awaitSent();
    EXPECT_EQ(controller.confirmation(), u"Nuova sessione agent avviata in "_s);
}

TEST_F(SoloControllerTest, WithoutAChoiceNoSessionStarts) {
    settings.setSoloAgentToolID(4);
    controller.startSession(u"testo"_s, u"t"_s);
    EXPECT_FALSE(controller.isSending());
    settings.setSoloAgentToolID({});
    settings.setSoloProjectID(8);
    controller.startSession(u"testo"_s, u"t"_s);
    EXPECT_FALSE(controller.isSending());
}

TEST_F(SoloControllerTest, AFailingSendLeavesThePanelOpen) {
    refresh();
    controller.showPanel();
    solo.play(u"processes.spawn"_s, {u"out {\"ok\": false}"_s});
    controller.startSession(u"testo"_s, u"t"_s);
    awaitSent();
    EXPECT_EQ(controller.errorMessage(), u"Solo non risponde. È aperto?\n"_s);
    EXPECT_TRUE(controller.isPanelPresented());
    EXPECT_EQ(controller.confirmation(), std::nullopt);
    EXPECT_TRUE(desktop.opened.isEmpty());
}

TEST_F(SoloControllerTest, APasteGoesToTheAgentAndItsProject) {
    controller.showPanel();
    controller.paste(u"ciao"_s, inProject);
    awaitSent();
    EXPECT_EQ(controller.errorMessage(), std::nullopt);
    EXPECT_EQ(controller.confirmation(), u"Inviata a Sessione · Alfa"_s);
    EXPECT_FALSE(controller.isPanelPresented());
    EXPECT_EQ(desktop.opened, QStringList(u"solo://proj/9/process/sessione--31"_s));
    ASSERT_GE(solo.messages().size(), 4) << "the return that submits";
}

TEST_F(SoloControllerTest, AnAgentWithoutAProjectHasNoLink) {
    settings.setSoloSubmitAfterPaste(false);
    controller.paste(u"ciao"_s, withoutProject);
    awaitSent();
    EXPECT_EQ(controller.confirmation(), u"Inviata a Libera"_s);
    EXPECT_TRUE(desktop.opened.isEmpty());
    ASSERT_GE(solo.messages().size(), 3);
    const QJsonObject arguments = solo.messages()[2][u"params"_s][u"arguments"_s].toObject();
    EXPECT_EQ(arguments[u"process_id"_s].toInteger(), 32);
    EXPECT_FALSE(arguments.contains(u"project_id"_s));
}

TEST_F(SoloControllerTest, SoloStaysInTheBackgroundIfTheUserWantsThat) {
    settings.setSoloBringToFront(false);
    controller.paste(u"ciao"_s, inProject);
    awaitSent();
    EXPECT_NE(controller.confirmation(), std::nullopt);
    EXPECT_TRUE(desktop.opened.isEmpty());
}

TEST_F(SoloControllerTest, RefreshesThatGetNoAnswerHoldUpNoSend) {
    solo.play(u"agents.list"_s, {u"hang"_s});
    SoloController patient(settings,
                           SoloClient(test::FakeSolo::program(), test::FakeSolo::program(), std::chrono::hours(1)));
    constexpr int refreshes = 9;
    for (int i = 0; i < refreshes; ++i) {
        patient.refresh();
    }
    ASSERT_TRUE(await([this] { return solo.log(u"agents.list"_s).filter(u"(hangs)"_s).size() == refreshes; }));
    patient.paste(u"ciao"_s, inProject);
    ASSERT_TRUE(await([&patient] { return !patient.isSending(); }));
    EXPECT_EQ(patient.confirmation(), u"Inviata a Sessione · Alfa"_s);
    EXPECT_TRUE(patient.isLoading());
}

TEST_F(SoloControllerTest, ItsEndDoesNotWaitForASilentSolo) {
    solo.play(u"agents.list"_s, {u"ignore-term"_s, u"hang"_s});
    // To wait for this limit would be to hang.
    auto other =
        std::make_unique<SoloController>(settings, SoloClient(test::FakeSolo::program(), {}, std::chrono::hours(1)));
    other->refresh();
    ASSERT_TRUE(await([this] { return solo.log(u"agents.list"_s).size() == 2; }));
    other.reset();
}

TEST(SoloMode, HasItsNames) {
    EXPECT_EQ(SoloController::rawValue(SoloController::Mode::newSession), u"newSession"_s);
    EXPECT_EQ(SoloController::rawValue(SoloController::Mode::openSession), u"openSession"_s);
    EXPECT_EQ(SoloController::displayName(SoloController::Mode::newSession), u"Nuova sessione"_s);
    EXPECT_EQ(SoloController::displayName(SoloController::Mode::openSession), u"Sessione aperta"_s);
    EXPECT_EQ(SoloController::modeFromRawValue(u"openSession"_s), SoloController::Mode::openSession);
    EXPECT_EQ(SoloController::modeFromRawValue(u"altro"_s), SoloController::Mode::newSession);
}

} // namespace quillary
