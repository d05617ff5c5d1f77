#pragma once

#include <QString>

namespace quillary {

/// A name from disk as one line for a person to read: what can't be shown is U+FFFD, controls and line ends are blanks.
QString shownName(const QString& name);

/// The same as the text of a menu's item: no character makes a mnemonic, and what is too wide for a menu ends with an
/// ellipsis.
QString menuText(const QString& name);

} // namespace quillary
