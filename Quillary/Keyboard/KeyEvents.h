#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <Qt>

#include <optional>

class QKeyEvent;

namespace quillary {

/// What a key event is as a shortcut.
namespace KeyEvents {

/// The combination that was pressed; none for a modifier alone and for keys without a virtual key number. Its key is
/// the character that the physical key gives without modifiers in the user's layout, in lower case.
std::optional<KeyShortcut> shortcut(const QKeyEvent& event);

/// The modifiers of a shortcut: Ctrl is `command`, Alt `option`, Super `control`.
KeyShortcut::Modifiers modifiers(Qt::KeyboardModifiers modifiers);
Qt::KeyboardModifiers qtModifiers(KeyShortcut::Modifiers modifiers);

} // namespace KeyEvents

} // namespace quillary
