#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <QKeySequence>
#include <Qt>

#include <optional>

namespace quillary {

/// The key that a menu shows for a shortcut; none if it can't be expressed, as a key without a name or character.
std::optional<Qt::Key> keyEquivalent(const KeyShortcut& shortcut);

/// The shortcut as menus show it; empty if its key can't be expressed.
QKeySequence menuShortcut(const KeyShortcut& shortcut);

} // namespace quillary
