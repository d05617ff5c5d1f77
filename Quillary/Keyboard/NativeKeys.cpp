#include "Quillary/Keyboard/NativeKeys.h"

#include <Qt>

#include <algorithm>
#include <array>

namespace quillary::NativeKeys {

namespace {

struct Row {
    /// The kernel's code (linux/input-event-codes.h).
    quint32 code;
    quint16 keyCode;
    int qtKey;
    bool isOnKeypad = false;
};

/// X11 keeps its first codes for other things.
constexpr quint32 firstScanCode = 8;

constexpr int noQtKey = 0;

constexpr std::array keyRows{
    // the row of Escape
    Row{1, 53, Qt::Key_Escape},
    Row{59, 122, Qt::Key_F1},
    Row{60, 120, Qt::Key_F2},
    Row{61, 99, Qt::Key_F3},
    Row{62, 118, Qt::Key_F4},
    Row{63, 96, Qt::Key_F5},
    Row{64, 97, Qt::Key_F6},
    Row{65, 98, Qt::Key_F7},
    Row{66, 100, Qt::Key_F8},
    Row{67, 101, Qt::Key_F9},
    Row{68, 109, Qt::Key_F10},
    Row{87, 103, Qt::Key_F11},
    Row{88, 111, Qt::Key_F12},
    Row{183, 105, Qt::Key_F13},
    Row{184, 107, Qt::Key_F14},
    Row{185, 113, Qt::Key_F15},
    Row{186, 106, Qt::Key_F16},
    Row{187, 64, Qt::Key_F17},
    Row{188, 79, Qt::Key_F18},
    Row{189, 80, Qt::Key_F19},
    Row{190, 90, Qt::Key_F20},
    // the row of digits
    Row{41, 50, Qt::Key_QuoteLeft},
    Row{2, 18, Qt::Key_1},
    Row{3, 19, Qt::Key_2},
    Row{4, 20, Qt::Key_3},
    Row{5, 21, Qt::Key_4},
    Row{6, 23, Qt::Key_5},
    Row{7, 22, Qt::Key_6},
    Row{8, 26, Qt::Key_7},
    Row{9, 28, Qt::Key_8},
    Row{10, 25, Qt::Key_9},
    Row{11, 29, Qt::Key_0},
    Row{12, 27, Qt::Key_Minus},
    Row{13, 24, Qt::Key_Equal},
    Row{14, 51, Qt::Key_Backspace},
    // the three rows of letters
    Row{15, 48, Qt::Key_Tab},
    Row{16, 12, Qt::Key_Q},
    Row{17, 13, Qt::Key_W},
    Row{18, 14, Qt::Key_E},
    Row{19, 15, Qt::Key_R},
    Row{20, 17, Qt::Key_T},
    Row{21, 16, Qt::Key_Y},
    Row{22, 32, Qt::Key_U},
    Row{23, 34, Qt::Key_I},
    Row{24, 31, Qt::Key_O},
    Row{25, 35, Qt::Key_P},
    Row{26, 33, Qt::Key_BracketLeft},
    Row{27, 30, Qt::Key_BracketRight},
    Row{28, 36, Qt::Key_Return},
    Row{30, 0, Qt::Key_A},
    Row{31, 1, Qt::Key_S},
    Row{32, 2, Qt::Key_D},
    Row{33, 3, Qt::Key_F},
    Row{34, 5, Qt::Key_G},
    Row{35, 4, Qt::Key_H},
    Row{36, 38, Qt::Key_J},
    Row{37, 40, Qt::Key_K},
    Row{38, 37, Qt::Key_L},
    Row{39, 41, Qt::Key_Semicolon},
    Row{40, 39, Qt::Key_Apostrophe},
    Row{43, 42, Qt::Key_Backslash},
    Row{86, 10, Qt::Key_section},
    Row{44, 6, Qt::Key_Z},
    Row{45, 7, Qt::Key_X},
    Row{46, 8, Qt::Key_C},
    Row{47, 9, Qt::Key_V},
    Row{48, 11, Qt::Key_B},
    Row{49, 45, Qt::Key_N},
    Row{50, 46, Qt::Key_M},
    Row{51, 43, Qt::Key_Comma},
    Row{52, 47, Qt::Key_Period},
    Row{53, 44, Qt::Key_Slash},
    Row{57, 49, Qt::Key_Space},
    // keys of Japanese and Brazilian keyboards
    Row{89, 94, noQtKey},
    Row{124, 93, Qt::Key_yen},
    Row{121, 95, noQtKey},
    // navigation
    Row{110, 114, Qt::Key_Insert},
    Row{111, 117, Qt::Key_Delete},
    Row{102, 115, Qt::Key_Home},
    Row{107, 119, Qt::Key_End},
    Row{104, 116, Qt::Key_PageUp},
    Row{109, 121, Qt::Key_PageDown},
    Row{105, 123, Qt::Key_Left},
    Row{106, 124, Qt::Key_Right},
    Row{108, 125, Qt::Key_Down},
    Row{103, 126, Qt::Key_Up},
    Row{127, 110, Qt::Key_Menu},
    // the keypad
    Row{98, 75, Qt::Key_Slash, true},
    Row{55, 67, Qt::Key_Asterisk, true},
    Row{74, 78, Qt::Key_Minus, true},
    Row{78, 69, Qt::Key_Plus, true},
    Row{96, 76, Qt::Key_Enter, true},
    Row{83, 65, Qt::Key_Period, true},
    Row{117, 81, Qt::Key_Equal, true},
    Row{82, 82, Qt::Key_0, true},
    Row{79, 83, Qt::Key_1, true},
    Row{80, 84, Qt::Key_2, true},
    Row{81, 85, Qt::Key_3, true},
    Row{75, 86, Qt::Key_4, true},
    Row{76, 87, Qt::Key_5, true},
    Row{77, 88, Qt::Key_6, true},
    Row{71, 89, Qt::Key_7, true},
    Row{72, 91, Qt::Key_8, true},
    Row{73, 92, Qt::Key_9, true},
};

} // namespace

std::optional<quint16> keyCode(quint32 scanCode) {
    const auto* const row = std::find_if(keyRows.begin(), keyRows.end(),
                                         [&](const Row& each) { return each.code + firstScanCode == scanCode; });
    return row == keyRows.end() ? std::nullopt : std::optional(row->keyCode);
}

std::optional<quint16> keyCodeOfQtKey(int key, bool isOnKeypad) {
    const auto find = [&](bool onKeypad) {
        return std::find_if(keyRows.begin(), keyRows.end(), [&](const Row& each) {
            return each.qtKey != noQtKey && each.qtKey == key && each.isOnKeypad == onKeypad;
        });
    };
    const auto* row = find(isOnKeypad);
    if (row == keyRows.end()) {
        row = find(!isOnKeypad);
    }
    return row == keyRows.end() ? std::nullopt : std::optional(row->keyCode);
}

std::optional<quint32> scanCode(quint16 keyCode) {
    const auto* const row =
        std::find_if(keyRows.begin(), keyRows.end(), [&](const Row& each) { return each.keyCode == keyCode; });
    return row == keyRows.end() ? std::nullopt : std::optional(row->code + firstScanCode);
}

} // namespace quillary::NativeKeys
