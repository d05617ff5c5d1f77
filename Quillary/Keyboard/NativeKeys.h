#pragma once

#include <QtGlobal>

#include <optional>

namespace quillary {

/// The one table between the keys of Linux and the virtual key numbers of shortcuts. A scan code is that of X11, which
/// Wayland shares: the kernel's code plus 8.
namespace NativeKeys {

/// The virtual key number of a physical key; none for keys that have none, as those of sound and light.
std::optional<quint16> keyCode(quint32 scanCode);

/// The virtual key number of the key that gives a Qt key on a US keyboard, for events that tell of no physical key.
std::optional<quint16> keyCodeOfQtKey(int key, bool isOnKeypad);

/// The physical key of a virtual key number.
std::optional<quint32> scanCode(quint16 keyCode);

} // namespace NativeKeys

} // namespace quillary
