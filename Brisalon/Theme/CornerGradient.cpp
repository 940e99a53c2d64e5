#include "Brisalon/Theme/CornerGradient.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <array>
#include <cmath>

namespace brisalon {

namespace {

// The 4 × 4 ordered dither of Bayer ("An optimum method for two-level rendition of
// continuous-tone pictures", 1973).
constexpr std::array<std::array<float, 4>, 4> thresholds{{
    {0 / 16.f, 8 / 16.f, 2 / 16.f, 10 / 16.f},
    {12 / 16.f, 4 / 16.f, 14 / 16.f, 6 / 16.f},
    {3 / 16.f, 11 / 16.f, 1 / 16.f, 9 / 16.f},
    {15 / 16.f, 7 / 16.f, 13 / 16.f, 5 / 16.f},
}};

struct Channels {
    float red, green, blue;
};

Channels channels(const QColor& color)
{
    return {255 * color.redF(), 255 * color.greenF(), 255 * color.blueF()};
}

} // namespace

CornerGradient::CornerGradient(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &CornerGradient::lookChanged, this, [this] { update(); });
}

void CornerGradient::paint(QPainter* painter)
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    QImage image((size() * ratio).toSize(), QImage::Format_RGB32);
    const Channels from = channels(from_);
    const Channels to = channels(to_);

    // Along the diagonal: how far each step of a pixel goes.
    const auto w = static_cast<float>(image.width());
    const auto h = static_cast<float>(image.height());
    const float stepX = w / (w * w + h * h);
    const float stepY = h / (w * w + h * h);
    const auto reach = static_cast<float>(radius_ * ratio);

    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const auto& row = thresholds[static_cast<std::size_t>(y % 4)];
        const auto fy = static_cast<float>(y);
        for (int x = 0; x < image.width(); ++x) {
            const auto fx = static_cast<float>(x);
            const float way =
                reach > 0 ? std::sqrt(fx * fx + fy * fy) / reach : fx * stepX + fy * stepY;
            const float t = std::min(way, 1.f);
            const float threshold = row[static_cast<std::size_t>(x % 4)];
            const auto mix = [&](float a, float b) {
                return std::min(static_cast<int>(a + t * (b - a) + threshold), 255);
            };
            line[x] =
                qRgb(mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue));
        }
    }
    painter->drawImage(boundingRect(), image);
}

} // namespace brisalon
