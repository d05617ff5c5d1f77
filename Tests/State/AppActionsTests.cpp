#include "Quillary/State/AppActions.h"

#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

class FakeWindow : public AppWindow {
public:
    explicit FakeWindow(QStringList& log) : m_log(log) {}

    bool isVisibleOnScreen() const override { return isVisible; }

    bool isMiniaturized() const override { return isMini; }

    bool isKeyWindow() const override { return isKey; }

    void deminiaturize() override { m_log << u"deminiaturize"_s; }

    void makeKeyAndOrderFront() override { m_log << u"front"_s; }

    bool isVisible = true;
    bool isMini = false;
    bool isKey = true;

private:
    QStringList& m_log;
};

} // namespace

class AppActionsTest : public testing::Test {
protected:
    AppActionsTest() {
        actions.activateApplication = [this] { log << u"activate"_s; };
        actions.hideApplication = [this] { log << u"hide"_s; };
        actions.openMainWindow = [this] { log << u"open"_s; };
        actions.focusEditor = [this] { log << u"focus"_s; };
        actions.isApplicationActive = [this] { return isActive; };
        actions.mainWindow = window.get();
    }

    QStringList log;
    bool isActive = true;
    std::unique_ptr<FakeWindow> window = std::make_unique<FakeWindow>(log);
    AppActions actions;
};

TEST_F(AppActionsTest, ShowBringsAVisibleWindowToTheFrontAndFocusesTheEditor) {
    actions.showMainWindow();

    EXPECT_EQ(log, QStringList({u"activate"_s, u"deminiaturize"_s, u"front"_s, u"focus"_s}));
}

TEST_F(AppActionsTest, ShowRestoresAMiniaturizedWindow) {
    window->isVisible = false;
    window->isMini = true;

    actions.showMainWindow();

    EXPECT_EQ(log, QStringList({u"activate"_s, u"deminiaturize"_s, u"front"_s, u"focus"_s}));
}

TEST_F(AppActionsTest, ShowReopensAClosedWindow) {
    window->isVisible = false;

    actions.showMainWindow();

    EXPECT_EQ(log, QStringList({u"activate"_s, u"open"_s, u"focus"_s}));
}

TEST_F(AppActionsTest, ShowReopensAWindowThatHasGone) {
    window.reset();

    actions.showMainWindow();

    EXPECT_EQ(log, QStringList({u"activate"_s, u"open"_s, u"focus"_s}));
}

TEST_F(AppActionsTest, ToggleHidesTheApplicationWhoseWindowIsInUse) {
    actions.toggleMainWindow();

    EXPECT_EQ(log, QStringList(u"hide"_s));
}

TEST_F(AppActionsTest, ToggleShowsInEveryOtherCase) {
    const QStringList shown{u"activate"_s, u"deminiaturize"_s, u"front"_s, u"focus"_s};

    isActive = false;
    actions.toggleMainWindow();
    EXPECT_EQ(std::exchange(log, {}), shown);

    isActive = true;
    window->isKey = false;
    actions.toggleMainWindow();
    EXPECT_EQ(std::exchange(log, {}), shown);

    window->isKey = true;
    window->isVisible = false;
    actions.toggleMainWindow();
    EXPECT_EQ(std::exchange(log, {}), QStringList({u"activate"_s, u"open"_s, u"focus"_s}));

    window.reset();
    actions.toggleMainWindow();
    EXPECT_EQ(log, QStringList({u"activate"_s, u"open"_s, u"focus"_s}));
}

TEST_F(AppActionsTest, KeepACommandUntilTheApplicationIsActiveIfItMustWait) {
    QList<std::function<void()>> kept;
    actions.keepUntilActive = [&kept](const std::function<void()>& command) { kept.append(command); };
    const auto command = [this] { log << u"command"_s; };

    actions.runWhenActive(command);
    EXPECT_EQ(std::exchange(log, {}), QStringList(u"command"_s));
    EXPECT_TRUE(kept.isEmpty());

    isActive = false;
    actions.runWhenActive(command);
    EXPECT_EQ(log, QStringList());
    ASSERT_EQ(kept.size(), 1);
    kept.constFirst()();
    EXPECT_EQ(log, QStringList(u"command"_s));
}

TEST_F(AppActionsTest, RunACommandAtOnceThatNobodyWouldKeep) {
    isActive = false;
    actions.runWhenActive([this] { log << u"one"_s; });
    AppActions().runWhenActive([this] { log << u"two"_s; });
    EXPECT_EQ(log, QStringList({u"one"_s, u"two"_s}));
}

TEST_F(AppActionsTest, SkipWhatIsNotSet) {
    AppActions unset;

    unset.showMainWindow();
    unset.toggleMainWindow();
    unset.beep();

    EXPECT_EQ(unset.mainWindow.get(), nullptr);
    EXPECT_EQ(unset.editor.get(), nullptr);
}

TEST_F(AppActionsTest, AreOneForTheProcess) {
    EXPECT_EQ(&AppActions::shared(), &AppActions::shared());
}

} // namespace quillary::test
