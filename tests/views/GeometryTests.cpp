#include "WindowFixture.h"

#include "Brisalon/Interface/RingColors.h"
#include "Brisalon/Theme/Theme.h"

#include <QPainter>
#include <QTest>

#include <numeric>
#include <tuple>

namespace brisalon::tests {

/// Where things are on screen, how large, and in which colours.
class GeometryTest : public WindowFixture {
protected:
    QRgb colorOf(const char* name) const
    {
        return driver->property(name, "color").value<QColor>().rgba();
    }
};

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

TEST_F(GeometryTest, Sidebar)
{
    home.file("a.bin", mib);
    start();
    EXPECT_EQ(box("sidebar"), QRectF(0, 0, 248, 820));
    EXPECT_EQ(box("sidebarLogo"), QRectF(18, 52, 40, 40));
    const QRectF card = box("diskRingCard");
    EXPECT_EQ(card.topLeft(), QPointF(16, 124));
    EXPECT_EQ(card.right(), 248 - 16);
    EXPECT_EQ(box("ring"), QRectF(card.left() + 12, card.top() + 12, 56, 56));
    EXPECT_EQ(box("Storage").left(), box("ring").right() + 14);
    EXPECT_EQ(box("SCAN").topLeft(), QPointF(20, card.bottom() + 32));
    const char* const hint = "Pick a scan target in the map →";
    EXPECT_EQ(box(hint).topLeft(), QPointF(20, box("SCAN").bottom() + 20));
    EXPECT_EQ(box("homeTarget").topLeft(), QPointF(12, box(hint).bottom() + 20));
    EXPECT_EQ(box("homeTarget").right(), 248 - 12);
    EXPECT_EQ(below("homeTarget", "thisMacTarget"), 4);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    EXPECT_FALSE(isShown("sidebarRescan") || isShown("scanningCard"));

    gate.holdAfter(0);
    state().startScan(home.url());
    ASSERT_TRUE(
        WindowDriver::waitFor([&] { return text("statusText").startsWith("Scanning · "); }));
    EXPECT_EQ(below("folderTarget", "scanningCard"), 12 + 16);
    EXPECT_EQ(box("Cancel").bottomLeft(), box("scanningCard").bottomLeft() + QPointF(12, -12));
    EXPECT_GE(box("cancelButton").height(), 22) << "as easy to hit as other buttons";
    EXPECT_GE(box("cancelButton").width(), 44);
    driver->find("scannedPath")->setProperty("text", "/a/long" + QString("/way").repeated(40));
    EXPECT_EQ(driver->property("scannedPath", "lineCount"), 2);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    EXPECT_EQ(colorOf("statusDot"), Theme::accent().rgba());
    gate.open();
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(colorOf("statusDot"), Theme::success().rgba());
    EXPECT_EQ(below("folderTarget", "sidebarRescan"), 12 + 8);
    EXPECT_TRUE(driver->find("homeTarget")->isEnabled());
    EXPECT_TRUE(driver->property("homeTarget", "isActive").toBool());
}

TEST_F(GeometryTest, TheWeightsOfTheRoundedFontDiffer)
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

TEST_F(GeometryTest, MapWithItsBars)
{
    home.file("node_modules/a.js", 4 * mib);
    home.file("setup.iso", 2 * mib);
    home.file("Movies/c.mov", 3 * mib);
    startWithMap();
    driver->doubleClick(block("Movies"));
    ASSERT_TRUE(driver->waitForMap());

    const QRectF header = box("mapHeaderBar");
    EXPECT_EQ(header.topLeft(), QPointF(248, 0));
    EXPECT_EQ(header.right(), 1280 - 380);
    EXPECT_EQ(box("upButton").left(), header.left() + 20);
    EXPECT_NEAR(box("crumb0").left(), box("upButton").right() + 12, 0.5);
    // Between the crumbs stand 4 points, the separator, and 4 points.
    EXPECT_NEAR(box("crumb1").left(), box("crumb0").right() + 8 + 12, 2);
    const QRectF trash = box("trashButton");
    EXPECT_EQ(trash.bottomRight(), header.bottomRight() - QPointF(20, 12));
    EXPECT_EQ(trash.top(), 12);
    const QRectF chip = box("selectionChip");
    EXPECT_EQ(chip.right(), trash.left() - 12);
    EXPECT_EQ(box("rescanButton").right(), chip.left() - 12);
    // The chip is a whole number of points wide, its text need not be.
    EXPECT_NEAR(box("selectionSize").width(), chip.width() - 2 * 10, 1);

    const QRectF status = box("statusBar");
    EXPECT_EQ(status.bottomLeft(), QPointF(248, 820));
    EXPECT_EQ(status.right(), 1280);
    EXPECT_EQ(box("statusDot").size(), QSizeF(6, 6));
    EXPECT_EQ(box("statusText").left(), status.left() + 20 + 6 + 10);

    const QRectF pane(header.bottomLeft(), QPointF(header.right(), status.top()));
    EXPECT_EQ(box("mapPanel"), pane.adjusted(16, 16, -16, -16));
    EXPECT_EQ(box("treemapView"), box("mapPanel").adjusted(12, 12, -12, -12))
        << "no legend on a level without hogs";

    driver->click(driver->centre("crumb0"));
    ASSERT_TRUE(driver->waitForMap());
    const QRectF legend = box("hogLegend");
    EXPECT_EQ(legend.bottom(), box("mapPanel").bottom() - 12);
    EXPECT_EQ(below("treemapView", "hogLegend"), 12);
    const Rendered chips = shown().within("hogLegend");
    EXPECT_EQ(chips.box("node_modules").left(), legend.left() + 10 + 10 + 6);
    EXPECT_EQ(chips.box("node_modules").height(), legend.height() - 2 * 6);
    // The chip's right padding, the gap and the next chip's left part.
    EXPECT_EQ(chips.box("Installer").left(),
              chips.box("node_modules").right() + 10 + 8 + 10 + 10 + 6);
}

TEST_F(GeometryTest, ALongWayLeavesRoomForOthers)
{
    std::string path = std::string(250, 'n') + "/Movies/";
    for (int level = 2; level < 30; ++level)
        path += "a folder with a long name " + std::to_string(level) + "/";
    home.file(path + "a.bin", mib);
    startWithMap();
    const auto zoom = [this](int levels) {
        for (; levels > 0; --levels)
            zoomIntoFirstOf(state().current());
    };
    zoom(2);
    state().select({});
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_LE(box("crumb1").width(), 276);
    for (const char* const crumb : {"crumb0", "crumb1", "crumb2"})
        EXPECT_TRUE(box("breadcrumb").contains(box(crumb))) << crumb;

    zoom(28);
    ASSERT_TRUE(driver->waitForMap());
    const auto areInSight = [this] {
        for (const char* const name : {"upButton", "rescanButton", "selectionSize"})
            EXPECT_TRUE(box("mapHeaderBar").contains(box(name))) << name;
        EXPECT_LE(box("crumb30").right(), box("breadcrumb").right() + 0.5) << "the end";
    };
    areInSight();
    window->resize(1000, 700);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return box("inspectorColumn").right() == 1000; }));
    areInSight();
}

TEST_F(GeometryTest, NoticesAndTheWelcome)
{
    store.setText("lastScanTargetKind", "home");
    home.folder("empty");
    start();
    EXPECT_EQ(box("scanHomeCard").width(), 440);
    EXPECT_EQ(box("scanHomeCard").center().x(), box("well").center().x());
    EXPECT_EQ(below("welcomeHeader", "scanHomeCard"), 28);
    EXPECT_EQ(below("scanHomeCard", "scanThisMacCard"), 10);
    EXPECT_EQ(box("Scan Home folder").left(), box("scanHomeCard").left() + 14 + 44 + 14);
    EXPECT_EQ(box("Last used").left(), box("Scan Home folder").right() + 8);

    for (const auto& [folder, title, tint] : {std::tuple{"missing", "Scan failed", Theme::danger()},
                                              {"empty", "Empty folder", Theme::muted()}}) {
        state().startScan(FileURL(home.at(folder)));
        ASSERT_TRUE(WindowDriver::waitFor([&] { return !state().isScanning(); }));
        const QRectF disc = box("noticeDisc");
        EXPECT_EQ(disc.size(), QSizeF(72, 72));
        EXPECT_EQ(disc.center().x(), box("well").center().x());
        EXPECT_EQ(below("noticeDisc", title), 16);
        EXPECT_EQ(below(title, "noticeDetail"), 8);
        EXPECT_EQ(driver->property("notice", "tint").value<QColor>(), tint);
    }
}

TEST_F(GeometryTest, TextsAreInTheirFontsAndColors)
{
    home.file("setup.iso", 2 * mib);
    struct Row {
        QString text;
        QFont font;
        QColor color;
    };
    const auto expect = [this](std::initializer_list<Row> rows) {
        for (const Row& row : rows)
            shown().expectText(row.text, row.font, row.color);
    };
    QFont label = Theme::rounded(10, QFont::DemiBold);
    label.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    start();
    expect({{"Your disk, as a map", Theme::rounded(22, QFont::Bold), Theme::text()},
            {"Scan Home folder", Theme::rounded(12, QFont::DemiBold), Theme::text()},
            {"Projects, Downloads, external drives", Theme::system(10), Theme::muted()},
            {"on", Theme::rounded(13, QFont::Bold), Theme::text()},
            {QString::number(state().volume().usedPercent()), Theme::rounded(18, QFont::Bold),
             Theme::text()},
            {"SELECTION", label, Theme::muted()},
            {"Nothing selected", Theme::rounded(13, QFont::DemiBold), Theme::textSecondary()}});
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    clickOn("largeFile0");
    expect({{"Move to Trash", Theme::rounded(12, QFont::DemiBold), Qt::white},
            {state().selected().riskSummary(), Theme::system(10), Theme::muted()}});
    EXPECT_EQ(colorOf("selectionSize"), Theme::accent().rgba());
    EXPECT_EQ(colorOf("inspectedSize"), Theme::accent().rgba());
    EXPECT_EQ(colorOf("hogSwatch"), QColor::fromRgbF(0.98f, 0.62f, 0.18f).rgba());
}

TEST_F(GeometryTest, TheDividerKeepsBothSidesWithinTheirBounds)
{
    home.file("a.bin", mib);
    startWithMap();
    const auto drag = [&](int dx) {
        const QPoint from = driver->centre("divider");
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(window, from + QPoint(dx / 2, 0));
        QTest::mouseMove(window, from + QPoint(dx, 0));
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, from + QPoint(dx, 0));
    };
    const auto widths = [&] {
        return std::pair(box("mapColumn").width(), box("inspectorColumn").width());
    };
    EXPECT_EQ(widths(), std::pair(652., 380.));
    drag(-15);
    EXPECT_EQ(widths(), std::pair(637., 395.));
    drag(-300);
    EXPECT_EQ(widths(), std::pair(612., 420.));
    drag(300);
    EXPECT_EQ(widths(), std::pair(712., 320.));
    driver->find("divider")->forceActiveFocus();
    driver->press(Qt::Key_Left);
    EXPECT_EQ(widths(), std::pair(702., 330.));

    // The map comes first when the window shrinks, and the width returns with it.
    drag(-300);
    window->resize(1000, 700);
    EXPECT_TRUE(WindowDriver::waitFor([&] { return widths() == std::pair(432., 320.); }))
        << "where both do not fit";
}

} // namespace brisalon::tests
