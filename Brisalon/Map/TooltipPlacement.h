#pragma once

#include <QPointF>
#include <QSizeF>

namespace brisalon {

/// Where the map's tooltip has its top-left corner, in points on a canvas of that
/// size: 14 to the right of the pointer and 16 below it, at least 8 from the left
/// and top edges, and pushed back from the right and bottom edges as if it always
/// took 240 × 80.
QPointF tooltipPosition(QPointF pointer, QSizeF canvas);

} // namespace brisalon
