#include "Quillary/Keyboard/KeyEvents.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

QKeyEvent press(int key, Qt::KeyboardModifiers modifiers, quint32 code = 0) {
    return {QEvent::KeyPress, key, modifiers, code == 0 ? 0 : code + 8, 0, 0};
}

} // namespace

TEST(KeyEvents, TakeThePhysicalKeyAndTheCharacterOfTheLayout) {
    // As on a German keyboard, whose Z lies where a US one has its Y.
    const auto shortcut = KeyEvents::shortcut(press(Qt::Key_Z, Qt::ControlModifier, KEY_Y));
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(*shortcut, KeyShortcut(16, Modifiers::command, {}));
    EXPECT_EQ(shortcut->key, u"z"_s);
}

TEST(KeyEvents, TranslateEachModifier) {
    const std::pair<Qt::KeyboardModifiers, Modifiers> pairs[] = {
        {Qt::NoModifier, {}},
        {Qt::ControlModifier, Modifiers::command},
        {Qt::AltModifier, Modifiers::option},
        {Qt::MetaModifier, Modifiers::control},
        {Qt::ShiftModifier, Modifiers::shift},
        {Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::ShiftModifier, Modifiers::relevant},
    };
    for (const auto& [qt, modifiers] : pairs) {
        EXPECT_EQ(KeyEvents::modifiers(qt), modifiers);
        EXPECT_EQ(KeyEvents::qtModifiers(modifiers), qt);
    }
    EXPECT_EQ(KeyEvents::modifiers(Qt::KeypadModifier | Qt::GroupSwitchModifier), Modifiers());
}

TEST(KeyEvents, AreNoShortcutWithoutAKeyOfTheTable) {
    for (const int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Meta, Qt::Key_Alt, Qt::Key_AltGr, Qt::Key_CapsLock,
                          Qt::Key_NumLock, Qt::Key_Super_L, Qt::Key_VolumeUp, Qt::Key_unknown}) {
        EXPECT_EQ(KeyEvents::shortcut(press(key, Qt::ControlModifier)), std::nullopt) << key;
    }
}

TEST(KeyEvents, AKeyThatWasMadeAnotherCountsAsThat) {
    const auto shortcut = KeyEvents::shortcut(press(Qt::Key_Escape, {}, KEY_CAPSLOCK));
    ASSERT_TRUE(shortcut);
    EXPECT_EQ(shortcut->keyCode, KeyCode::escape);
}

TEST(KeyEvents, KeysWithoutACharacterHaveNoneAndOthersTheSmallOne) {
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_Escape, {}))->key, QString());
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_F5, {}))->key, QString());
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_Space, {}))->key, u" "_s);
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_P, Qt::ShiftModifier))->key, u"p"_s);
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_Ograve, {}, KEY_SEMICOLON))->key, u"ò"_s);
    EXPECT_EQ(KeyEvents::shortcut(press(Qt::Key_Backtab, Qt::ShiftModifier))->keyCode, KeyCode::tab);
}

} // namespace quillary
