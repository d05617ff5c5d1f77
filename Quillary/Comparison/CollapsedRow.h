#pragma once

#include "Quillary/Comparison/DiffMetrics.h"

#include <QPalette>
#include <QRect>

class QPainter;

namespace quillary {

/// A fold: a clickable row over the full width that tells how many equal rows are hidden.
namespace CollapsedRow {

void paint(QPainter& painter, const QRect& rect, qsizetype count, const DiffMetrics& metrics, bool isHovered,
           const QPalette& palette);

} // namespace CollapsedRow

} // namespace quillary
