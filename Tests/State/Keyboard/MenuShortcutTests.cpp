#include "Quillary/Keyboard/MenuShortcut.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

struct MenuCase {
    KeyShortcut shortcut;
    QString text;
};

const MenuCase menuCases[] = {
    {{KeyCode::k, Modifiers::command, u"k"_s}, u"Ctrl+K"_s},
    {{KeyCode::k, Modifiers::command, u"K"_s}, u"Ctrl+K"_s},
    {{KeyCode::p, Modifiers::shift | Modifiers::command, u"p"_s}, u"Ctrl+Shift+P"_s},
    {{KeyCode::n, Modifiers::control | Modifiers::option, u"n"_s}, u"Meta+Alt+N"_s},
    {{41, Modifiers::option, u"ò"_s}, u"Alt+Ò"_s},
    {{18, Modifiers::command, u"1"_s}, u"Ctrl+1"_s},
    {{36, Modifiers::command, {}}, u"Ctrl+Return"_s},
    {{48, Modifiers::option, {}}, u"Alt+Tab"_s},
    {{49, Modifiers::command, u"x"_s}, u"Ctrl+Space"_s},
    {{51, Modifiers::command, {}}, u"Ctrl+Backspace"_s},
    {{53, Modifiers::command, {}}, u"Ctrl+Esc"_s},
    {{115, Modifiers::command, {}}, u"Ctrl+Home"_s},
    {{116, Modifiers::command, {}}, u"Ctrl+PgUp"_s},
    {{117, Modifiers::command, {}}, u"Ctrl+Del"_s},
    {{119, Modifiers::command, {}}, u"Ctrl+End"_s},
    {{121, Modifiers::command, {}}, u"Ctrl+PgDown"_s},
    {{123, Modifiers::command, u"←"_s}, u"Ctrl+Left"_s},
    {{124, Modifiers::command, u"→"_s}, u"Ctrl+Right"_s},
    {{125, Modifiers::command, u"↓"_s}, u"Ctrl+Down"_s},
    {{126, Modifiers::command, u"↑"_s}, u"Ctrl+Up"_s},
    {{96, {}, {}}, {}},
    {{200, Modifiers::command, {}}, {}},
    {{200, Modifiers::command, u"ab"_s}, {}},
};

} // namespace

TEST(MenuShortcut, IsTheKeyOfItsNameOrCharacter) {
    for (const MenuCase& each : menuCases) {
        EXPECT_EQ(menuShortcut(each.shortcut).toString(QKeySequence::PortableText), each.text);
        EXPECT_EQ(keyEquivalent(each.shortcut).has_value(), !each.text.isEmpty());
    }
}

} // namespace quillary
