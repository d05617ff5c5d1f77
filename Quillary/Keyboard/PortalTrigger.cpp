#include "Quillary/Keyboard/PortalTrigger.h"

#include <QHash>
#include <QStringList>

#include <array>
#include <utility>
#include <xkbcommon/xkbcommon.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using TriggerModifiers = KeyShortcut::Modifiers;

QString symbolName(const KeyShortcut& shortcut) {
    static const QHash<quint16, QString> names{
        {KeyCode::returnKey, u"Return"_s}, {KeyCode::tab, u"Tab"_s},
        {KeyCode::space, u"space"_s},      {KeyCode::deleteKey, u"BackSpace"_s},
        {KeyCode::escape, u"Escape"_s},    {KeyCode::home, u"Home"_s},
        {KeyCode::pageUp, u"Page_Up"_s},   {KeyCode::forwardDelete, u"Delete"_s},
        {KeyCode::end, u"End"_s},          {KeyCode::pageDown, u"Page_Down"_s},
        {KeyCode::leftArrow, u"Left"_s},   {KeyCode::rightArrow, u"Right"_s},
        {KeyCode::downArrow, u"Down"_s},   {KeyCode::upArrow, u"Up"_s},
    };
    if (const auto name = names.constFind(shortcut.keyCode); name != names.cend()) {
        return *name;
    }
    if (shortcut.isFunctionKey()) {
        return KeyShortcut::specialKeyNames().value(shortcut.keyCode);
    }
    const QList<uint> characters = shortcut.key.toUcs4();
    if (characters.size() != 1) {
        return {};
    }
    std::array<char, 64> name{};
    const xkb_keysym_t symbol = xkb_utf32_to_keysym(characters.constFirst());
    return symbol != XKB_KEY_NoSymbol && xkb_keysym_get_name(symbol, name.data(), name.size()) > 0
               ? QString::fromLatin1(name.data())
               : QString();
}

} // namespace

QString portalTrigger(const KeyShortcut& shortcut) {
    constexpr std::array<std::pair<TriggerModifiers, QLatin1StringView>, 4> modifierNames{{
        {TriggerModifiers::command, "CTRL"_L1},
        {TriggerModifiers::option, "ALT"_L1},
        {TriggerModifiers::shift, "SHIFT"_L1},
        {TriggerModifiers::control, "LOGO"_L1},
    }};
    const QString symbol = symbolName(shortcut);
    if (symbol.isEmpty()) {
        return {};
    }
    QStringList parts;
    for (const auto& [modifier, name] : modifierNames) {
        if (shortcut.modifiers.contains(modifier)) {
            parts.append(name);
        }
    }
    parts.append(symbol);
    return parts.join(u'+');
}

} // namespace quillary
