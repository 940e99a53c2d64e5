#include "Rendered.h"
#include "WindowFixture.h"

#include "Brisalon/Interface/RingColors.h"
#include "Brisalon/Theme/Theme.h"

#include <QTest>

#include <tuple>

namespace brisalon::tests {

/// The places, sizes, fonts and colours of what the window shows.
class GeometryTest : public WindowFixture {
protected:
    void openAndScan()
    {
        home.file("node_modules/a.js", 4 * mib);
        home.file("setup.iso", 2 * mib);
        home.file("Movies/c.mov", 3 * mib);
        start();
        app->state().startScan(home.url());
        ASSERT_TRUE(mapAppears());
    }

    Rendered shown() const { return Rendered(*window); }
    QRectF box(const char* name) const { return shown().box(name); }
    QRectF textBox(const char* text) const { return shown().textBox(text); }
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
    start();
    const QRectF sidebar = box("sidebar");
    EXPECT_EQ(sidebar, QRectF(0, 0, 248, 820));
    EXPECT_EQ(box("sidebarLogo"), QRectF(18, 52, 40, 40));
    EXPECT_EQ(textBox("Disk map").left(), 18 + 40 + 12);
    EXPECT_EQ(textBox("Disk map").top() - textBox("on").bottom(), 2);
    shown().expectText("on", Theme::rounded(13, QFont::Bold), Theme::text());
    shown().expectText("Disk map", Theme::rounded(10), Theme::muted());

    const QRectF card = box("diskRingCard");
    EXPECT_EQ(card.left(), 16);
    EXPECT_EQ(card.width(), 248 - 2 * 16);
    EXPECT_EQ(card.top(), 52 + 40 + 20 + 12);
    EXPECT_EQ(box("ring"), QRectF(card.left() + 12, card.top() + 12, 56, 56));
    const QRectF storage = textBox("Storage");
    EXPECT_EQ(storage.left(), card.left() + 12 + 56 + 14);
    shown().expectText("Storage", Theme::rounded(10, QFont::DemiBold), Theme::muted());
    shown().expectText("%", Theme::system(9, QFont::DemiBold), Theme::muted());
    const VolumeStatsValue& volume = app->state().volume();
    shown().expectText(QString::number(volume.usedPercent()), Theme::rounded(18, QFont::Bold),
                       Theme::text());
    shown().expectText(volume.freeText(), Theme::rounded(12, QFont::DemiBold), Theme::text());
    shown().expectText(volume.usedText(), Theme::system(10), Theme::muted());

    const QRectF label = textBox("SCAN");
    EXPECT_EQ(label.topLeft(), QPointF(20, card.bottom() + 20 + 12));
    QFont spaced = Theme::rounded(10, QFont::DemiBold);
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    shown().expectText("SCAN", spaced, Theme::muted());
    const QRectF hint = textBox("Pick a scan target in the map →");
    EXPECT_EQ(hint.topLeft(), QPointF(20, label.bottom() + 8 + 12));
    shown().expectText("Pick a scan target in the map →", Theme::rounded(10), Theme::muted());

    const QRectF first = box("homeTarget");
    EXPECT_EQ(first.topLeft(), QPointF(12, hint.bottom() + 8 + 12));
    EXPECT_EQ(first.width(), 248 - 2 * 12);
    EXPECT_EQ(box("thisMacTarget").top(), first.bottom() + 4);
    EXPECT_EQ(box("folderTarget").top(), box("thisMacTarget").bottom() + 4);
    // The symbol is a point higher than the words.
    EXPECT_NEAR(textBox("Home folder").height(), first.height() - 2 * 9, 1);
    EXPECT_EQ(driver->find("homeTarget")->parentItem()->opacity(), 0.45);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    EXPECT_EQ(driver->find("sidebarRescan"), nullptr);
    EXPECT_EQ(driver->find("scanningCard"), nullptr);
}

TEST_F(GeometryTest, ScanningCard)
{
    home.file("a.bin", mib);
    start();
    gate.holdAfter(0);
    app->state().startScan(home.url());
    ASSERT_TRUE(WindowDriver::waitFor([&] { return app->state().progress().isPresent(); }));
    ASSERT_TRUE(
        WindowDriver::waitFor([&] { return text("statusText").startsWith("Scanning · "); }));

    const QRectF card = box("scanningCard");
    EXPECT_EQ(card.left(), 16);
    EXPECT_EQ(card.width(), 248 - 2 * 16);
    EXPECT_EQ(card.top(), box("folderTarget").bottom() + 12 + 16);
    EXPECT_EQ(textBox("0 items").left(), card.left() + 12);
    EXPECT_EQ(box("cancelButton").bottom(), card.bottom() - 12);
    shown().expectText("Mapping…", Theme::rounded(10, QFont::DemiBold), Theme::text());
    shown().expectText("0 B", Theme::rounded(15, QFont::Bold), Theme::accent());
    shown().expectText("0 items", Theme::system(10), Theme::muted());
    EXPECT_EQ(driver->find("homeTarget")->parentItem()->opacity(), 1);
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());

    shown().expectText("Building your map…", Theme::rounded(17, QFont::DemiBold), Theme::text());
    EXPECT_EQ(driver->property("statusDot", "color").value<QColor>(), Theme::accent());
    gate.open();
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(driver->property("statusDot", "color").value<QColor>(), Theme::success());
    const QRectF rescan = box("sidebarRescan");
    EXPECT_EQ(rescan.topLeft(), QPointF(12, box("folderTarget").bottom() + 12 + 8));
    EXPECT_TRUE(driver->find("homeTarget")->isEnabled());
    EXPECT_TRUE(driver->property("homeTarget", "isActive").toBool());
}

TEST_F(GeometryTest, MapWithItsBars)
{
    openAndScan();
    driver->doubleClick(block("Movies"));
    ASSERT_TRUE(driver->waitForMap());

    const QRectF header = box("mapHeaderBar");
    EXPECT_EQ(header.topLeft(), QPointF(248, 0));
    EXPECT_EQ(header.width(), 1280 - 248 - 380);
    const QRectF up = box("upButton");
    EXPECT_EQ(up.left(), header.left() + 20);
    EXPECT_NEAR(box("crumb0").left(), up.right() + 12, 0.5);
    // Between the crumbs stand 4 points, the separator, and 4 points.
    EXPECT_NEAR(box("crumb1").left(), box("crumb0").right() + 8 + 12, 2);
    EXPECT_EQ(box("trashButton").right(), header.right() - 20);
    EXPECT_EQ(box("trashButton").top(), header.top() + 12);
    EXPECT_EQ(box("trashButton").bottom(), header.bottom() - 12);
    const QRectF chip = box("selectionChip");
    EXPECT_EQ(chip.right(), box("trashButton").left() - 12);
    EXPECT_EQ(box("rescanButton").right(), chip.left() - 12);
    // The chip is a whole number of points wide, its text need not be.
    EXPECT_NEAR(box("selectionSize").width(), chip.width() - 2 * 10, 1);
    EXPECT_EQ(box("selectionSize").height(), chip.height() - 2 * 5);
    const Rendered bar = shown().within("mapHeaderBar");
    const QString size = app->state().selection().sizeText();
    bar.expectText(size, Theme::rounded(10, QFont::DemiBold), Theme::accent());
    bar.expectText("Movies", Theme::rounded(12, QFont::DemiBold), Theme::text());
    bar.expectText(app->state().tree().name(), Theme::rounded(12, QFont::Medium),
                   Theme::textSecondary());
    bar.expectText("Move to Trash", Theme::rounded(12, QFont::DemiBold), Qt::white);

    const QRectF status = box("statusBar");
    EXPECT_EQ(status.bottomLeft(), QPointF(248, 820));
    EXPECT_EQ(status.right(), 1280);
    const QRectF dot = box("statusDot");
    EXPECT_EQ(dot.size(), QSizeF(6, 6));
    EXPECT_EQ(dot.left(), status.left() + 20);
    EXPECT_EQ(box("statusText").left(), dot.right() + 10);
    EXPECT_EQ(box("statusText").height(), status.height() - 2 * 9);

    const QRectF pane(header.bottomLeft(), QPointF(header.right(), status.top()));
    EXPECT_EQ(box("well"), pane.adjusted(16, 16, -16, -16));
    EXPECT_EQ(box("mapPanel"), box("well"));
    EXPECT_EQ(driver->property("mapPanel", "cornerRadius"), 18);
    EXPECT_EQ(box("treemapView"), box("mapPanel").adjusted(12, 12, -12, -12))
        << "no legend on a level without hogs";

    driver->click(driver->centre("crumb0"));
    ASSERT_TRUE(driver->waitForMap());
    const QRectF legend = box("hogLegend");
    const auto legendText = [&](const char* title) {
        return shown().within("hogLegend").textBox(title);
    };
    EXPECT_EQ(legend.bottom(), box("mapPanel").bottom() - 12);
    EXPECT_EQ(box("treemapView").bottom(), legend.top() - 12);
    EXPECT_EQ(legendText("node_modules").left(), legend.left() + 10 + 10 + 6);
    EXPECT_EQ(legendText("node_modules").height(), legend.height() - 2 * 6);
    // The chip's right padding, the gap and the next chip's left part.
    EXPECT_EQ(legendText("Installer").left(),
              legendText("node_modules").right() + 10 + 8 + 10 + 10 + 6);
    shown()
        .within("hogLegend")
        .expectText("Installer", Theme::rounded(11, QFont::Medium), Theme::textSecondary());
}

TEST_F(GeometryTest, ALongNameInTheWayLeavesRoomForOthers)
{
    home.file(std::string(250, 'n') + "/Movies/a.mov", mib);
    start();
    app->state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    for (int level = 0; level < 2; ++level)
        app->state().zoom(FileNodeValue(app->state().current()->children()[0]));
    app->state().select({});
    ASSERT_TRUE(driver->waitForMap());
    driver->settle();
    EXPECT_LE(box("crumb1").width(), 276);
    for (const char* const crumb : {"crumb0", "crumb1", "crumb2"})
        EXPECT_TRUE(box("breadcrumb").contains(box(crumb))) << crumb;
}

TEST_F(GeometryTest, Notices)
{
    home.folder("empty");
    start();
    for (const auto& [folder, title, tint] : {std::tuple{"missing", "Scan failed", Theme::danger()},
                                              {"empty", "Empty folder", Theme::muted()}}) {
        app->state().startScan(FileURL(home.at(folder)));
        ASSERT_TRUE(WindowDriver::waitFor([&] { return !app->state().isScanning(); }));
        const QRectF disc = box("noticeDisc");
        EXPECT_EQ(disc.size(), QSizeF(72, 72));
        EXPECT_EQ(disc.center().x(), box("well").center().x());
        EXPECT_EQ(textBox(title).top(), disc.bottom() + 16);
        shown().expectText(title, Theme::rounded(17, QFont::Bold), Theme::text());
        const QString detail = driver->property("notice", "detail").toString();
        EXPECT_FALSE(detail.isEmpty());
        EXPECT_EQ(box("noticeDetail").top(), textBox(title).bottom() + 8);
        EXPECT_EQ(box("noticeDetail").width(), 380);
        EXPECT_EQ(driver->property("noticeDetail", "font").value<QFont>(), Theme::system(13));
        EXPECT_EQ(driver->property("notice", "tint").value<QColor>(), tint);
    }
}

TEST_F(GeometryTest, WelcomeCards)
{
    store.setText("lastScanTargetKind", "home");
    start();
    shown().expectText("Your disk, as a map", Theme::rounded(22, QFont::Bold), Theme::text());
    const char* const lead =
        "Pick what to scan. Every rectangle is real space used — big blocks are your biggest wins.";
    shown().expectText(lead, Theme::rounded(13), Theme::muted());
    EXPECT_EQ(textBox(lead).width(), 420);

    const QRectF card = box("scanHomeCard");
    EXPECT_EQ(card.width(), 440);
    EXPECT_EQ(card.top(), textBox(lead).bottom() + 28);
    EXPECT_EQ(card.center().x(), box("well").center().x());
    EXPECT_EQ(box("scanThisMacCard").top(), card.bottom() + 10);
    EXPECT_EQ(box("chooseFolderCard").top(), box("scanThisMacCard").bottom() + 10);
    EXPECT_EQ(textBox("Scan Home folder").left(), card.left() + 14 + 44 + 14);
    shown().expectText("Scan Home folder", Theme::rounded(12, QFont::DemiBold), Theme::text());
    shown().expectText("Projects, Downloads, external drives", Theme::system(10), Theme::muted());
    shown().expectText("Last used", Theme::system(10, QFont::DemiBold), Theme::accent());
    EXPECT_EQ(textBox("Last used").left(), textBox("Scan Home folder").right() + 8);
}

TEST_F(GeometryTest, TheDividerKeepsBothSidesWithinTheirBounds)
{
    openAndScan();
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
