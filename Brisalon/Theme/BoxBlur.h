#pragma once

#include <QImage>

namespace brisalon {

/// Blurs an image of 8-bit channels in place by three box passes each way, which
/// comes close to a Gaussian whose visible reach is `reach` pixels. Pixels beyond
/// the edges count as those on the edge. Time is linear in the pixels, whatever
/// the reach.
void boxBlur(QImage& image, int reach);

} // namespace brisalon
