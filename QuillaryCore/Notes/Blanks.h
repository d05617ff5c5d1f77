#pragma once

#include <QStringView>

namespace quillary {

/// Whether a unit is a blank within a line: a space of any width or a tab. Line ends are none.
inline bool isBlank(QChar unit) {
    return unit == u'\t' || unit.category() == QChar::Separator_Space;
}

/// A text without the blanks at its two ends.
inline QStringView trimmedOfBlanks(QStringView text) {
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

} // namespace quillary
