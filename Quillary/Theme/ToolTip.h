#pragma once

#include <QString>

namespace quillary {

/// A text, such as a name, as a help text that shows it as it stands. Qt reads one that looks like HTML as HTML.
QString plainToolTip(const QString& text);

} // namespace quillary
