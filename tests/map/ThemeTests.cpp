// What the theme's own drawing looks like.

#include "Brisalon/Theme/BoxBlur.h"
#include "Brisalon/Theme/CornerGradient.h"
#include "Brisalon/Theme/RingGauge.h"
#include "Brisalon/Theme/SoftShadow.h"
#include "Brisalon/Theme/SymbolImage.h"
#include "Brisalon/Theme/Theme.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace brisalon::tests {

namespace {

/// The item over black, one pixel for a point.
template <typename Item>
QImage painted(QSize size, const std::vector<std::pair<const char*, QVariant>>& properties)
{
    Item item;
    item.setSize(size);
    for (const auto& [name, value] : properties)
        EXPECT_TRUE(item.setProperty(name, value)) << name;
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    item.paint(&painter);
    return image;
}

} // namespace

TEST(ThemeTest, ThePaletteAndTheColorsOfRisks)
{
    std::vector<QRgb> colors;
    for (const QColor& color :
         {Theme::sidebar(), Theme::panel(), Theme::well(), Theme::elevated(), Theme::text(),
          Theme::textSecondary(), Theme::muted(), Theme::stroke(), Theme::strokeStrong(),
          Theme::accent(), Theme::accentSoft(), Theme::danger(), Theme::success(), Theme::amber(),
          Theme::windowBackground(), Theme::backgroundTop(), Theme::backgroundBottom()})
        colors.push_back(color.rgba());
    EXPECT_EQ(colors, (std::vector<QRgb>{0xff111216, 0xff14161b, 0xff07080b, 0xff1c1f25, 0xf0ffffff,
                                         0xadffffff, 0x6bffffff, 0x12ffffff, 0x24ffffff, 0xff389efa,
                                         0x29389efa, 0xffff6b7a, 0xff47e0a8, 0xffffb847, 0xff0a0b0e,
                                         0xff0d0f14, 0xff08090d}));
    EXPECT_EQ(Theme::riskColor(Risk::safe), Theme::success());
    EXPECT_EQ(Theme::riskColor(Risk::review), Theme::amber());
    EXPECT_EQ(Theme::riskColor(Risk::caution), Theme::danger());
    EXPECT_EQ(Theme::riskColor(Risk::unknown), Theme::muted());
}

TEST(ThemeTest, ARingRunsClockwiseFromTheTop)
{
    const QImage ring = painted<RingGauge>({100, 100}, {{"fraction", 0.25},
                                                        {"lineWidth", 10},
                                                        {"track", QColor(Qt::blue)},
                                                        {"from", QColor(Qt::red)},
                                                        {"to", QColor(Qt::red)}});
    EXPECT_EQ(ring.pixelColor(82, 18), QColor(Qt::red));
    for (const QPoint rest : {QPoint(18, 18), QPoint(18, 82), QPoint(82, 82)})
        EXPECT_EQ(ring.pixelColor(rest), QColor(Qt::blue));
    EXPECT_EQ(ring.pixelColor(50, 50), QColor(Qt::black));
}

TEST(ThemeTest, AGradientGoesEquallyFarInAllDirectionsOrFromCornerToCorner)
{
    const auto gradient = [](double radius) {
        return painted<CornerGradient>(
            {100, 100},
            {{"from", QColor(Qt::white)}, {"to", QColor(Qt::black)}, {"radius", radius}});
    };
    const auto light = [](const QImage& image, int x, int y) {
        return image.pixelColor(x, y).lightness();
    };
    const QImage round = gradient(80);
    EXPECT_EQ(light(round, 0, 0), 255);
    EXPECT_NEAR(light(round, 40, 0), 127, 2);
    EXPECT_NEAR(light(round, 28, 28), 127, 4);
    EXPECT_EQ(light(round, 99, 99), 0);
    const QImage straight = gradient(0);
    EXPECT_NEAR(light(straight, 50, 50), 127, 4);
    EXPECT_NEAR(light(straight, 99, 0), 127, 4);
    EXPECT_LE(light(straight, 99, 99), 4);
}

TEST(ThemeTest, ABlurSpreadsEvenlyWithinItsReach)
{
    QImage image(41, 41, QImage::Format_Alpha8);
    image.fill(0);
    for (int y = 17; y < 24; ++y)
        std::fill_n(image.scanLine(y) + 17, 7, uchar{255});
    boxBlur(image, 6);
    const auto at = [&](int x, int y) { return int{image.constScanLine(y)[x]}; };
    int previous = 255;
    for (int distance = 0; distance <= 10; ++distance) {
        EXPECT_EQ(at(20 - distance, 20), at(20 + distance, 20)) << distance;
        EXPECT_EQ(at(20, 20 - distance), at(20, 20 + distance)) << distance;
        EXPECT_LE(at(20 + distance, 20), previous) << distance;
        previous = at(20 + distance, 20);
    }
    EXPECT_GT(at(25, 20), 20) << "beyond the edge";
    EXPECT_EQ(at(30, 20), 0) << "beyond the reach";
}

TEST(ThemeTest, AShadowIsSoftAndASymbolOfItsColor)
{
    const QImage shadow = painted<SoftShadow>(
        {80, 80}, {{"blur", 10}, {"cornerRadius", 4}, {"color", QColor(Qt::white)}});
    EXPECT_GT(shadow.pixelColor(40, 40).lightness(), 250);
    EXPECT_NEAR(shadow.pixelColor(10, 40).lightness(), 127, 25) << "at the edge of what throws it";
    EXPECT_LT(shadow.pixelColor(1, 40).lightness(), 10);

    const QImage symbol =
        painted<SymbolImage>({40, 40}, {{"name", "trash.fill"}, {"color", QColor(Qt::green)}});
    int green = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            const QColor color = symbol.pixelColor(x, y);
            EXPECT_TRUE(color.red() == 0 && color.blue() == 0);
            green += color.green() > 250;
        }
    EXPECT_GT(green, 100);
}

} // namespace brisalon::tests
