#include "Quillary/Keyboard/KeyEvents.h"

#include "Quillary/Keyboard/NativeKeys.h"

#include <QKeyEvent>
#include <qpa/qplatformintegration.h>

#include <array>
#include <private/qguiapplication_p.h>
#include <utility>

namespace quillary::KeyEvents {

namespace {

using Modifiers = KeyShortcut::Modifiers;

constexpr std::array<std::pair<Qt::KeyboardModifier, Modifiers>, 4> modifierPairs{{
    {Qt::ControlModifier, Modifiers::command},
    {Qt::AltModifier, Modifiers::option},
    {Qt::MetaModifier, Modifiers::control},
    {Qt::ShiftModifier, Modifiers::shift},
}};

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
        return true;
    default:
        return false;
    }
}

/// The key of the layout's plain level. The platform plugin tries the key with every set of modifiers, the plain one
/// first; a plugin without a layout, as for tests, has no answer.
int plainKey(const QKeyEvent& event) {
    const QList<int> keys = QGuiApplicationPrivate::platformIntegration()->possibleKeys(&event);
    return keys.isEmpty() ? event.key() : static_cast<int>(keys.constFirst() & ~Qt::KeyboardModifierMask);
}

QString character(int key) {
    constexpr int firstKeyWithoutCharacter = Qt::Key_Escape;
    if (key <= 0 || key >= firstKeyWithoutCharacter) {
        return {};
    }
    return QString::fromUcs4(std::array{static_cast<char32_t>(key)}.data(), 1).toLower();
}

std::optional<quint16> keyCode(const QKeyEvent& event) {
    const std::optional<quint16> code = NativeKeys::keyCode(event.nativeScanCode());
    // A key that the user has made into another, as Caps Lock into Escape, counts as that.
    return code ? code
                : NativeKeys::keyCodeOfQtKey(event.key() == Qt::Key_Backtab ? Qt::Key_Tab : event.key(),
                                             event.modifiers().testFlag(Qt::KeypadModifier));
}

} // namespace

std::optional<KeyShortcut> shortcut(const QKeyEvent& event) {
    if (isModifier(event.key())) {
        return std::nullopt;
    }
    const std::optional<quint16> code = keyCode(event);
    return code ? std::optional(KeyShortcut(*code, modifiers(event.modifiers()), character(plainKey(event))))
                : std::nullopt;
}

KeyShortcut::Modifiers modifiers(Qt::KeyboardModifiers modifiers) {
    Modifiers result;
    for (const auto& [qtModifier, modifier] : modifierPairs) {
        if (modifiers.testFlag(qtModifier)) {
            result.insert(modifier);
        }
    }
    return result;
}

Qt::KeyboardModifiers qtModifiers(KeyShortcut::Modifiers modifiers) {
    Qt::KeyboardModifiers result;
    for (const auto& [qtModifier, modifier] : modifierPairs) {
        result.setFlag(qtModifier, modifiers.contains(modifier));
    }
    return result;
}

} // namespace quillary::KeyEvents
