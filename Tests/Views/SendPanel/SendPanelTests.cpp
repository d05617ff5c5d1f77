#include "Quillary/Detail/SoloButton.h"
#include "Quillary/SendPanel/AgentChip.h"
#include "Quillary/SendPanel/AgentRow.h"
#include "Quillary/SendPanel/FlowLayout.h"
#include "Quillary/SendPanel/ProjectPicker.h"
#include "Quillary/SendPanel/SearchBox.h"
#include "Quillary/SendPanel/SoloPanelPresenter.h"
#include "Quillary/SendPanel/SoloSendPanel.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/Symbol.h"
#include "QuillaryCore/Platform/SystemError.h"

#include "Tests/State/FakeDesktop.h"
#include "Tests/State/Solo/FakeSolo.h"
#include "Tests/Views/NotesFolder.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QJsonObject>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

class SendPanelTest : public testing::Test {
protected:
    void SetUp() override {
        AppActions::shared().desktop = &desktop;
        solo.play(u"agents.list"_s,
                  {uR"(out {"ok": true, "data": {"agentTools": [{"id": 4, "name": "Codex"}, {"id": 5, )"
                   uR"("name": "Claude", "toolType": "claude"}]}})"_s});
        solo.play(u"projects.list"_s, {uR"(out {"ok": true, "data": {"projects": [{"id": 8, "name": "Zeta", "path": )"
                                       uR"("/p/z"}, {"id": 9, "name": "Alfa", "path": "/p/a"}]}})"_s});
        solo.play(u"processes.list"_s,
                  {uR"(out {"ok": true, "data": {"processes": [{"id": 31, "name": "Sessione", "kind": "agent", )"
                   uR"("status": "running", "projectId": 9, "projectName": "Alfa"}, {"id": 32, "name": "Libera", )"
                   uR"("kind": "agent", "status": "running"}]}})"_s});
        solo.play(u"processes.spawn"_s, {uR"(out {"ok": true, "data": {"id": 77}})"_s});
        solo.play(u"mcp"_s, {u"read"_s, u"out {\"id\": 1, \"result\": {}}"_s, u"read"_s, u"read"_s,
                             u"out {\"id\": 2, \"result\": {}}"_s, u"read"_s, u"out {\"id\": 3, \"result\": {}}"_s});
    }

    static bool await(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 30'000); }

    /// The panel on screen with what Solo offers.
    void show(const QString& text = u"ciao \U0001F468\u200D\U0001F469 mondo"_s, bool isSelection = false) {
        panel = std::make_unique<SoloSendPanel>(controller, notes.settings(),
                                                SoloSendPanel::Message{u"La nota"_s, text, isSelection});
        panel->show();
        ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    }

    template <typename Widget>
    Widget* shown(const QString& text) const {
        for (Widget* const widget : panel->findChildren<Widget*>()) {
            if (widget->text() == text && widget->isVisibleTo(panel.get())) {
                return widget;
            }
        }
        return nullptr;
    }

    template <typename Widget>
    void click(const QString& text) const {
        Widget* const widget = shown<Widget>(text);
        ASSERT_NE(widget, nullptr) << qPrintable(text);
        QTest::mouseClick(widget, Qt::LeftButton);
    }

    QListWidget* list() const {
        for (QListWidget* const widget : panel->findChildren<QListWidget*>()) {
            if (widget->isVisibleTo(panel.get())) {
                return widget;
            }
        }
        return nullptr;
    }

    QStringList rows() const {
        QStringList texts;
        for (int i = 0; list() != nullptr && i < list()->count(); ++i) {
            texts.append(list()->item(i)->text());
        }
        return texts;
    }

    void clickRow(const QString& text) const {
        const QList<QListWidgetItem*> found = list()->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << qPrintable(text);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualItemRect(found.constFirst()).center());
    }

    test::FakeSolo solo;
    test::FakeDesktop desktop;
    NotesFolder notes{{{u"La nota.md"_s, u"ciao mondo"_s}}};
    SoloController controller{notes.settings(), SoloClient(test::FakeSolo::program(), test::FakeSolo::program())};
    std::unique_ptr<SoloSendPanel> panel;
};

} // namespace

TEST_F(SendPanelTest, SaysWhatIsSent) {
    show();
    EXPECT_NE(shown<QLabel>(u"Invia a Solo"_s), nullptr);
    EXPECT_NE(shown<QLabel>(u"La nota"_s), nullptr);
    EXPECT_NE(shown<QLabel>(u"Nota intera · 12 caratteri"_s), nullptr) << "a family is one character";
    show(u"x"_s, true);
    EXPECT_NE(shown<QLabel>(u"Selezione · 1 caratteri"_s), nullptr);
}

TEST_F(SendPanelTest, TheTitleIsOneReadableLine) {
    panel = std::make_unique<SoloSendPanel>(controller, notes.settings(),
                                            SoloSendPanel::Message{u"uno\ndue <b>"_s, u"x"_s, false});
    EXPECT_NE(shown<QLabel>(u"uno due <b>"_s), nullptr);
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
}

TEST_F(SendPanelTest, OpeningAndTheButtonAskWhatSoloOffers) {
    show();
    EXPECT_EQ(solo.log(u"agents.list"_s).size(), 1);
    click<QToolButton>(u"Aggiorna"_s);
    EXPECT_TRUE(controller.isLoading());
    EXPECT_FALSE(shown<QToolButton>(u"Aggiorna"_s)->isEnabled());
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    EXPECT_EQ(solo.log(u"agents.list"_s).size(), 2);
    EXPECT_TRUE(shown<QToolButton>(u"Aggiorna"_s)->isEnabled());
}

TEST_F(SendPanelTest, TheModeIsTheSettings) {
    show();
    EXPECT_TRUE(shown<QPushButton>(u"Nuova sessione"_s)->isChecked());
    EXPECT_NE(shown<QPushButton>(u"Avvia sessione"_s), nullptr);
    click<QPushButton>(u"Sessione aperta"_s);
    EXPECT_EQ(notes.settings().soloMode(), u"openSession"_s);
    EXPECT_EQ(shown<QPushButton>(u"Avvia sessione"_s), nullptr);
    EXPECT_NE(shown<QCheckBox>(u"Premi Invio dopo l'incolla"_s), nullptr);
    EXPECT_NE(shown<QCheckBox>(u"Porta Solo in primo piano dopo l'invio"_s), nullptr);

    notes.settings().setSoloMode(u"altro"_s);
    EXPECT_TRUE(shown<QPushButton>(u"Nuova sessione"_s)->isChecked()) << "an unknown mode is the first";
}

TEST_F(SendPanelTest, AChipChoosesTheTool) {
    show();
    EXPECT_NE(shown<QLabel>(u"Apre una nuova sessione con la nota come primo messaggio."_s), nullptr);
    EXPECT_TRUE(shown<AgentChip>(u"Claude"_s)->isChecked());
    click<AgentChip>(u"Codex"_s);
    EXPECT_EQ(notes.settings().soloAgentToolID(), 4);
    EXPECT_TRUE(shown<AgentChip>(u"Codex"_s)->isChecked());
    EXPECT_FALSE(shown<AgentChip>(u"Claude"_s)->isChecked());
    click<AgentChip>(u"Codex"_s);
    EXPECT_TRUE(shown<AgentChip>(u"Codex"_s)->isChecked()) << "a second click leaves it chosen";
    QTest::keyClick(shown<AgentChip>(u"Claude"_s), Qt::Key_Space);
    EXPECT_EQ(notes.settings().soloAgentToolID(), 5);
}

TEST_F(SendPanelTest, GrowsWithItsToolsAndAFailure) {
    QStringList tools;
    for (int i = 0; i < 24; ++i) {
        tools.append(uR"({"id": %1, "name": "Uno strumento dal nome lungo"})"_s.arg(i));
    }
    solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": [%1]}})"_s.arg(tools.join(u','))});
    show();
    const auto isWhole = [this](const QWidget* widget) {
        const QWidget* const parent = widget->parentWidget();
        return parent->rect().contains(widget->geometry()) &&
               panel->rect().contains(widget->rect().translated(widget->mapTo(panel.get(), QPoint())));
    };
    const auto isAllWhole = [this, &isWhole] {
        return std::ranges::all_of(panel->findChildren<AgentChip*>(), isWhole) && isWhole(list());
    };
    EXPECT_EQ(panel->findChildren<AgentChip*>().size(), 24);
    EXPECT_TRUE(await(isAllWhole));
    const int before = panel->height();

    solo.play(u"processes.spawn"_s,
              {u"out {\"ok\": false, \"error\": {\"message\": \"%1\"}}"_s.arg(u"parole "_s.repeated(99))});
    click<QPushButton>(u"Avvia sessione"_s);
    ASSERT_TRUE(await([this] { return controller.errorMessage().has_value(); }));
    EXPECT_TRUE(await([this, before] { return panel->height() > before; }));
    EXPECT_TRUE(await(isAllWhole));
}

TEST_F(SendPanelTest, StaysOnTheScreenAsLongAsTheProjectsCanGiveWay) {
    show();
    const int room = panel->screen()->availableSize().height();
    QStringList tools;
    // One line of tools after the other, until all that the panel holds would be higher than the screen.
    while (panel->layout()->totalHeightForWidth(panel->width()) <= room) {
        ASSERT_LT(tools.size(), 100);
        tools.append(uR"({"id": %1, "name": "Uno strumento dal nome lungo"})"_s.arg(tools.size()));
        solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": [%1]}})"_s.arg(tools.join(u','))});
        controller.refresh();
        ASSERT_TRUE(await([&] { return panel->findChildren<AgentChip*>().size() == tools.size(); }));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    }
    EXPECT_LE(panel->height(), room);
    const auto* const start = shown<QPushButton>(u"Avvia sessione"_s);
    EXPECT_TRUE(panel->rect().contains(start->rect().translated(start->mapTo(panel.get(), QPoint()))));
}

TEST_F(SendPanelTest, TheProjectIsSearchedForAndChosen) {
    show();
    EXPECT_EQ(rows(), QStringList({u"Alfa"_s, u"Zeta"_s}));
    auto* const query = panel->findChild<ProjectPicker*>()->findChild<SearchBox*>();
    EXPECT_EQ(query->placeholderText(), u"Cerca progetto (scelto: Alfa)"_s);
    QTest::keyClicks(query, u" /p/Z "_s);
    EXPECT_EQ(rows(), QStringList(u"Zeta"_s));
    clickRow(u"Zeta"_s);
    EXPECT_EQ(notes.settings().soloProjectID(), 8);
    EXPECT_EQ(query->placeholderText(), u"Cerca progetto (scelto: Zeta)"_s);
    QTest::keyClicks(query, u"xyz"_s);
    EXPECT_NE(shown<QLabel>(u"Nessun progetto"_s), nullptr);
    EXPECT_EQ(list(), nullptr);
    notes.settings().setSoloProjectID({});
    EXPECT_EQ(query->placeholderText(), u"Cerca progetto"_s);
    EXPECT_FALSE(shown<QPushButton>(u"Avvia sessione"_s)->isEnabled());
}

TEST_F(SendPanelTest, ReturnChoosesAProjectAndStartsNothing) {
    show();
    auto* const query = panel->findChild<ProjectPicker*>()->findChild<SearchBox*>();
    QTest::keyClicks(query, u"ze"_s);
    QTest::keyClick(query, Qt::Key_Return);
    EXPECT_EQ(notes.settings().soloProjectID(), 8) << "the first that was found";
    query->clear();
    QTest::keyClick(query, Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Home);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(notes.settings().soloProjectID(), 9);
    QTest::keyClicks(query, u"xyz"_s);
    QTest::keyClick(query, Qt::Key_Return);
    EXPECT_EQ(notes.settings().soloProjectID(), 9) << "nothing was found";
    EXPECT_FALSE(controller.isSending());
    query->clear();
    QTest::keyClick(query, Qt::Key_Return);
    EXPECT_TRUE(controller.isSending()) << "without a search it is the default button's";
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
}

TEST_F(SendPanelTest, TheKeyboardGoesThroughThePanelFromTopToBottom) {
    show();
    panel->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    shown<QToolButton>(u"Aggiorna"_s)->setFocus();
    QStringList names;
    for (int i = 0; i < 7; ++i) {
        names.append(panel->focusWidget()->accessibleName());
        if (const auto* const button = qobject_cast<QAbstractButton*>(panel->focusWidget())) {
            names.last() = button->text();
        }
        QTest::keyClick(panel->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(names, QStringList({u"Aggiorna"_s, u"Nuova sessione"_s, u"Claude"_s, u"Cerca progetto (scelto: Alfa)"_s,
                                  u"Progetto"_s, u"Avvia sessione"_s, u"Porta Solo in primo piano dopo l'invio"_s}))
        << "of several choices it comes to the chosen one: " << qPrintable(names.join(u", "));
}

TEST_F(SendPanelTest, AToolThatHasAnotherNumberAfterARefreshIsChosenByThat) {
    show();
    solo.play(u"agents.list"_s, {uR"(out {"ok": true, "data": {"agentTools": [{"id": 14, "name": "Codex"}, )"
                                 uR"({"id": 15, "name": "Claude", "toolType": "claude"}]}})"_s});
    controller.refresh();
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    click<AgentChip>(u"Codex"_s);
    EXPECT_EQ(notes.settings().soloAgentToolID(), 14);
}

TEST_F(SendPanelTest, ANewSessionStartsWithTheText) {
    show();
    click<QPushButton>(u"Avvia sessione"_s);
    EXPECT_TRUE(controller.isSending());
    EXPECT_FALSE(shown<QPushButton>(u"Avvia sessione"_s)->isEnabled()) << "a second click starts nothing";
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    EXPECT_EQ(controller.confirmation(), u"Nuova sessione Claude avviata in Alfa"_s);
    EXPECT_EQ(solo.log(u"processes.spawn"_s).size(), 1);
}

TEST_F(SendPanelTest, OpenSessionsAreGroupedAndSearched) {
    notes.settings().setSoloMode(u"openSession"_s);
    show();
    EXPECT_EQ(rows(), QStringList({u"Alfa"_s, u"Sessione"_s, u"Senza progetto"_s, u"Libera"_s}));
    SearchBox* query = nullptr;
    for (SearchBox* const box : panel->findChildren<SearchBox*>()) {
        query = box->isVisibleTo(panel.get()) ? box : query;
    }
    ASSERT_NE(query, nullptr);
    EXPECT_EQ(query->placeholderText(), u"Cerca sessione o progetto"_s);
    QTest::keyClicks(query, u"alfa"_s);
    EXPECT_EQ(rows(), QStringList({u"Alfa"_s, u"Sessione"_s})) << "all agents of a project that matches";
}

TEST_F(SendPanelTest, AClickOnASessionPastesIntoIt) {
    notes.settings().setSoloMode(u"openSession"_s);
    show();
    clickRow(u"Alfa"_s);
    EXPECT_FALSE(controller.isSending()) << "a heading is no session";
    clickRow(u"Libera"_s);
    EXPECT_TRUE(controller.isSending());
    EXPECT_FALSE(list()->isEnabled());
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    EXPECT_EQ(controller.confirmation(), u"Inviata a Libera"_s);
}

TEST_F(SendPanelTest, TheKeyboardPastesToo) {
    notes.settings().setSoloMode(u"openSession"_s);
    show();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    ASSERT_NE(list()->currentItem(), nullptr);
    EXPECT_EQ(list()->currentItem()->text(), u"Libera"_s) << "from the first session over the heading to the next";
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_TRUE(controller.isSending());
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
}

TEST_F(SendPanelTest, WithoutSessionsItSaysSo) {
    notes.settings().setSoloMode(u"openSession"_s);
    solo.play(u"processes.list"_s, {uR"(out {"ok": true, "data": {"processes": []}})"_s});
    show();
    EXPECT_NE(shown<QLabel>(u"Nessuna sessione agent attiva in Solo."_s), nullptr);
    EXPECT_EQ(list(), nullptr);
}

TEST_F(SendPanelTest, TheCheckBoxesAreTheSettings) {
    notes.settings().setSoloMode(u"openSession"_s);
    notes.settings().setSoloBringToFront(false);
    show();
    EXPECT_TRUE(shown<QCheckBox>(u"Premi Invio dopo l'incolla"_s)->isChecked());
    EXPECT_FALSE(shown<QCheckBox>(u"Porta Solo in primo piano dopo l'invio"_s)->isChecked());
    shown<QCheckBox>(u"Premi Invio dopo l'incolla"_s)->click();
    shown<QCheckBox>(u"Porta Solo in primo piano dopo l'invio"_s)->click();
    EXPECT_FALSE(notes.settings().soloSubmitAfterPaste());
    EXPECT_TRUE(notes.settings().soloBringToFront());
}

TEST_F(SendPanelTest, AFailureStandsInThePanel) {
    solo.play(u"projects.list"_s, {u"out {\"ok\": false, \"error\": {\"message\": \"<b>spento</b>\"}}"_s});
    show();
    EXPECT_NE(shown<QLabel>(u"Solo non risponde. È aperto?\n<b>spento</b>"_s), nullptr);
}

TEST_F(SendPanelTest, ATextThatNoCommandTakesIsRefusedWholeAndCanStillBePasted) {
    struct Case {
        const char* name;
        QString text;
        QString failure;
    };

    // One argument takes 128 KiB, its end included.
    for (const Case& each :
         {Case{"too long", QString(131'072, u'x'), SystemError{E2BIG}.localizedDescription()},
          Case{"too long in UTF-8", QString(70'000, u'è'), SystemError{E2BIG}.localizedDescription()},
          Case{"with a NUL", u"a\0b"_s, u"Invio non riuscito: il testo contiene un carattere nullo"_s}}) {
        notes.settings().setSoloMode(u"newSession"_s);
        show(each.text);
        click<QPushButton>(u"Avvia sessione"_s);
        ASSERT_TRUE(await([this] { return !controller.isSending(); })) << each.name;
        EXPECT_NE(shown<QLabel>(each.failure), nullptr) << each.name;
        EXPECT_TRUE(panel->isVisible()) << each.name;
        EXPECT_TRUE(shown<QPushButton>(u"Avvia sessione"_s)->isEnabled()) << each.name;
        EXPECT_TRUE(solo.log(u"processes.spawn"_s).isEmpty()) << each.name;

        click<QPushButton>(u"Sessione aperta"_s);
        clickRow(u"Libera"_s);
        ASSERT_TRUE(await([this] { return !controller.isSending(); })) << each.name;
        EXPECT_EQ(controller.errorMessage(), std::nullopt) << each.name;
        EXPECT_EQ(controller.confirmation(), u"Inviata a Libera"_s) << each.name;
        const QJsonObject pasted = solo.messages().at(2)[u"params"_s][u"arguments"_s].toObject();
        EXPECT_EQ(pasted[u"input"_s].toString(), u"\x1b[200~"_s + each.text + u"\x1b[201~"_s) << each.name;
        QFile::remove(solo.path(u"mcp.log"_s));
    }
    show(QString(131'071, u'x'));
    notes.settings().setSoloMode(u"newSession"_s);
    click<QPushButton>(u"Avvia sessione"_s);
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    EXPECT_EQ(controller.errorMessage(), std::nullopt);
    EXPECT_EQ(solo.log(u"processes.spawn"_s).size(), 1);
}

TEST_F(SendPanelTest, TheKeyboardComesBackToWhatWaited) {
    solo.play(u"processes.spawn"_s, {u"out {\"ok\": false}"_s});
    show();
    panel->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    auto* const start = shown<QPushButton>(u"Avvia sessione"_s);
    start->setFocus();
    QTest::keyClick(start, Qt::Key_Space);
    EXPECT_FALSE(start->hasFocus()) << "it is disabled";
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    EXPECT_TRUE(start->hasFocus());

    auto* const refresh = shown<QToolButton>(u"Aggiorna"_s);
    refresh->setFocus();
    QTest::keyClick(refresh, Qt::Key_Space);
    EXPECT_TRUE(controller.isLoading());
    shown<QCheckBox>(u"Porta Solo in primo piano dopo l'invio"_s)->setFocus();
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    EXPECT_FALSE(refresh->hasFocus()) << "the user has gone on";
}

TEST_F(SendPanelTest, ArrowsChooseAmongWhatExcludesEachOther) {
    show();
    panel->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    auto* const claude = shown<AgentChip>(u"Claude"_s);
    claude->setFocus();
    QTest::keyClick(claude, Qt::Key_Left);
    EXPECT_EQ(notes.settings().soloAgentToolID(), 4);
    EXPECT_TRUE(shown<AgentChip>(u"Codex"_s)->hasFocus());
    auto* const newSession = shown<QPushButton>(u"Nuova sessione"_s);
    newSession->setFocus();
    QTest::keyClick(newSession, Qt::Key_Right);
    EXPECT_EQ(notes.settings().soloMode(), u"openSession"_s);
    EXPECT_TRUE(shown<QPushButton>(u"Sessione aperta"_s)->hasFocus());
}

TEST_F(SendPanelTest, EveryControlHasAName) {
    show();
    for (const QWidget* const widget : panel->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() != nullptr) {
            continue;
        }
        const QAccessibleInterface* const accessible =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << widget->metaObject()->className();
    }
}

TEST_F(SendPanelTest, IsOnScreenWhileTheControllerSaysSo) {
    QWidget window;
    window.show();
    new SoloPanelPresenter(notes.store(), notes.settings(), controller, &window);
    controller.showPanel();
    auto* const sheet = window.findChild<SoloSendPanel*>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->isVisible());
    ASSERT_TRUE(await([this] { return !controller.isLoading(); }));
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_FALSE(controller.isPanelPresented());
    ASSERT_TRUE(await([&window] { return window.findChild<SoloSendPanel*>() == nullptr; }));

    controller.showPanel();
    ASSERT_NE(window.findChild<SoloSendPanel*>(), nullptr);
    controller.setPanelPresented(false);
    ASSERT_TRUE(await([&window] { return window.findChild<SoloSendPanel*>() == nullptr; }));
}

TEST_F(SendPanelTest, WithoutANoteThereIsNoPanel) {
    QWidget window;
    new SoloPanelPresenter(notes.store(), notes.settings(), controller, &window);
    notes.store().setSelectedID({});
    controller.showPanel();
    EXPECT_FALSE(controller.isPanelPresented());
    EXPECT_EQ(window.findChild<SoloSendPanel*>(), nullptr);
}

TEST_F(SendPanelTest, TheButtonOpensThePanelAndShowsASuccess) {
    SoloButton button(controller);
    EXPECT_EQ(button.toolTip(), u"Invia a Solo (⇧⌘↩)"_s);
    const auto shows = [&button](Symbol symbol) {
        return button.icon().pixmap(32).toImage() == symbolIcon(symbol).pixmap(32).toImage();
    };
    EXPECT_TRUE(shows(Symbol::send));
    button.click();
    EXPECT_TRUE(controller.isPanelPresented());
    controller.paste(u"x"_s, SoloAgent{32, u"Libera"_s, {}, {}, {}});
    ASSERT_TRUE(await([this] { return !controller.isSending(); }));
    EXPECT_TRUE(shows(Symbol::sent));
    EXPECT_EQ(button.accessibleDescription(), u"Inviata a Libera"_s);
}

TEST(AgentChip, HasNoMnemonicByItsName) {
    const AgentChip chip(u"R&D"_s);
    EXPECT_EQ(chip.text(), u"R&D"_s);
    EXPECT_TRUE(chip.shortcut().isEmpty());
}

TEST(SearchBox, HasAClearButtonWhileItHoldsAText) {
    SearchBox box;
    QAction* const clear = box.actions().constLast();
    EXPECT_FALSE(clear->isVisible());
    QTest::keyClicks(&box, u"x"_s);
    EXPECT_TRUE(clear->isVisible());
    clear->trigger();
    EXPECT_EQ(box.text(), QString());
    EXPECT_FALSE(clear->isVisible());
}

TEST(FlowLayout, BreaksRowsAsWordsAreBroken) {
    QWidget parent;
    auto* const layout = new FlowLayout(6, &parent);
    for (int i = 0; i < 3; ++i) {
        auto* const widget = new QWidget(&parent);
        widget->setFixedSize(40, 20);
        layout->addWidget(widget);
    }
    EXPECT_EQ(layout->heightForWidth(132), 20);
    EXPECT_EQ(layout->heightForWidth(131), 46);
    EXPECT_EQ(layout->heightForWidth(10), 72);
    layout->setGeometry(QRect(5, 7, 90, 100));
    EXPECT_EQ(layout->itemAt(1)->geometry(), QRect(51, 7, 40, 20));
    EXPECT_EQ(layout->itemAt(2)->geometry(), QRect(5, 33, 40, 20));
}

} // namespace quillary
