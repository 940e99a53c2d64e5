#pragma once

#include "Brisalon/Map/MapLayers.h"

#include <QColor>
#include <QRectF>

#include <span>

namespace brisalon {

/// What the rasteriser needs to know of one block.
struct BlockFill {
    /// The undivided rectangle of the block, in points; inside the map.
    QRectF cell;
    QRgb color = 0;
};

/// Fills the two layers of a level: every block in its BlockShape, with a
/// gradient from its cell's top-left to its bottom-right corner that runs from
/// its colour at opacity 1.0 to the colour at opacity 0.72 (0.45 to 0.35 in the
/// dimmed layer) over the background. Pure; any thread.
class BlockRasterizer {
public:
    BlockRasterizer() = delete;

    /// The cells must not overlap. Time is linear in the pixels and the blocks.
    static MapLayers rasterize(std::span<const BlockFill> blocks, QSizeF size, double ratio,
                               QRgb background);
};

} // namespace brisalon
