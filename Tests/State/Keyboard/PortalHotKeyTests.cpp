#include "Quillary/Keyboard/PortalHotKey.h"

#include "FakeShortcutsPortal.h"
#include "Quillary/Keyboard/PortalTrigger.h"

#include "Tests/State/Platform/PrivateBus.h"
#include "Tests/State/Waiting.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

const KeyShortcut portalKeys(KeyCode::n, Modifiers::control | Modifiers::option, u"n"_s);

class PortalHotKeyTest : public testing::Test {
protected:
    /// Lets all messages that are under way arrive.
    void settle() {
        const int before = portal.pings();
        portal.ping(hotKeyBus);
        ASSERT_TRUE(waitUntil([&] { return portal.pings() > before; }));
    }

    PrivateBus bus;
    FakeShortcutsPortal portal{bus.connection()};
    QDBusConnection hotKeyBus = bus.connection();
    PortalHotKey hotKey{hotKeyBus};
    QSignalSpy pressed{&hotKey, &HotKeyBackend::pressed};
    QSignalSpy refused{&hotKey, &HotKeyBackend::refused};
};

} // namespace

TEST(PortalTrigger, NamesModifiersAndTheSymbol) {
    EXPECT_EQ(portalTrigger(portalKeys), u"ALT+LOGO+n"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(KeyCode::k, Modifiers::relevant, u"k"_s)), u"CTRL+ALT+SHIFT+LOGO+k"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(96, {}, {})), u"F5"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(KeyCode::downArrow, Modifiers::command, u"↓"_s)), u"CTRL+Down"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(41, Modifiers::option, u"ò"_s)), u"ALT+ograve"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(43, Modifiers::option, u","_s)), u"ALT+comma"_s);
    EXPECT_EQ(portalTrigger(KeyShortcut(200, Modifiers::option, {})), QString());
}

TEST_F(PortalHotKeyTest, AsksForTheKeysAndReportsTheirPress) {
    ASSERT_TRUE(hotKey.grab(portalKeys));
    ASSERT_TRUE(waitUntil([&] { return portal.bindings().size() == 1; }));
    EXPECT_EQ(portal.bindings().constFirst(),
              (QStringList{u"summon"_s, u"Mostra Quillary da qualsiasi app"_s, u"ALT+LOGO+n"_s}));
    settle();
    portal.activate(u"summon"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.count() == 1; }));
    EXPECT_EQ(refused.count(), 0);
}

TEST_F(PortalHotKeyTest, OverlooksOtherSessionsAndShortcuts) {
    ASSERT_TRUE(hotKey.grab(portalKeys));
    ASSERT_TRUE(waitUntil([&] { return portal.bindings().size() == 1; }));
    portal.activate(u"other"_s);
    portal.activate(u"summon"_s, u"/org/freedesktop/portal/desktop/session/other"_s);
    portal.activate(u"summon"_s);
    ASSERT_TRUE(waitUntil([&] { return pressed.count() > 0; }));
    EXPECT_EQ(pressed.count(), 1);
}

TEST_F(PortalHotKeyTest, TellsOfARefusalWhereverItComes) {
    for (const auto refusal : {FakeShortcutsPortal::Refusal::session, FakeShortcutsPortal::Refusal::binding,
                               FakeShortcutsPortal::Refusal::call}) {
        portal.refuse(refusal);
        const qsizetype before = refused.count();
        ASSERT_TRUE(hotKey.grab(portalKeys));
        EXPECT_TRUE(waitUntil([&] { return refused.count() == before + 1; }));
    }
    EXPECT_EQ(pressed.count(), 0);
}

TEST_F(PortalHotKeyTest, ClosesItsSessionWhenReleased) {
    ASSERT_TRUE(hotKey.grab(portalKeys));
    ASSERT_TRUE(waitUntil([&] { return portal.bindings().size() == 1; }));
    hotKey.release();
    ASSERT_TRUE(waitUntil([&] { return portal.closedSessions() == 1; }));
    portal.activate(u"summon"_s);
    settle();
    EXPECT_EQ(pressed.count(), 0);
}

TEST_F(PortalHotKeyTest, ASessionThatComesTooLateIsClosed) {
    ASSERT_TRUE(hotKey.grab(portalKeys));
    hotKey.release();
    ASSERT_TRUE(waitUntil([&] { return portal.closedSessions() == 1; }));
    EXPECT_TRUE(portal.bindings().isEmpty());
    EXPECT_EQ(refused.count(), 0);
}

TEST(PortalHotKey, IsRefusedWhereThereIsNoPortalOrNoBus) {
    PrivateBus bus;
    PortalHotKey hotKey(bus.connection());
    const QSignalSpy refused(&hotKey, &HotKeyBackend::refused);
    ASSERT_TRUE(hotKey.grab(portalKeys));
    EXPECT_TRUE(waitUntil([&] { return refused.count() == 1; }));

    PortalHotKey withoutBus(QDBusConnection(u"none"_s));
    EXPECT_FALSE(withoutBus.grab(portalKeys));
}

} // namespace quillary::test
