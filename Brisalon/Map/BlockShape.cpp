#include "Brisalon/Map/BlockShape.h"

#include "Brisalon/Theme/ContinuousRectangle.h"

namespace brisalon {

BlockShape BlockShape::of(const QRectF& cell, double ratio)
{
    const double shortSide = std::min(cell.width(), cell.height());
    const double inset = std::min(shortSide * 0.04, 2.0) * ratio;
    const double radius = std::min(std::max(shortSide * 0.08, 4.0), 10.0) * ratio;

    BlockShape shape;
    shape.left = cell.left() * ratio;
    shape.top = cell.top() * ratio;
    shape.right = cell.right() * ratio;
    shape.bottom = cell.bottom() * ratio;
    // The cell's edges are rounded before the gap is taken off, so that a gap
    // has the same width on both of its sides.
    const bool crisp = inset >= 0.5;
    if (crisp) {
        shape.left = std::round(shape.left);
        shape.top = std::round(shape.top);
        shape.right = std::round(shape.right);
        shape.bottom = std::round(shape.bottom);
    }
    const double gap = crisp ? std::round(inset) : inset;
    shape.left += gap;
    shape.top += gap;
    shape.right -= gap;
    shape.bottom -= gap;
    shape.corner = std::min(radius * continuousCornerScale,
                            std::max(std::min(shape.width(), shape.height()) / 2, 0.0));
    return shape;
}

} // namespace brisalon
