#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <QString>

namespace quillary {

/// A shortcut as a desktop portal is asked for it (freedesktop.org, shortcuts): modifiers, then the
/// name of the key's symbol, as in "CTRL+ALT+n". Empty if the key has no symbol.
QString portalTrigger(const KeyShortcut& shortcut);

} // namespace quillary
