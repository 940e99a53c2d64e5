// Where things are on screen, how large, and in which colours.

#include "WindowFixture.h"

#include "Brisalon/Interface/RingColors.h"
#include "Brisalon/Theme/Theme.h"

#include <QPainter>

#include <numeric>
#include <tuple>

namespace brisalon::tests {

using GeometryTest = WindowFixture;

TEST(RingColorsTest, WarnAsTheVolumeFills)
{
    const QColor green = Theme::faded(Theme::success(), 0.8);
    const QColor red = Theme::faded(Theme::danger(), 0.7);
    for (const auto& [used, from, to] :
         {std::tuple{0.0, Theme::accent(), green}, std::tuple{0.75, Theme::accent(), green},
          std::tuple{0.76, Theme::amber(), Theme::accent()},
          std::tuple{0.9, Theme::amber(), Theme::accent()}, std::tuple{0.905, Theme::danger(), red},
          std::tuple{1.0, Theme::danger(), red}}) {
        EXPECT_EQ(RingColors::from(used), from) << used;
        EXPECT_EQ(RingColors::to(used), to) << used;
    }
}

TEST(ThemeFontTest, TheWeightsOfTheRoundedFontDiffer)
{
    double lighter = 0;
    for (const int weight : {QFont::Normal, QFont::Medium, QFont::DemiBold, QFont::Bold}) {
        QImage image(600, 40, QImage::Format_Grayscale8);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setFont(Theme::rounded(17, weight));
        painter.setPen(Qt::white);
        painter.drawText(10, 30, "The largest files of a disk, and 24 GB of them");
        painter.end();
        const double ink =
            std::accumulate(image.constBits(), image.constBits() + image.sizeInBytes(), 0.0);
        EXPECT_GT(ink, 1.1 * lighter) << weight;
        lighter = ink;
    }
}

TEST_F(GeometryTest, Sidebar)
{
    home.file("a.bin", mib);
    start();
    EXPECT_TRUE(isShown(QString::number(state().volume().usedPercent())));
    EXPECT_EQ(below("diskRingCard", "SCAN"), 32);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    EXPECT_FALSE(isShown("sidebarRescan") || isShown("scanningCard"));

    beginScan();
    ASSERT_TRUE(waitFor([&] { return text("statusText").startsWith("Scanning · "); }));
    EXPECT_GE(box("cancelButton").height(), 22) << "as easy to hit as other buttons";
    EXPECT_GE(box("cancelButton").width(), 44);
    driver->find("scannedPath")->setProperty("text", "/a/long" + QString("/way").repeated(40));
    EXPECT_EQ(property("scannedPath", "lineCount"), 2);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    EXPECT_EQ(color("statusDot"), Theme::accent());
    endScan();
    EXPECT_EQ(color("statusDot"), Theme::success());
    EXPECT_TRUE(driver->find("homeTarget")->isEnabled());
    EXPECT_TRUE(property("homeTarget", "isActive").toBool());
}

TEST_F(GeometryTest, MapWithItsBars)
{
    startWithMap({{"node_modules/a.js", 4}, {"setup.iso", 2}, {"Movies/c.mov", 3}});
    const QRectF header = box("mapHeaderBar");
    const QRectF pane(header.bottomLeft(), QPointF(header.right(), box("statusBar").top()));
    EXPECT_EQ(box("mapPanel"), pane.adjusted(16, 16, -16, -16));
    EXPECT_EQ(box("hogLegend").bottom(), box("mapPanel").bottom() - 12);
    EXPECT_EQ(below("treemapView", "hogLegend"), 12);
    EXPECT_EQ(box("node_modules", "hogLegend").left(), box("hogLegend").left() + 10 + 10 + 6);
    enterBlock("Movies");
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_NEAR(box("crumb1").left(), box("crumb0").right() + 8 + 12, 2);
    EXPECT_EQ(box("trashButton").bottomRight(), header.bottomRight() - QPointF(20, 12));
    EXPECT_EQ(box("treemapView"), box("mapPanel").adjusted(12, 12, -12, -12))
        << "no legend on a level without hogs";
}

TEST_F(GeometryTest, ALongWayLeavesRoomForOthers)
{
    std::string path = std::string(250, 'n') + "/Movies/";
    for (int level = 2; level < 30; ++level)
        path += "a folder with a long name " + std::to_string(level) + "/";
    startWithMap({{path + "a.bin", 1}});
    for (int level = 0; level < 2; ++level)
        zoomIntoFirstOf(state().current());
    state().select({});
    EXPECT_LE(box("crumb1").width(), 276);
    for (const char* const crumb : {"crumb0", "crumb1", "crumb2"})
        EXPECT_TRUE(box("breadcrumb").contains(box(crumb))) << crumb;

    for (int level = 2; level < 30; ++level)
        zoomIntoFirstOf(state().current());
    for (const int width : {1280, 1000}) {
        resize(width, 700);
        for (const char* const name : {"upButton", "rescanButton", "selectionSize"})
            EXPECT_TRUE(box("mapHeaderBar").contains(box(name))) << name;
        EXPECT_TRUE(waitFor([&] {
            return box("crumb30").right() <= box("breadcrumb").right() + 0.5;
        })) << "the end";
    }
}

TEST_F(GeometryTest, TheDividerKeepsBothSidesWithinTheirBounds)
{
    startWithMap({{"a.bin", 1}});
    const auto widths = [&] {
        return std::pair(box("mapColumn").width(), box("inspectorColumn").width());
    };
    EXPECT_EQ(widths(), std::pair(652., 380.));
    for (const auto& [dx, map, inspector] :
         {std::tuple{-15, 637., 395.}, {-300, 612., 420.}, {300, 712., 320.}}) {
        drag(driver->centre("divider"), QPoint(dx, 0));
        EXPECT_EQ(widths(), std::pair(map, inspector)) << dx;
    }
    driver->find("divider")->forceActiveFocus();
    press(Qt::Key_Left);
    EXPECT_EQ(widths(), std::pair(702., 330.));
    press(Qt::Key_Right);
    EXPECT_EQ(widths(), std::pair(712., 320.));

    // The map comes first when the window shrinks.
    drag(driver->centre("divider"), QPoint(-300, 0));
    resize(1000, 700);
    EXPECT_EQ(widths(), std::pair(432., 320.)) << "where both do not fit";
    resize(1280, 820);
    EXPECT_EQ(widths(), std::pair(612., 420.)) << "the width returns with the window's";
}

} // namespace brisalon::tests
