#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace brisalon::tests {

struct PlainRect {
    double x, y, width, height;
    friend bool operator==(const PlainRect&, const PlainRect&) = default;
};

/// The algorithm by the book: every candidate row is measured anew, item by item.
inline std::vector<PlainRect> squarifiedByTheBook(const std::vector<double>& sizes, double w,
                                                  double h)
{
    std::vector<PlainRect> result;
    double x = 0, y = 0, total = 0;
    for (const double size : sizes)
        total += size;
    std::size_t first = 0;
    while (first < sizes.size() && w > 0 && h > 0) {
        const double shortSide = std::min(w, h), longSide = std::max(w, h);
        std::vector<double> row;
        double sum = 0, current = std::numeric_limits<double>::infinity();
        while (first + row.size() < sizes.size()) {
            row.push_back(sizes[first + row.size()]);
            sum += row.back();
            const double thickness = longSide * (sum / total);
            double worst = 1;
            for (const double size : row) {
                const double length = shortSide * (size / sum);
                worst = std::max(worst, std::max(thickness / length, length / thickness));
            }
            if (worst > current) {
                sum -= row.back();
                row.pop_back();
                break;
            }
            current = worst;
        }
        const bool isWide = h <= w;
        const double thickness = longSide * (sum / total);
        double offset = isWide ? y : x;
        for (const double size : row) {
            const double length = shortSide * (size / sum);
            result.push_back(isWide ? PlainRect{x, offset, thickness, length}
                                    : PlainRect{offset, y, length, thickness});
            offset += length;
        }
        (isWide ? x : y) += thickness;
        (isWide ? w : h) -= thickness;
        first += row.size();
        total -= sum;
    }
    return result;
}

} // namespace brisalon::tests
