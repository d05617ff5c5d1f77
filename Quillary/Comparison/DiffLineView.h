#pragma once

#include "Quillary/Comparison/DiffMetrics.h"
#include "QuillaryCore/Compare/DiffSegments.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QList>
#include <QPalette>
#include <QRect>
#include <QTextLayout>

#include <memory>
#include <optional>

class QPainter;

namespace quillary {

/// One line of a comparison, of one half or of the column: its numbers, and its text in the colours of its tone. A
/// value that knows how to lay itself out and draw itself.
struct DiffLineView {
    /// The colouring of a line.
    enum class Tone {
        neutral,
        removed,
        added,
        empty,
    };

    /// One for each gutter column; a column may be blank.
    QList<std::optional<qsizetype>> numbers;
    Tone tone = Tone::neutral;
    /// Absent where this side has nothing.
    std::optional<DiffSegments> segments;

    /// How many chunks the text is laid out in.
    qsizetype chunkCount() const;

    /// The layout of a chunk in lines of a width, without colours, so that it is good in every appearance.
    std::unique_ptr<QTextLayout> layout(const DiffMetrics& metrics, double textWidth, qsizetype chunk) const;

    /// How high the chunk probably is, without laying it out.
    int estimatedHeight(const DiffMetrics& metrics, double textWidth, qsizetype chunk) const;

    /// Fills a rectangle with the ground of the line's tone.
    void paintGround(QPainter& painter, const QRect& rect, const QPalette& palette) const;

    /// Draws the text of a chunk, and with the first one the numbers, into a rectangle that is as wide as the line and
    /// may be higher.
    void paintText(QPainter& painter, const QRect& rect, const DiffMetrics& metrics, const QTextLayout& layout,
                   qsizetype chunk, const QPalette& palette) const;

    /// What the numbers are drawn with: dimmed, and translucent.
    static QColor numberColor(const QPalette& palette);

    /// What is laid out for a stretch of a line: the same number of units, with a sign for each that has none, and a
    /// blank for nothing.
    static QString shown(QStringView text);

private:
    QList<QTextLayout::FormatRange> marks(const TextRange& chunk, const QPalette& palette) const;
    void paintNumbers(QPainter& painter, const QRect& rect, const DiffMetrics& metrics, const QPalette& palette) const;
};

} // namespace quillary
