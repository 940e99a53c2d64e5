#include "BrisalonCore/TreemapLayout.h"

#include "model/NameBlock.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace brisalon {

namespace {

using detail::NameBlock;

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

/// Nodes of at least one byte.
using Items = std::span<const FileNode* const>;

double sizeOf(const FileNode& node) noexcept
{
    return static_cast<double>(node.allocatedSize());
}

/// The items that make up one row, and the sum of their sizes.
struct Row {
    Items items;
    double sum;
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

/// Copies the URLs of a row's items, each of them once.
///
/// Siblings share one block of names. Its references are counted for the whole
/// row at once: one by one, that would take longer than everything else here.
class SiblingURLs {
public:
    explicit SiblingURLs(Items items) : names_(NameBlock::blockOf(items.front()->url()))
    {
        std::uint32_t count = 0;
        for (const FileNode* node : items)
            count += NameBlock::blockOf(node->url()) == names_;
        if (names_)
            names_->retain(count);
    }

    FileURL next(const FileNode& node) const
    {
        const FileURL& url = node.url();
        if (NameBlock::blockOf(url) != names_)
            return url;
        return NameBlock::url(detail::SharedRef<NameBlock>::adopt(names_),
                              NameBlock::offsetOf(url));
    }

private:
    const NameBlock* names_;
};

/// The longest row from the front of `items` that no item has made worse. The
/// first item always belongs to it.
Row nextRow(Items items, double total, const Area& free)
{
    const RowTest test(free, total);
    RowExtent row = RowExtent().with(sizeOf(*items.front()));
    for (std::size_t count = 1; count < items.size(); ++count) {
        const double size = sizeOf(*items[count]);
        const RowExtent candidate = row.with(size);
        // The rejected item's size is taken out of the sum again: beyond 2^53
        // that need not give the sum before.
        if (test.isWorse(candidate, row))
            return {items.first(count), candidate.sum - size};
        row = candidate;
    }
    return {items, row.sum};
}

/// Adds a row's rectangles along the short side of the free area and takes their
/// space away.
void place(const Row& row, double fraction, Area& free, std::vector<TreemapRect>& rects)
{
    const bool isColumn = free.isWide();
    const double thickness = free.longSide() * fraction;
    const double shortSide = free.shortSide();
    double x = free.x;
    double y = free.y;
    SiblingURLs urls(row.items);
    for (const FileNode* node : row.items) {
        const double length = shortSide * (sizeOf(*node) / row.sum);
        rects.push_back(
            {urls.next(*node), x, y, isColumn ? thickness : length, isColumn ? length : thickness});
        (isColumn ? y : x) += length;
    }
    (isColumn ? free.x : free.y) += thickness;
    (isColumn ? free.width : free.height) -= thickness;
}

} // namespace

std::vector<TreemapRect> TreemapLayout::layout(std::span<const FileNode> nodes, double width,
                                               double height)
{
    if (!(width > 0) || !(height > 0))
        return {};
    std::vector<const FileNode*> shown;
    shown.reserve(nodes.size());
    double total = 0;
    for (const FileNode& node : nodes) {
        if (node.allocatedSize() < 1)
            continue;
        shown.push_back(&node);
        total += sizeOf(node);
    }
    std::vector<TreemapRect> rects;
    rects.reserve(shown.size());
    Area free{0, 0, width, height};
    // Items that are left when the area is used up get no rectangle.
    for (Items items(shown); !items.empty() && free.width > 0 && free.height > 0;) {
        const Row row = nextRow(items, total, free);
        place(row, row.sum / total, free, rects);
        total -= row.sum;
        items = items.subspan(row.items.size());
    }
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
