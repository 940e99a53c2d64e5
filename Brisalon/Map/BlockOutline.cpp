#include "Brisalon/Map/BlockOutline.h"

namespace brisalon {

namespace {

/// The share of a pixel whose centre is that far from the line's centre, both in
/// pixels.
double strokeCoverage(double distance, double width)
{
    return std::clamp(width / 2 + 0.5 - std::abs(distance), 0.0, std::min(width, 1.0));
}

QRgb over(QRgb below, const QColor& color, double coverage)
{
    const double alpha = color.alphaF() * coverage;
    const auto channel = [&](double above, int under) {
        return static_cast<int>(std::lround(255 * above * alpha + under * (1 - alpha)));
    };
    return qRgba(channel(color.redF(), qRed(below)), channel(color.greenF(), qGreen(below)),
                 channel(color.blueF(), qBlue(below)), channel(1.0, qAlpha(below)));
}

} // namespace

BlockOutline BlockOutline::paint(const BlockShape& shape, std::span<const OutlineStroke> strokes,
                                 double ratio)
{
    double reach = 0; // of the widest stroke to either side of the edge
    for (const OutlineStroke& stroke : strokes)
        reach = std::max(reach, stroke.width * ratio / 2 + 0.5);

    BlockOutline outline;
    outline.bounds = QRect(QPoint(static_cast<int>(std::floor(shape.left - reach)),
                                  static_cast<int>(std::floor(shape.top - reach))),
                           QPoint(static_cast<int>(std::ceil(shape.right + reach)) - 1,
                                  static_cast<int>(std::ceil(shape.bottom + reach)) - 1));

    // Beyond a corner and the stroke's reach the outline does not change along an
    // edge, so one column stands for all of them.
    const int corner = static_cast<int>(std::ceil(2 * reach + std::max(shape.corner, reach))) + 1;
    const int unfolded = 2 * corner + 1;
    const int foldX = std::max(outline.bounds.width() - unfolded, 0);
    const int foldY = std::max(outline.bounds.height() - unfolded, 0);
    BlockShape folded = shape;
    folded.right -= foldX;
    folded.bottom -= foldY;

    const QSize size(outline.bounds.width() - foldX, outline.bounds.height() - foldY);
    outline.middle = QPoint(size.width() / 2, size.height() / 2);
    outline.image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(outline.image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double distance = folded.signedDistance(outline.bounds.left() + x + 0.5,
                                                          outline.bounds.top() + y + 0.5);
            line[x] = 0;
            for (const OutlineStroke& stroke : strokes) {
                const double coverage = strokeCoverage(distance, stroke.width * ratio);
                line[x] = over(line[x], stroke.color, coverage);
            }
        }
    }
    return outline;
}

} // namespace brisalon
