#include "Quillary/Theme/ToolTip.h"

#include <QTextDocument>

namespace quillary {

QString plainToolTip(const QString& text) {
    // Escaped without need, an ampersand would show as its escape, since the rest doesn't look like HTML.
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace quillary
