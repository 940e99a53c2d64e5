#include "Brisalon/Map/MapPicture.h"

#include "Brisalon/Map/BlockLabel.h"
#include "Brisalon/Map/BlockRasterizer.h"
#include "Brisalon/Map/NodeColor.h"

#include <cmath>

namespace brisalon {

MapPicture MapPicture::paint(std::shared_ptr<const MapLevel> level, double ratio, QRgb background)
{
    MapPicture picture;
    picture.ratio = ratio;

    std::vector<BlockFill> fills;
    fills.reserve(level->count());
    for (std::size_t block = 0; block < level->count(); ++block) {
        const FileNode& node = level->node(block);
        fills.push_back({level->cell(block), NodeColor::color(node.hogKind(), node.name()).rgb()});
    }
    picture.layers = BlockRasterizer::rasterize(fills, level->size(), ratio, background);

    for (std::size_t block = 0; block < level->count(); ++block) {
        const auto lines = BlockLabel::lines(level->node(block), level->cell(block));
        BlockLabel::paint(lines, picture.layers, ratio);
    }

    const QSize small(static_cast<int>(std::ceil(level->size().width() / smallStep)),
                      static_cast<int>(std::ceil(level->size().height() / smallStep)));
    picture.smallLayers = {
        picture.layers.bright.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
        picture.layers.dimmed.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)};
    picture.level = std::move(level);
    return picture;
}

} // namespace brisalon
