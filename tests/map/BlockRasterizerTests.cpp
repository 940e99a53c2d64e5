#include "Brisalon/Map/BlockRasterizer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace brisalon::tests {

namespace {

constexpr QRgb background = 0xff14161b;

/// Whether a point (in points) lies in the block of that cell: the shape by its
/// definition, without pixels.
bool inside(const QRectF& cell, double x, double y)
{
    const double shortSide = std::min(cell.width(), cell.height());
    const double inset = std::min(shortSide * 0.04, 2.0);
    const QRectF shape = cell.adjusted(inset, inset, -inset, -inset);
    if (!shape.contains(x, y))
        return false;
    // A superellipse cuts as much off the corner as an arc of this radius.
    const double radius = std::min(std::max(shortSide * 0.08, 4.0), 10.0);
    const double corner = std::min({radius * (1 - std::sqrt(0.5)) / (1 - std::pow(0.5, 0.4)),
                                    shape.width() / 2, shape.height() / 2});
    const double u =
        std::max({shape.left() + corner - x, x - shape.right() + corner, 0.0}) / corner;
    const double v =
        std::max({shape.top() + corner - y, y - shape.bottom() + corner, 0.0}) / corner;
    return std::pow(u, 2.5) + std::pow(v, 2.5) <= 1;
}

using Color = std::array<double, 3>;

Color channels(QRgb color)
{
    return {double(qRed(color)), double(qGreen(color)), double(qBlue(color))};
}

/// The slow and exact model: each pixel is the mean of 8 × 8 samples.
Color modelPixel(const std::vector<BlockFill>& blocks, double ratio, double startOpacity,
                 double endOpacity, int px, int py)
{
    constexpr int grid = 8;
    Color sum{};
    for (int sample = 0; sample < grid * grid; ++sample) {
        const double x = (px + (sample % grid + 0.5) / grid) / ratio;
        const double y = (py + (sample / grid + 0.5) / grid) / ratio;
        double opacity = 0;
        Color color{};
        for (const BlockFill& block : blocks) {
            if (!inside(block.cell, x, y))
                continue;
            const QRectF& cell = block.cell;
            const double t = ((x - cell.left()) * cell.width() + (y - cell.top()) * cell.height()) /
                             (cell.width() * cell.width() + cell.height() * cell.height());
            opacity = startOpacity + (endOpacity - startOpacity) * t;
            color = channels(block.color);
        }
        for (std::size_t i = 0; i < 3; ++i)
            sum[i] += std::lerp(channels(background)[i], color[i], opacity) / (grid * grid);
    }
    return sum;
}

/// Compares a layer with the model: at corners a pixel may be off by a part of its
/// coverage, and on the whole there is no difference.
void expectLikeModel(const QImage& layer, const std::vector<BlockFill>& blocks, double ratio,
                     double startOpacity, double endOpacity)
{
    double worst = 0;
    double total = 0;
    for (int y = 0; y < layer.height(); ++y) {
        for (int x = 0; x < layer.width(); ++x) {
            const Color model = modelPixel(blocks, ratio, startOpacity, endOpacity, x, y);
            const Color seen = channels(layer.pixel(x, y));
            double off = 0;
            for (std::size_t i = 0; i < 3; ++i)
                off = std::max(off, std::abs(seen[i] - model[i]));
            worst = std::max(worst, off);
            total += off;
        }
    }
    EXPECT_LT(worst, 40);
    EXPECT_LT(total / (layer.width() * layer.height()), 1.0);
}

} // namespace

TEST(BlockRasterizerTest, PaintsWhatTheSlowModelPaints)
{
    // Gaps of whole pixels at both ratios, so that the model need not round edges;
    // all sizes of corners.
    const std::vector<BlockFill> large{{{0, 0, 60, 50}, 0xff529efa}, {{0, 50, 60, 50}, 0xfffa9e2e}};
    const std::vector<BlockFill> square{{{0, 0, 100, 100}, 0xff70c747}};
    // Too small for that: fractional edges, slivers, blocks of less than a pixel.
    const std::vector<BlockFill> small{{{0.3, 0.6, 8.2, 5.9}, 0xffffffff},
                                       {{9.1, 0.2, 0.4, 30}, 0xffff8000},
                                       {{12, 3.3, 30, 0.7}, 0xff00ff80},
                                       {{12.2, 10.1, 3, 3}, 0xff8080ff},
                                       {{20.5, 10.5, 0.3, 0.3}, 0xffffffff}};
    for (const double ratio : {1.0, 2.0}) {
        for (const auto& blocks : {large, square, small}) {
            const QSizeF size = blocks.size() == small.size() ? QSizeF(50, 35) : QSizeF(100, 100);
            const MapLayers layers = BlockRasterizer::rasterize(blocks, size, ratio, background);
            ASSERT_EQ(layers.bright.size(), (size * ratio).toSize());
            expectLikeModel(layers.bright, blocks, ratio, 1.0, 0.72);
            expectLikeModel(layers.dimmed, blocks, ratio, 0.45, 0.35);
        }
    }
}

TEST(BlockRasterizerTest, LargeBlocksHaveCrispEdgesWhereverTheirCellsLie)
{
    const std::vector<BlockFill> blocks{{{0, 0, 100.3, 80}, 0xffffffff},
                                        {{100.3, 0, 99.7, 80}, 0xffffffff}};
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const MapLayers layers = BlockRasterizer::rasterize(blocks, {200, 80}, ratio, background);
        const int y = layers.bright.height() / 2;
        int gap = 0;
        for (int x = 0; x < layers.bright.width(); ++x) {
            const int red = qRed(layers.bright.pixel(x, y));
            EXPECT_TRUE(red == qRed(background) || red > 160) << "a blurred edge at " << x;
            gap += red == qRed(background);
        }
        // Two points on each side of both blocks.
        EXPECT_EQ(gap, static_cast<int>(8 * ratio));
    }
}

TEST(BlockRasterizerTest, ThereIsAlwaysAPictureOfTheWholeSize)
{
    const MapLayers fractional = BlockRasterizer::rasterize({}, {100.4, 50.2}, 1, background);
    EXPECT_EQ(fractional.bright.size(), QSize(101, 51));
    EXPECT_EQ(fractional.dimmed.pixel(100, 50), background);

    // Rounding must not carry a block over the edge of the picture.
    const std::vector<BlockFill> blocks{{{50.5, 0, 50.1, 50.6}, 0xffffffff}};
    const MapLayers layers = BlockRasterizer::rasterize(blocks, {100.6, 50.6}, 1, background);
    EXPECT_EQ(layers.bright.size(), QSize(101, 51));
}

} // namespace brisalon::tests
