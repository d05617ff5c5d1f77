#pragma once

#include <QtGlobal>

namespace quillary {

/// Lets Qt ask for the focus with the time, by the X server's clock, of what the user has just done outside its
/// windows, or a window manager may take the request for an old one. Does nothing except on X11.
void tellQtOfUserTime(quint32 time);

} // namespace quillary
