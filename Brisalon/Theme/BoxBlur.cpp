#include "Brisalon/Theme/BoxBlur.h"

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brisalon {

namespace {

/// One pass over `count` samples that lie `stride` bytes apart: each becomes the
/// mean of itself and its `radius` neighbours on both sides.
void blurLine(uchar* line, std::ptrdiff_t stride, int count, int radius, std::vector<uchar>& copy)
{
    for (int i = 0; i < count; ++i)
        copy[static_cast<std::size_t>(i)] = line[i * stride];
    const auto sample = [&](int i) {
        return int{copy[static_cast<std::size_t>(std::clamp(i, 0, count - 1))]};
    };
    const int width = 2 * radius + 1;
    int sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += sample(i);
    for (int i = 0; i < count; ++i) {
        line[i * stride] = static_cast<uchar>((sum + width / 2) / width);
        sum += sample(i + radius + 1) - sample(i - radius);
    }
}

} // namespace

void boxBlur(QImage& image, int reach)
{
    // Three boxes of radius r reach 3r far.
    const int radius = (reach + 2) / 3;
    if (radius < 1 || image.isNull())
        return;
    const int channels = image.depth() / 8;
    const auto rowStride = static_cast<std::ptrdiff_t>(image.bytesPerLine());
    uchar* const bits = image.bits();
    std::vector<uchar> copy(static_cast<std::size_t>(std::max(image.width(), image.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int channel = 0; channel < channels; ++channel) {
            for (int y = 0; y < image.height(); ++y)
                blurLine(bits + y * rowStride + channel, channels, image.width(), radius, copy);
            for (int x = 0; x < image.width(); ++x)
                blurLine(bits + x * channels + channel, rowStride, image.height(), radius, copy);
        }
    }
}

} // namespace brisalon
