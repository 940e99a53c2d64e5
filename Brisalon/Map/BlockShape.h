#pragma once

#include <QRectF>

#include <algorithm>
#include <cmath>

namespace brisalon {

/// The outline of one block of the map, in device pixels: its cell shrunk by
/// the gap, with continuous corners (a superellipse |u|^2.5 + |v|^2.5 = 1
/// instead of a circle's arc, so that the curvature does not jump where the
/// corner meets the edge).
struct BlockShape {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    /// How far from the corner point the curve begins, on both edges.
    double corner = 0;

    /// The shape of the block with that cell (in points) at a device pixel
    /// ratio. The gap is min(short × 0.04, 2) points on every side, the corner
    /// radius min(max(short × 0.08, 4), 10) points, where short is the cell's
    /// shorter side. Edges lie on whole device pixels, unless the gap is too
    /// thin to be rounded; then they stay where they are.
    static BlockShape of(const QRectF& cell, double ratio);

    double width() const { return right - left; }
    double height() const { return bottom - top; }

    /// Distance of a point from the outline in device pixels, negative inside.
    /// Exact beside the straight edges; first order beside the corners, which
    /// is good to a few hundredths of a pixel near the outline, and has the
    /// right sign everywhere.
    double signedDistance(double x, double y) const
    {
        const double outsideX = std::max(left - x, x - right);
        const double outsideY = std::max(top - y, y - bottom);
        const double u = (outsideX + corner) / corner;
        const double v = (outsideY + corner) / corner;
        if (!(u > 0 && v > 0)) {
            return std::max(outsideX, outsideY);
        }
        // With f = u^2.5 + v^2.5 and g = f^0.4, which grows evenly along every
        // ray, the distance is (g - 1) / |grad g|, where |grad g| is
        // hypot(u^1.5, v^1.5) / f^0.6. The powers of f are Padé quotients
        // around 1: the rasteriser asks for this at every pixel of a corner.
        const double u15 = u * std::sqrt(u);
        const double v15 = v * std::sqrt(v);
        const double e = u15 * u + v15 * v - 1;
        const double numerator = 0.4 * e * (1 + 0.8 * e);
        const double denominator = (1 + 0.3 * e) * (1 + 0.2 * e);
        return corner * numerator / (denominator * std::sqrt(u15 * u15 + v15 * v15));
    }
};

} // namespace brisalon
