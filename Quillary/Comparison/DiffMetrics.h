#pragma once

#include "Quillary/State/EditorStyle.h"

#include <QFont>

namespace quillary {

/// The sizes of a comparison's rows, all from the size of its text; in logical pixels.
struct DiffMetrics {
    explicit DiffMetrics(const EditorStyle& style);

    /// Between the left border of a line and its first gutter column.
    static constexpr int gutterInset = 4;
    /// Above and below a fold's own line.
    static constexpr int foldPadding = 4;

    double baseSize;
    QFont textFont;
    QFont gutterFont;
    /// From one line of text to the next.
    int pitch;
    /// From the top of a line to the top of its letters' room.
    double textTop;
    double gutterColumn;
    /// Between the gutter and the text, and behind the text.
    double textInset;
    /// Of a common letter.
    double unitWidth;

    /// Where the text begins in a line with this number of gutter columns.
    double textLeft(qsizetype columns) const {
        return gutterInset + gutterColumn * static_cast<double>(columns) + textInset;
    }

    /// The room for text in a line of this width.
    double textWidth(double lineWidth, qsizetype columns) const;

    int foldHeight() const { return pitch + 2 * foldPadding; }
};

} // namespace quillary
