#pragma once

#include <QImage>

namespace brisalon {

/// One level of the map painted twice, so that a hover only has to choose
/// between the pictures: as it is when nothing is hovered, and as it is behind
/// a hovered block. Opaque (RGB32, the background is part of the picture), both
/// of the same size, in device pixels.
struct MapLayers {
    QImage bright;
    QImage dimmed;
};

} // namespace brisalon
