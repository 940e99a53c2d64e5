#pragma once

#include "BrisalonCore/FileURL.h"

#include <string>

namespace brisalon {

/// Where the map shows one node: in the drawing area's own units, the origin at
/// the top-left, y growing downwards.
struct TreemapRect {
    /// The node's URL; its path is the rectangle's identity.
    FileURL nodeURL;
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    std::string nodeID() const { return nodeURL.path(); }
    std::string id() const { return nodeID(); }

    /// Left and top edges are inside, right and bottom edges outside, so
    /// neighbours never share a point.
    bool contains(double px, double py) const noexcept
    {
        return x <= px && y <= py && px < x + width && py < y + height;
    }

    friend bool operator==(const TreemapRect&, const TreemapRect&) = default;
};

} // namespace brisalon
