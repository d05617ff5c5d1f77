#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <QString>

#include <array>
#include <optional>

namespace quillary {

/// What the user can bind to keys of their own choice.
enum class ShortcutAction {
    nextNote,
    previousNote,
    search,
    togglePreview,
    summon,
};

/// In the order in which settings list them and conflicts are looked for.
inline constexpr std::array allShortcutActions{
    ShortcutAction::nextNote,      ShortcutAction::previousNote, ShortcutAction::search,
    ShortcutAction::togglePreview, ShortcutAction::summon,
};

/// What an action is stored as, which also identifies it.
QString rawValue(ShortcutAction action);

/// The action that is stored as `rawValue`; none if there is no such action.
std::optional<ShortcutAction> shortcutActionFromRawValue(QStringView rawValue);

/// The name in menus and settings.
QString displayName(ShortcutAction action);

/// The keys of an action that the user has not changed.
KeyShortcut defaultShortcut(ShortcutAction action);

} // namespace quillary
