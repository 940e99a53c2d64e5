#include "BrisalonCore/TreemapLayout.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace brisalon {

namespace {

/// The part of the drawing area that is still to be filled.
struct Area {
    double x;
    double y;
    double width;
    double height;

    bool isWide() const noexcept { return height <= width; }
    double shortSide() const noexcept { return std::min(width, height); }
    double longSide() const noexcept { return std::max(width, height); }
};

/// The items that make up one row, and the sum of their sizes.
struct Row {
    std::size_t count = 0;
    double sum = 0;
};

/// The worst aspect ratio of a row, from its largest and smallest item alone.
///
/// Every step from an item's size to its ratio is monotonic, rounding included,
/// so no item between the two has a worse ratio than both: the result is the
/// very double that measuring the whole row would give.
double worstRatio(double smallest, double largest, double thickness, double shortSide, double sum)
{
    double worst = 1;
    for (const double size : {smallest, largest}) {
        const double length = shortSide * (size / sum);
        worst = std::max(worst, std::max(thickness / length, length / thickness));
    }
    return worst;
}

/// The longest row from the front of `sizes` that no item has made worse. The
/// first item always belongs to it.
Row nextRow(std::span<const double> sizes, double total, const Area& free)
{
    const double shortSide = free.shortSide();
    const double longSide = free.longSide();
    Row row;
    double smallest = std::numeric_limits<double>::infinity();
    double largest = 0;
    double currentWorst = std::numeric_limits<double>::infinity();
    for (const double size : sizes) {
        const double sum = row.sum + size;
        smallest = std::min(smallest, size);
        largest = std::max(largest, size);
        const double thickness = longSide * (sum / total);
        const double worst = worstRatio(smallest, largest, thickness, shortSide, sum);
        row.sum = sum;
        if (worst > currentWorst) {
            // Sums beyond 2^53 are not exact, so this need not be the sum before.
            row.sum -= size;
            break;
        }
        currentWorst = worst;
        ++row.count;
    }
    return row;
}

/// Lays a row along the short side of the free area and takes its space away.
void place(std::span<const double> sizes, const Row& row, double fraction, Area& free,
           std::span<TreemapRect> rects)
{
    const bool isColumn = free.isWide();
    const double thickness = free.longSide() * fraction;
    const double shortSide = free.shortSide();
    double x = free.x;
    double y = free.y;
    for (std::size_t i = 0; i < row.count; ++i) {
        const double length = shortSide * (sizes[i] / row.sum);
        rects[i].x = x;
        rects[i].y = y;
        rects[i].width = isColumn ? thickness : length;
        rects[i].height = isColumn ? length : thickness;
        (isColumn ? y : x) += length;
    }
    (isColumn ? free.x : free.y) += thickness;
    (isColumn ? free.width : free.height) -= thickness;
}

/// Fills the rectangles from the front; how many were placed before the area
/// was used up.
std::size_t squarify(std::span<const double> sizes, Area free, std::span<TreemapRect> rects)
{
    double total = 0;
    for (const double size : sizes)
        total += size;
    std::size_t placed = 0;
    while (placed < sizes.size() && free.width > 0 && free.height > 0) {
        const auto remaining = sizes.subspan(placed);
        const Row row = nextRow(remaining, total, free);
        place(remaining, row, row.sum / total, free, rects.subspan(placed));
        placed += row.count;
        total -= row.sum;
    }
    return placed;
}

} // namespace

std::vector<TreemapRect> TreemapLayout::layout(std::span<const FileNode> nodes, double width,
                                               double height)
{
    if (!(width > 0) || !(height > 0))
        return {};
    std::vector<double> sizes;
    std::vector<TreemapRect> rects;
    sizes.reserve(nodes.size());
    rects.reserve(nodes.size());
    for (const FileNode& node : nodes) {
        if (node.allocatedSize() < 1)
            continue;
        sizes.push_back(static_cast<double>(node.allocatedSize()));
        rects.push_back({node.url()});
    }
    rects.resize(squarify(sizes, {0, 0, width, height}, rects));
    return rects;
}

const TreemapRect* TreemapLayout::hitTest(double x, double y,
                                          std::span<const TreemapRect> rects) noexcept
{
    const auto hit = std::ranges::find_if(
        rects, [x, y](const TreemapRect& rect) { return rect.contains(x, y); });
    return hit == rects.end() ? nullptr : &*hit;
}

} // namespace brisalon
