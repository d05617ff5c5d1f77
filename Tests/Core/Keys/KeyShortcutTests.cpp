#include "QuillaryCore/Keys/KeyShortcut.h"

#include <QHash>

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

constexpr Modifiers capsLock(0x10000);
constexpr Modifiers leftCommand(0x8);

struct TextCase {
    KeyShortcut shortcut;
    QString displayKey;
    QString displayString;
};

const TextCase textCases[] = {
    {{KeyCode::k, Modifiers::command, u"k"_s}, u"K"_s, u"⌘K"_s},
    {{KeyCode::p, Modifiers::command | Modifiers::shift, u"p"_s}, u"P"_s, u"⇧⌘P"_s},
    {{KeyCode::n, Modifiers::option | Modifiers::control, u"n"_s}, u"N"_s, u"⌃⌥N"_s},
    {{KeyCode::g, Modifiers::relevant, u"g"_s}, u"G"_s, u"⌃⌥⇧⌘G"_s},
    {{KeyCode::space, {}, u"x"_s}, u"Spazio"_s, u"Spazio"_s},
    {{KeyCode::downArrow, Modifiers::command, u"↓"_s}, u"↓"_s, u"⌘↓"_s},
    {{200, {}, {}}, {}, {}},
    {{200, Modifiers::command, {}}, {}, u"⌘"_s},
    {{27, Modifiers::command, u"ß"_s}, u"SS"_s, u"⌘SS"_s},
    {{41, Modifiers::option, u"ò"_s}, u"Ò"_s, u"⌥Ò"_s},
};

struct NameCase {
    quint16 keyCode;
    QString name;
};

const NameCase nameCases[] = {
    {123, u"←"_s},  {124, u"→"_s},  {125, u"↓"_s},   {126, u"↑"_s},   {48, u"⇥"_s},    {36, u"↩"_s},  {49, u"Spazio"_s},
    {51, u"⌫"_s},   {117, u"⌦"_s},  {53, u"⎋"_s},    {116, u"⇞"_s},   {121, u"⇟"_s},   {115, u"↖"_s}, {119, u"↘"_s},
    {122, u"F1"_s}, {120, u"F2"_s}, {99, u"F3"_s},   {118, u"F4"_s},  {96, u"F5"_s},   {97, u"F6"_s}, {98, u"F7"_s},
    {100, u"F8"_s}, {101, u"F9"_s}, {109, u"F10"_s}, {103, u"F11"_s}, {111, u"F12"_s},
};

/// Texts that are no stored shortcut.
const QString undecodable[] = {
    u""_s,
    u"nonsense"_s,
    u"[]"_s,
    u"null"_s,
    u"{}"_s,
    u"{\"modifiers\":0,\"key\":\"k\"}"_s,
    u"{\"keyCode\":40,\"key\":\"k\"}"_s,
    u"{\"keyCode\":40,\"modifiers\":0}"_s,
    u"{\"keyCode\":\"40\",\"modifiers\":0,\"key\":\"k\"}"_s,
    u"{\"keyCode\":40,\"modifiers\":{\"rawValue\":0},\"key\":\"k\"}"_s,
    u"{\"keyCode\":40,\"modifiers\":0,\"key\":null}"_s,
    u"{\"keyCode\":65536,\"modifiers\":0,\"key\":\"\"}"_s,
    u"{\"keyCode\":6.5536e4,\"modifiers\":0,\"key\":\"\"}"_s,
    u"{\"keyCode\":-1,\"modifiers\":0,\"key\":\"\"}"_s,
    u"{\"keyCode\":1.5,\"modifiers\":0,\"key\":\"\"}"_s,
    u"{\"keyCode\":1,\"modifiers\":-1,\"key\":\"\"}"_s,
    u"{\"keyCode\":1,\"modifiers\":18446744073709551616,\"key\":\"\"}"_s,
    u"{\"keyCode\":true,\"modifiers\":0,\"key\":\"\"}"_s,
};

} // namespace

TEST(KeyCode, HasTheNumbersOfStoredShortcuts) {
    EXPECT_EQ(KeyCode::returnKey, 36);
    EXPECT_EQ(KeyCode::tab, 48);
    EXPECT_EQ(KeyCode::space, 49);
    EXPECT_EQ(KeyCode::deleteKey, 51);
    EXPECT_EQ(KeyCode::escape, 53);
    EXPECT_EQ(KeyCode::home, 115);
    EXPECT_EQ(KeyCode::pageUp, 116);
    EXPECT_EQ(KeyCode::forwardDelete, 117);
    EXPECT_EQ(KeyCode::end, 119);
    EXPECT_EQ(KeyCode::pageDown, 121);
    EXPECT_EQ(KeyCode::leftArrow, 123);
    EXPECT_EQ(KeyCode::rightArrow, 124);
    EXPECT_EQ(KeyCode::downArrow, 125);
    EXPECT_EQ(KeyCode::upArrow, 126);
    EXPECT_EQ(KeyCode::g, 5);
    EXPECT_EQ(KeyCode::p, 35);
    EXPECT_EQ(KeyCode::k, 40);
    EXPECT_EQ(KeyCode::n, 45);
}

TEST(KeyShortcut, ShowsModifiersInOneOrderAndTheKeyInCapitals) {
    for (const TextCase& each : textCases) {
        EXPECT_EQ(each.shortcut.displayKey(), each.displayKey);
        EXPECT_EQ(each.shortcut.displayString(), each.displayString);
    }
}

TEST(KeyShortcut, NamesTheKeysThatDontShowByACharacter) {
    EXPECT_EQ(std::size(nameCases), 26U);
    EXPECT_EQ(KeyShortcut::specialKeyNames().size(), 26);
    for (const NameCase& each : nameCases) {
        EXPECT_EQ(KeyShortcut(each.keyCode, {}, u"x"_s).displayKey(), each.name);
    }
}

TEST(KeyShortcut, KnowsTheFunctionKeys) {
    EXPECT_EQ(KeyShortcut::functionKeyCodes(), (QSet<quint16>{122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111}));
    EXPECT_TRUE(KeyShortcut(96, {}, {}).isFunctionKey());
    EXPECT_FALSE(KeyShortcut(KeyCode::k, {}, u"k"_s).isFunctionKey());
}

TEST(KeyShortcut, KeepsTheFourModifiersOnly) {
    const KeyShortcut plain(KeyCode::k, Modifiers::command, u"k"_s);
    const KeyShortcut withLock(KeyCode::k, Modifiers::command | capsLock | leftCommand, u"k"_s);
    EXPECT_EQ(withLock.modifiers, Modifiers::command);
    EXPECT_EQ(withLock, plain);
}

TEST(KeyShortcut, IsEqualWhateverCharacterItShows) {
    const KeyShortcut small(KeyCode::k, Modifiers::command, u"k"_s);
    const KeyShortcut capital(KeyCode::k, Modifiers::command, u"K"_s);
    const KeyShortcut empty(KeyCode::k, Modifiers::command, {});
    EXPECT_EQ(small, capital);
    EXPECT_EQ(small, empty);
    EXPECT_EQ(qHash(small), qHash(capital));
    EXPECT_EQ(qHash(small), qHash(empty));
    EXPECT_NE(small, KeyShortcut(KeyCode::k, Modifiers::option, u"k"_s));
    EXPECT_NE(small, KeyShortcut(KeyCode::n, Modifiers::command, u"k"_s));
}

TEST(KeyShortcut, IsWorthRecordingWithMoreThanShiftOrAsFunctionKey) {
    EXPECT_TRUE(KeyShortcut(0, Modifiers::option, u"a"_s).isValidForRecording());
    EXPECT_TRUE(KeyShortcut(0, Modifiers::control, u"a"_s).isValidForRecording());
    EXPECT_TRUE(KeyShortcut(0, Modifiers::command | Modifiers::shift, u"a"_s).isValidForRecording());
    EXPECT_TRUE(KeyShortcut(96, {}, {}).isValidForRecording());
    EXPECT_TRUE(KeyShortcut(96, Modifiers::shift, {}).isValidForRecording());
    EXPECT_FALSE(KeyShortcut(0, Modifiers::shift, u"a"_s).isValidForRecording());
    EXPECT_FALSE(KeyShortcut(0, {}, u"a"_s).isValidForRecording());
    EXPECT_FALSE(KeyShortcut(KeyCode::space, Modifiers::shift, u" "_s).isValidForRecording());
}

TEST(KeyShortcut, IsStoredAsAnObjectOfThree) {
    EXPECT_EQ(KeyShortcut(KeyCode::k, Modifiers::command, u"k"_s).encoded(),
              u"{\"keyCode\":40,\"modifiers\":1048576,\"key\":\"k\"}"_s);
    EXPECT_EQ(KeyShortcut(39, {}, u"\"\\\t"_s).encoded(),
              u"{\"keyCode\":39,\"modifiers\":0,\"key\":\"\\\"\\\\\\t\"}"_s);
    EXPECT_EQ(KeyShortcut(65535, Modifiers::relevant, u"%1"_s).encoded(),
              u"{\"keyCode\":65535,\"modifiers\":1966080,\"key\":\"%1\"}"_s);
}

TEST(KeyShortcut, ReadsWhatItStored) {
    for (const TextCase& each : textCases) {
        const std::optional<KeyShortcut> decoded = KeyShortcut::decode(each.shortcut.encoded());
        ASSERT_TRUE(decoded);
        EXPECT_EQ(*decoded, each.shortcut);
        EXPECT_EQ(decoded->key, each.shortcut.key);
    }
}

TEST(KeyShortcut, TakesStoredModifiersAsTheyStand) {
    const auto decoded = KeyShortcut::decode(u"{\"keyCode\":40,\"modifiers\":1114112,\"key\":\"k\"}");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->modifiers, Modifiers::command | capsLock);
    EXPECT_NE(*decoded, KeyShortcut(KeyCode::k, Modifiers::command, u"k"_s));
    EXPECT_EQ(KeyShortcut::decode(u"{\"keyCode\":40,\"modifiers\":18446744073709551615,\"key\":\"\"}")->modifiers,
              Modifiers(~quint64{0}));
}

TEST(KeyShortcut, ReadsUnknownKeysAnyOrderAndAnyWritingOfANumber) {
    const auto decoded =
        KeyShortcut::decode(u"{\"altro\":[1,{}],\"key\":\"\",\"modifiers\":1.048576e6,\"keyCode\":40.0}");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, KeyShortcut(KeyCode::k, Modifiers::command, {}));
}

TEST(KeyShortcut, RefusesWhatLacksAKeyOrHasAWrongType) {
    for (const QString& text : undecodable) {
        EXPECT_EQ(KeyShortcut::decode(text), std::nullopt) << text.toStdString();
    }
}

} // namespace quillary
