#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <xcb/xcb.h>

#include <vector>

namespace quillary {

/// Which of the server's modifier bits stand for which modifier keys on the keyboard as it is set up now.
class X11Modifiers {
public:
    /// The usual bits.
    X11Modifiers() = default;

    /// Asks the server.
    static X11Modifiers read(xcb_connection_t* connection);

    /// The bits of a shortcut's modifiers.
    quint16 mask(KeyShortcut::Modifiers modifiers) const;

    /// Every set of lock keys that may be on, none of them included.
    std::vector<quint16> lockVariants() const;

    /// The bits that don't matter.
    quint16 locks() const { return XCB_MOD_MASK_LOCK | m_numLock | m_scrollLock; }

private:
    quint16 m_alt = XCB_MOD_MASK_1;
    quint16 m_super = XCB_MOD_MASK_4;
    quint16 m_numLock = XCB_MOD_MASK_2;
    quint16 m_scrollLock = 0;
};

} // namespace quillary
