#pragma once

#include "Brisalon/Map/MapLayers.h"
#include "Brisalon/Map/MapLevel.h"

#include <memory>

namespace brisalon {

/// A level ready to be shown: blocks and labels painted, and small copies of the
/// layers for what lies blurred under a translucent card.
struct MapPicture {
    std::shared_ptr<const MapLevel> level;
    double ratio = 1;
    MapLayers layers;
    /// The layers scaled to one pixel for every `smallStep` points.
    MapLayers smallLayers;

    static constexpr double smallStep = 4;

    /// Paints the whole picture: tens of milliseconds for a large window, so meant
    /// for a worker thread. Pure, but for the fonts of the QGuiApplication.
    static MapPicture paint(std::shared_ptr<const MapLevel> level, double ratio, QRgb background);
};

} // namespace brisalon
