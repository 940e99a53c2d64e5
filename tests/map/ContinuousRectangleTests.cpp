#include "Brisalon/Theme/ContinuousRectangle.h"

#include <QQuickView>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace brisalon::tests {

TEST(ContinuousRectangleTest, ACornerCutsAsMuchOffTheDiagonalAsAnArcOfTheRadius)
{
    const QPainterPath path = continuousRectanglePath(QRectF(0, 0, 100, 60), 20);
    EXPECT_EQ(path.boundingRect(), QRectF(0, 0, 100, 60));
    const double diagonal = 20 * (1 - std::sqrt(0.5));
    for (const QPointF inwards : {QPointF(1, 1), QPointF(-1, 1), QPointF(-1, -1), QPointF(1, -1)}) {
        const QPointF corner(inwards.x() > 0 ? 0 : 100, inwards.y() > 0 ? 0 : 60);
        EXPECT_FALSE(path.contains(corner + inwards * (diagonal - 0.2)));
        EXPECT_TRUE(path.contains(corner + inwards * (diagonal + 0.2)));
    }

    EXPECT_EQ(continuousRectanglePath(QRectF(0, 0, 10, 10), 0).elementCount(), 5) << "a rectangle";
    const QPainterPath capsule = continuousRectanglePath(QRectF(0, 0, 100, 20), 500);
    EXPECT_TRUE(capsule.contains(QPointF(50, 0.1)));
    EXPECT_FALSE(capsule.contains(QPointF(1, 1)));
}

TEST(ContinuousRectangleTest, IsThePictureOfItsPathAtAnySize)
{
    QQuickView view;
    view.setColor(Qt::black);
    ContinuousRectangle item(view.contentItem());
    item.setPosition(QPointF(10, 10));
    item.setProperty("radius", 12);
    item.setProperty("color", QColor(0, 200, 0));
    item.setProperty("borderColor", QColor(200, 0, 0));
    item.setProperty("borderWidth", 2);
    view.resize(220, 140);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    const double ratio = view.effectiveDevicePixelRatio();
    for (const QSize size : {QSize(40, 40), QSize(200, 120), QSize(31, 30), QSize(90, 7)}) {
        item.setSize(size);
        const QImage seen = view.grabWindow();
        // Half of the outline lies outside.
        const QPainterPath outer = continuousRectanglePath(QRectF({9, 9}, size + QSize(2, 2)), 13);
        const QPainterPath inner =
            continuousRectanglePath(QRectF({11, 11}, size - QSize(2, 2)), 11);
        int wrong = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                const QRectF pixel(x / ratio, y / ratio, 1 / ratio, 1 / ratio);
                const QColor colour = seen.pixelColor(x, y);
                if (!outer.intersects(pixel))
                    wrong += colour != Qt::black;
                else if (inner.contains(pixel))
                    wrong += colour != QColor(0, 200, 0);
                else if (outer.contains(pixel) && !inner.intersects(pixel))
                    wrong += colour != QColor(200, 0, 0);
            }
        }
        // The curve itself passes so near a few pixels' corners that they may differ.
        EXPECT_LE(wrong, 8 * ratio) << size.width();
    }
}

} // namespace brisalon::tests
