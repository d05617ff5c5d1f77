#pragma once

#include <QPalette>

class QPainter;
class QRect;

namespace quillary {

/// The diagonal lines where one side of a row has nothing.
namespace Hatching {

/// Fills a rectangle. The pattern hangs at the painter's brush origin, so that it goes on from one rectangle to
/// the next and scrolls with them.
void paint(QPainter& painter, const QRect& rect, const QPalette& palette);

} // namespace Hatching

} // namespace quillary
