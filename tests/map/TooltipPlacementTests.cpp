#include "Brisalon/Map/TooltipPlacement.h"

#include <gtest/gtest.h>

using namespace brisalon;

TEST(TooltipPlacementTest, FollowsThePointerAndStaysOnTheCanvas)
{
    const QSizeF canvas(1000, 600);
    EXPECT_EQ(tooltipPosition({500, 300}, canvas), QPointF(514, 316));
    EXPECT_EQ(tooltipPosition({0, 0}, canvas), QPointF(14, 16));
    EXPECT_EQ(tooltipPosition({-20, -20}, canvas), QPointF(8, 8));
    EXPECT_EQ(tooltipPosition({990, 590}, canvas), QPointF(760, 520));
    EXPECT_EQ(tooltipPosition({746, 504}, canvas), QPointF(760, 520));
    EXPECT_EQ(tooltipPosition({745, 503}, canvas), QPointF(759, 519));
    // No room at all: the top-left corner wins.
    EXPECT_EQ(tooltipPosition({200, 70}, QSizeF(247, 80)), QPointF(8, 8));
}
