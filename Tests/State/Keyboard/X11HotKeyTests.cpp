#include "Quillary/Keyboard/X11HotKey.h"

#include "Quillary/Keyboard/NativeKeys.h"

#include "Tests/State/Keyboard/VirtualDisplay.h"
#include "Tests/State/Waiting.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

const KeyShortcut summonKeys(KeyCode::n, Modifiers::control | Modifiers::option, u"n"_s);
const QString summonPress = u"super+alt+n"_s;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

/// Another program on the display.
class OtherClient {
public:
    explicit OtherClient(const char* display) : m_connection(xcb_connect(display, nullptr)) {}

    ~OtherClient() { xcb_disconnect(m_connection); }

    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    bool grab(const KeyShortcut& shortcut, quint16 modifiers) {
        const auto key = static_cast<xcb_keycode_t>(*NativeKeys::scanCode(shortcut.keyCode));
        const std::unique_ptr<xcb_generic_error_t, FreeReply> error(
            xcb_request_check(m_connection, xcb_grab_key_checked(m_connection, 0, root(), modifiers, key,
                                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        return error == nullptr;
    }

    /// Lets the keys of two modifiers change places, as a user's own keyboard setup may.
    void swapModifiers(int a, int b) {
        const std::unique_ptr<xcb_get_modifier_mapping_reply_t, FreeReply> old(
            xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr));
        const int perModifier = old->keycodes_per_modifier;
        const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(old.get());
        std::vector<xcb_keycode_t> swapped(keys, keys + 8 * perModifier);
        std::swap_ranges(swapped.begin() + a * perModifier, swapped.begin() + (a + 1) * perModifier,
                         swapped.begin() + b * perModifier);
        const std::unique_ptr<xcb_set_modifier_mapping_reply_t, FreeReply> reply(xcb_set_modifier_mapping_reply(
            m_connection, xcb_set_modifier_mapping(m_connection, static_cast<quint8>(perModifier), swapped.data()),
            nullptr));
        ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    }

private:
    xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root; }

    xcb_connection_t* m_connection;
};

class X11HotKeyTest : public testing::Test {
protected:
    /// Presses the combination and tells whether the hot key reported it once.
    bool reportsPress() {
        const qsizetype before = pressed.count();
        return display.press(summonPress) && waitUntil([&] { return pressed.count() > before; }) &&
               pressed.count() == before + 1;
    }

    VirtualDisplay display;
    X11HotKey hotKey{display.name()};
    QSignalSpy pressed{&hotKey, &HotKeyBackend::pressed};
    QSignalSpy refused{&hotKey, &HotKeyBackend::refused};
};

} // namespace

TEST_F(X11HotKeyTest, ReportsEachPressWhateverLocksAreOn) {
    ASSERT_TRUE(hotKey.grab(summonKeys));
    EXPECT_TRUE(reportsPress());
    for (const QString& lock : {u"Num_Lock"_s, u"Caps_Lock"_s, u"Num_Lock"_s, u"Caps_Lock"_s}) {
        ASSERT_TRUE(display.press(lock));
        EXPECT_TRUE(reportsPress()) << lock.toStdString();
    }
}

TEST_F(X11HotKeyTest, ReportsItsOwnCombinationOnly) {
    ASSERT_TRUE(hotKey.grab(summonKeys));
    for (const QString& other : {u"alt+n"_s, u"super+alt+shift+n"_s, u"super+alt+m"_s, u"n"_s}) {
        ASSERT_TRUE(display.press(other));
    }
    EXPECT_TRUE(reportsPress());
    EXPECT_EQ(pressed.count(), 1);
}

TEST_F(X11HotKeyTest, HoldingTheKeysCountsOnce) {
    ASSERT_TRUE(hotKey.grab(summonKeys));
    ASSERT_TRUE(display.xdotool({u"keydown"_s, summonPress}));
    // Longer than the server waits before it repeats a key.
    runEventLoop(std::chrono::milliseconds(1200));
    ASSERT_TRUE(display.xdotool({u"keyup"_s, summonPress}));
    EXPECT_EQ(pressed.count(), 1);
    EXPECT_TRUE(reportsPress());
}

TEST_F(X11HotKeyTest, ReportsNothingAfterItsReleaseAndTheNewCombinationAfterAChange) {
    ASSERT_TRUE(hotKey.grab(summonKeys));
    hotKey.release();
    ASSERT_TRUE(display.press(summonPress));
    ASSERT_TRUE(hotKey.grab(KeyShortcut(38, Modifiers::command, u"j"_s)));
    ASSERT_TRUE(display.press(summonPress));
    ASSERT_TRUE(display.press(u"ctrl+j"_s));
    ASSERT_TRUE(waitUntil([&] { return pressed.count() > 0; }));
    EXPECT_EQ(pressed.count(), 1);
    EXPECT_TRUE(OtherClient(display.name()).grab(summonKeys, XCB_MOD_MASK_1 | XCB_MOD_MASK_4));
}

TEST_F(X11HotKeyTest, IsRefusedWhatAnotherProgramHas) {
    X11HotKey other(display.name());
    ASSERT_TRUE(other.grab(summonKeys));
    EXPECT_FALSE(hotKey.grab(summonKeys));
    EXPECT_TRUE(hotKey.grab(KeyShortcut(38, Modifiers::command, u"j"_s)));
    other.release();
    EXPECT_TRUE(other.grab(summonKeys));
    other.release();
    // The server learns of the release on another connection.
    EXPECT_TRUE(waitUntil([&] { return hotKey.grab(summonKeys); }));
}

TEST_F(X11HotKeyTest, KeepsNothingIfOneVariantIsTaken) {
    constexpr quint16 plain = XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    OtherClient other(display.name());
    ASSERT_TRUE(other.grab(summonKeys, plain | XCB_MOD_MASK_2));
    EXPECT_FALSE(hotKey.grab(summonKeys));
    // What was grabbed first is given back on a connection that the server may read after this one.
    EXPECT_TRUE(waitUntil([&] { return other.grab(summonKeys, plain); }));
}

TEST_F(X11HotKeyTest, WorksAfterAnotherLayoutAndOtherModifiers) {
    ASSERT_TRUE(hotKey.grab(summonKeys));
    ASSERT_TRUE(display.run(u"setxkbmap"_s, {u"it"_s}));
    EXPECT_TRUE(reportsPress());

    OtherClient other(display.name());
    other.swapModifiers(3, 6);
    // The change is known when the old grabs are gone.
    ASSERT_TRUE(waitUntil([&] { return other.grab(summonKeys, XCB_MOD_MASK_1 | XCB_MOD_MASK_4 | XCB_MOD_MASK_3); }));
    EXPECT_TRUE(reportsPress());
    EXPECT_EQ(refused.count(), 0);
}

TEST(X11HotKey, IsRefusedWithoutADisplayAndForUnknownKeys) {
    X11HotKey nowhere(":9999");
    EXPECT_FALSE(nowhere.grab(summonKeys));
    const VirtualDisplay display;
    X11HotKey hotKey(display.name());
    EXPECT_FALSE(hotKey.grab(KeyShortcut(200, Modifiers::command, {})));
}

TEST(X11HotKey, TellsWhenTheDisplayEnds) {
    auto display = std::make_unique<VirtualDisplay>();
    X11HotKey hotKey(display->name());
    const QSignalSpy refused(&hotKey, &HotKeyBackend::refused);
    ASSERT_TRUE(hotKey.grab(summonKeys));
    display.reset();
    EXPECT_TRUE(waitUntil([&] { return refused.count() == 1; }));
}

} // namespace quillary::test
