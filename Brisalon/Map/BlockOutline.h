#pragma once

#include "Brisalon/Map/BlockShape.h"

#include <QColor>
#include <QImage>
#include <QRect>

#include <span>

namespace brisalon {

/// A line along a shape's edge, centred on it.
struct OutlineStroke {
    QColor color;
    /// In points.
    double width;
};

/// The outline of a block as a small image that is stretched over the block:
/// its corners stand at the corners of `bounds`, its middle column and row fill
/// what lies between (a nine-patch). The cost of marking a block so does not
/// grow with it.
struct BlockOutline {
    /// Premultiplied. As large as `bounds`, or less where the middle is folded to
    /// the one column, or row, at `middle`.
    QImage image;
    /// Where the whole outline lies, in device pixels.
    QRect bounds;
    QPoint middle;

    /// Strokes are painted over one another in order.
    static BlockOutline paint(const BlockShape& shape, std::span<const OutlineStroke> strokes,
                              double ratio);
};

} // namespace brisalon
