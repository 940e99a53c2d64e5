#include "BrisalonCore/TreemapLayout.h"

#include "model/NameBlock.h"

#include <algorithm>
#include <cmath>
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

/// The items at the front that make up one row, and the sum of their sizes.
struct Row {
    std::size_t count = 0;
    double sum = 0;
};

/// What the worst aspect ratio of a row depends on.
struct RowExtent {
    double sum = 0;
    double smallest = std::numeric_limits<double>::infinity();
    double largest = 0;

    RowExtent with(double size) const noexcept
    {
        return {sum + size, std::min(smallest, size), std::max(largest, size)};
    }
};

/// Compares candidate rows of one free area by their worst aspect ratio.
class RowTest {
public:
    RowTest(const Area& free, double total) noexcept
        : shortSide_(free.shortSide()),
          longSide_(free.longSide()),
          total_(total),
          scale_(longSide_ / (shortSide_ * total)),
          isOrdinary_(shortSide_ > 1e-30 && longSide_ < 1e30 && total >= 1)
    {
    }

    /// Whether the candidate's worst ratio is greater than the row's, both as
    /// worstRatio gives them.
    ///
    /// Five divisions for each item would take most of a layout's time, so the
    /// ratios are first compared as fractions, by multiplication. That is off by
    /// a few units of the last place at most (in an area of ordinary size, where
    /// nothing overflows), so only ratios that are almost equal are worked out.
    bool isWorse(const RowExtent& candidate, const RowExtent& row) const noexcept
    {
        constexpr double margin = 1e-12;
        const Fraction a = fraction(candidate);
        const Fraction b = fraction(row);
        const double left = a.above * b.below;
        const double right = b.above * a.below;
        if (isOrdinary_ && std::abs(left - right) > margin * right)
            return left > right;
        return worstRatio(candidate) > worstRatio(row);
    }

private:
    struct Fraction {
        double above;
        double below;
    };

    /// The worst ratio from the row's largest and smallest item alone.
    ///
    /// Every step from an item's size to its ratio is monotonic, rounding
    /// included, so no item between the two has a worse ratio than both: the
    /// result is the very double that measuring the whole row would give.
    double worstRatio(const RowExtent& row) const noexcept
    {
        const double thickness = longSide_ * (row.sum / total_);
        double worst = 1;
        for (const double size : {row.smallest, row.largest}) {
            const double length = shortSide_ * (size / row.sum);
            worst = std::max(worst, std::max(thickness / length, length / thickness));
        }
        return worst;
    }

    /// The same, nearly: thickness ÷ length is square ÷ size.
    Fraction fraction(const RowExtent& row) const noexcept
    {
        const double square = row.sum * row.sum * scale_;
        if (square * square > row.smallest * row.largest)
            return {std::max(square, row.smallest), row.smallest};
        return {std::max(square, row.largest), square};
    }

    double shortSide_;
    double longSide_;
    double total_;
    double scale_;
    bool isOrdinary_;
};

/// The longest row from the front of `sizes` that no item has made worse. The
/// first item always belongs to it.
Row nextRow(std::span<const double> sizes, double total, const Area& free) noexcept
{
    const RowTest test(free, total);
    RowExtent row = RowExtent().with(sizes.front());
    for (std::size_t count = 1; count < sizes.size(); ++count) {
        const RowExtent candidate = row.with(sizes[count]);
        // The rejected item's size is taken out of the sum again: beyond 2^53
        // that need not give the sum before.
        if (test.isWorse(candidate, row))
            return {count, candidate.sum - sizes[count]};
        row = candidate;
    }
    return {sizes.size(), row.sum};
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

/// The nodes to be shown: their sizes, and their rectangles without a place.
struct Items {
    std::vector<double> sizes;
    std::vector<TreemapRect> rects;
};

Items shownItems(std::span<const FileNode> nodes)
{
    using detail::NameBlock;
    const auto isShown = [](const FileNode& node) { return node.allocatedSize() >= 1; };
    Items items;
    items.sizes.reserve(nodes.size());
    items.rects.reserve(nodes.size());
    // Siblings share one block of names. Its references are counted for many at a
    // time: one by one, that would take longer than everything else here. So many
    // nodes are still in the nearest cache when they are copied.
    constexpr std::ptrdiff_t most = 256;
    for (auto first = nodes.begin(); first != nodes.end();) {
        const NameBlock* const names = NameBlock::blockOf(first->url());
        const auto end = std::find_if(
            first, first + std::min(most, nodes.end() - first),
            [names](const FileNode& node) { return NameBlock::blockOf(node.url()) != names; });
        if (names)
            names->retain(static_cast<std::uint32_t>(std::count_if(first, end, isShown)));
        for (; first != end; ++first) {
            if (!isShown(*first))
                continue;
            items.sizes.push_back(static_cast<double>(first->allocatedSize()));
            items.rects.emplace_back().nodeURL = NameBlock::url(
                detail::SharedRef<NameBlock>::adopt(names), NameBlock::offsetOf(first->url()));
        }
    }
    return items;
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
    Items items = shownItems(nodes);
    items.rects.resize(squarify(items.sizes, {0, 0, width, height}, items.rects));
    return std::move(items.rects);
}

const TreemapRect* TreemapLayout::hitTest(double x, double y,
                                          std::span<const TreemapRect> rects) noexcept
{
    const auto hit = std::ranges::find_if(
        rects, [x, y](const TreemapRect& rect) { return rect.contains(x, y); });
    return hit == rects.end() ? nullptr : &*hit;
}

} // namespace brisalon
