#pragma once

#include <QIcon>

namespace quillary::MenuBarIcon {

/// The mark in the desktop's panel, the letters "Q.L.", drawn for each size that panels ask for. Its colour is for a
/// dark or a light panel, with a rim in the opposite one: a desktop tells what windows it prefers, not what its panel
/// looks like, and on a panel of the other kind the rim is what can be seen.
const QIcon& image(bool isPanelDark);

} // namespace quillary::MenuBarIcon
