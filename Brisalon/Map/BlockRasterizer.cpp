#include "Brisalon/Map/BlockRasterizer.h"

#include "Brisalon/Map/BlockShape.h"

#include <array>
#include <cstdint>

namespace brisalon {

namespace {

/// A colour with 16 fraction bits per channel: gradients are stepped in it.
struct FixedColor {
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;
};

constexpr int fixedOne = 1 << 16;
constexpr int fixedHalf = fixedOne / 2;

FixedColor fixed(QRgb color)
{
    return {qRed(color) * fixedOne, qGreen(color) * fixedOne, qBlue(color) * fixedOne};
}

QRgb rounded(const FixedColor& color)
{
    return qRgb((color.red + fixedHalf) >> 16, (color.green + fixedHalf) >> 16,
                (color.blue + fixedHalf) >> 16);
}

/// The gradient of one block in one layer, along t from 0 (the cell's top-left
/// corner) to 1 (bottom-right), already over the background: a colour of
/// opacity a over a background is linear in a, and so in t.
struct Gradient {
    FixedColor start;
    FixedColor slope;

    Gradient(QRgb color, QRgb background, double startOpacity, double endOpacity)
    {
        const FixedColor from = fixed(background);
        const FixedColor to = fixed(color);
        const auto channel = [&](std::int32_t b, std::int32_t c, std::int32_t& s, std::int32_t& d) {
            s = static_cast<std::int32_t>(b + startOpacity * (c - b));
            d = static_cast<std::int32_t>((endOpacity - startOpacity) * (c - b));
        };
        channel(from.red, to.red, start.red, slope.red);
        channel(from.green, to.green, start.green, slope.green);
        channel(from.blue, to.blue, start.blue, slope.blue);
    }

    FixedColor at(double t) const
    {
        return {start.red + static_cast<std::int32_t>(slope.red * t),
                start.green + static_cast<std::int32_t>(slope.green * t),
                start.blue + static_cast<std::int32_t>(slope.blue * t)};
    }
};

/// The lines of one layer.
struct Target {
    QRgb* bits;
    qsizetype stride;
    QRgb* line(int y) const { return bits + y * stride; }
};

/// Blocks of one pair of layers.
class Filler {
public:
    Filler(MapLayers& layers, double ratio, QRgb background)
        : width_(layers.bright.width()),
          height_(layers.bright.height()),
          ratio_(ratio),
          background_(background),
          targets_{target(layers.bright), target(layers.dimmed)}
    {
    }

    void fill(const BlockFill& block) const
    {
        const BlockShape shape = BlockShape::of(block.cell, ratio_);
        const Block paint{shape, block, ratio_, background_};
        const int firstRow = std::max(static_cast<int>(shape.top), 0);
        const int endRow = std::min(static_cast<int>(std::ceil(shape.bottom)), height_);
        for (int y = firstRow; y < endRow; ++y)
            fillRow(paint, y);
    }

private:
    struct Block {
        Block(const BlockShape& blockShape, const BlockFill& fill, double ratio, QRgb background)
            : shape(blockShape),
              gradients{Gradient(fill.color, background, 1.0, 0.72),
                        Gradient(fill.color, background, 0.45, 0.35)}
        {
            const double w = fill.cell.width() * ratio;
            const double h = fill.cell.height() * ratio;
            const double diagonal = w * w + h * h;
            perX = w / diagonal;
            perY = h / diagonal;
            origin = -(fill.cell.left() * ratio * perX + fill.cell.top() * ratio * perY);
        }

        /// The gradient's parameter at a pixel's centre. Rounding a cell to
        /// pixels may carry a centre past the cell's corner, hence the bounds.
        double parameter(int x, int y) const
        {
            return std::clamp(origin + (x + 0.5) * perX + (y + 0.5) * perY, 0.0, 1.0);
        }

        BlockShape shape;
        std::array<Gradient, 2> gradients;
        double perX;
        double perY;
        double origin;
    };

    static Target target(QImage& layer)
    {
        return {reinterpret_cast<QRgb*>(layer.bits()),
                layer.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb))};
    }

    void fillRow(const Block& block, int y) const
    {
        const BlockShape& shape = block.shape;
        const int first = std::max(static_cast<int>(shape.left), 0);
        const int end = std::min(static_cast<int>(std::ceil(shape.right)), width_);
        const double rowCoverage = std::min(y + 1.0, shape.bottom) - std::max<double>(y, shape.top);
        const double margin = solidMargin(shape, y);
        const int solidFirst =
            std::clamp(static_cast<int>(std::ceil(shape.left + margin)), first, end);
        const int solidEnd = std::clamp(static_cast<int>(shape.right - margin), solidFirst, end);

        for (int x = first; x < solidFirst; ++x)
            blend(block, x, y, coverage(shape, x, y, rowCoverage));
        if (rowCoverage >= 1) {
            fillSpan(block, solidFirst, solidEnd, y);
        } else {
            for (int x = solidFirst; x < solidEnd; ++x)
                blend(block, x, y, rowCoverage);
        }
        for (int x = solidEnd; x < end; ++x)
            blend(block, x, y, coverage(shape, x, y, rowCoverage));
    }

    /// How far from the shape's left and right edges the pixels of a row begin that
    /// no corner cuts. A circle lies inside the superellipse, so a pixel is whole
    /// when its centre keeps half a pixel from the circle.
    static double solidMargin(const BlockShape& shape, int y)
    {
        if (shape.corner < 1)
            return 0;
        const double v = shape.corner - std::min(y + 0.5 - shape.top, shape.bottom - y - 0.5);
        if (v <= -0.5)
            return 0;
        const double radius = shape.corner - 0.5;
        const double height = std::max(v, 0.0);
        const double inner = radius * radius - height * height;
        return inner > 0 ? shape.corner - std::sqrt(inner) - 0.5 : shape.width() / 2;
    }

    /// How much of a pixel the shape covers: the exact share of its box, less
    /// what the corner cuts off.
    static double coverage(const BlockShape& shape, int x, int y, double rowCoverage)
    {
        const double box =
            rowCoverage * (std::min(x + 1.0, shape.right) - std::max<double>(x, shape.left));
        // The distance of a pixel's centre tells nothing of a shape of about its size.
        if (shape.corner < 1)
            return box;
        return std::min(box, 0.5 - shape.signedDistance(x + 0.5, y + 0.5));
    }

    void fillSpan(const Block& block, int first, int end, int y) const
    {
        if (first >= end)
            return;
        const double firstParameter = block.parameter(first, y);
        const double step = end - first > 1
                                ? (block.parameter(end - 1, y) - firstParameter) / (end - first - 1)
                                : 0.0;
        for (std::size_t layer = 0; layer < targets_.size(); ++layer) {
            const Gradient& gradient = block.gradients[layer];
            FixedColor color = gradient.at(firstParameter);
            const auto red = static_cast<std::int32_t>(gradient.slope.red * step);
            const auto green = static_cast<std::int32_t>(gradient.slope.green * step);
            const auto blue = static_cast<std::int32_t>(gradient.slope.blue * step);
            QRgb* pixel = targets_[layer].line(y) + first;
            for (int left = end - first; left > 0; --left) {
                *pixel++ = rounded(color);
                color.red += red;
                color.green += green;
                color.blue += blue;
            }
        }
    }

    /// Blocks that share a pixel cover disjoint parts of it, so each adds its
    /// share of the difference from the background.
    void blend(const Block& block, int x, int y, double coverage) const
    {
        if (coverage <= 0)
            return;
        const double t = block.parameter(x, y);
        const int weight = static_cast<int>(std::min(coverage, 1.0) * 256 + 0.5);
        for (std::size_t layer = 0; layer < targets_.size(); ++layer) {
            QRgb& pixel = targets_[layer].line(y)[x];
            const QRgb full = rounded(block.gradients[layer].at(t));
            const auto mixed = [&](int now, int blockChannel, int backgroundChannel) {
                return std::clamp(now + (((blockChannel - backgroundChannel) * weight + 128) >> 8),
                                  0, 255);
            };
            pixel = qRgb(mixed(qRed(pixel), qRed(full), qRed(background_)),
                         mixed(qGreen(pixel), qGreen(full), qGreen(background_)),
                         mixed(qBlue(pixel), qBlue(full), qBlue(background_)));
        }
    }

    int width_;
    int height_;
    double ratio_;
    QRgb background_;
    std::array<Target, 2> targets_;
};

} // namespace

MapLayers BlockRasterizer::rasterize(std::span<const BlockFill> blocks, QSizeF size, double ratio,
                                     QRgb background)
{
    const QSize pixels(static_cast<int>(std::ceil(size.width() * ratio - 1e-6)),
                       static_cast<int>(std::ceil(size.height() * ratio - 1e-6)));
    MapLayers layers{QImage(pixels, QImage::Format_RGB32), QImage(pixels, QImage::Format_RGB32)};
    if (layers.bright.isNull() || layers.dimmed.isNull()) {
        return {};
    }
    layers.bright.fill(background);
    layers.dimmed.fill(background);
    const Filler filler(layers, ratio, background | 0xff000000u);
    for (const BlockFill& block : blocks)
        filler.fill(block);
    return layers;
}

} // namespace brisalon
