#pragma once

#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/TreemapRect.h"

#include <span>
#include <vector>

namespace brisalon {

/// The squarified treemap of Bruls, Huizing and van Wijk ("Squarified
/// Treemaps", 2000): rows laid along the shorter side of what is left, an item
/// joining the row while that does not worsen the row's worst aspect ratio.
/// Pure, double precision, nothing rounded or inset; time linear in the items.
class TreemapLayout {
public:
    TreemapLayout() = delete;

    /// One rectangle for each node of at least one byte, in the given order
    /// (pass them in descending order of size), tiling (0, 0) to
    /// (width, height). Empty when there is no area or nothing to show; an edge
    /// that is not positive counts as 0.
    static std::vector<TreemapRect> layout(std::span<const FileNode> nodes, double width,
                                           double height);

    /// The first rectangle that contains the point, or null; points into `rects`.
    static const TreemapRect* hitTest(double x, double y,
                                      std::span<const TreemapRect> rects) noexcept;
};

} // namespace brisalon
