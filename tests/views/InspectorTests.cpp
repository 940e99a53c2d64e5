#include "WindowFixture.h"
#include "support/Script.h"

#include "Brisalon/Map/NodeColor.h"
#include "Brisalon/Theme/Theme.h"

#include <QClipboard>
#include <QGuiApplication>

#include <QTest>
#include <algorithm>

namespace brisalon::tests {

/// The right-hand column.
class InspectorTest : public WindowFixture {
protected:
    void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        clickOn(QStringLiteral("largeFile%1").arg(row), modifiers);
    }
    bool isEnabled(const char* objectName) const
    {
        return driver->property(objectName, "enabled").toBool();
    }
    /// Which of the things that the inspector may show it shows.
    std::string shownParts() const
    {
        std::string parts;
        for (const char* const part : {"emptySelection", "hogSummary", "factContents", "pathBlock",
                                       "revealButton", "zoomInButton", "inspectorTrashButton"})
            if (isShown(part))
                parts += (parts.empty() ? "" : " ") + std::string(part);
        return parts;
    }
    /// The program lists what this script prints.
    void useSnapshotTool(std::string_view body)
    {
        snapshots = SnapshotService(script(tools, "tool", body));
    }
    QColor colorOf(const char* name) const
    {
        return driver->property(name, "color").value<QColor>();
    }

    TemporaryTree tools;
};

TEST_F(InspectorTest, DescribesWhatWasClickedOnTheMap)
{
    home.file("Projects/node_modules/dependency.js", 4 * mib);
    home.file("Projects/node_modules/tiny", 200 * 1024);
    home.file("Projects/readme.mov", 3 * mib);
    startWithMap();
    EXPECT_EQ(shownParts(), "emptySelection");

    driver->click(block("Projects"));
    EXPECT_EQ(text("selectionTitle"), "Projects");
    EXPECT_EQ(text("selectionSubtitle"), "Folder");
    EXPECT_EQ(text("inspectedSize"), state().selection().sizeText());
    EXPECT_EQ(text("pathText").toStdString(), home.at("Projects"));
    EXPECT_EQ(shownParts(), "pathBlock revealButton zoomInButton inspectorTrashButton");
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Projects"))});
    clickOn("zoomInButton");
    EXPECT_EQ(levelName(), "Projects");
    EXPECT_LT(driver->find("treemapView")->opacity(), 1) << "as animated as on the map";
    const auto maps = driver->find("mapPanel")->findChildren<QQuickItem*>("treemapView");
    EXPECT_EQ(std::ranges::count_if(maps, &QQuickItem::isEnabled), 1) << "the new one alone";
    ASSERT_TRUE(driver->waitForMap());

    driver->click(block("node_modules"));
    EXPECT_EQ(shownParts(), "hogSummary pathBlock revealButton zoomInButton inspectorTrashButton");
    EXPECT_EQ(driver->property("inspectedRisk", "title"), state().selected().riskTitle());
    EXPECT_EQ(colorOf("hogSwatch"), NodeColor::color(HogKind::nodeModules, {}));

    clickOn("zoomInButton");
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block(state().current()->children().back().name()));
    EXPECT_EQ(text("selectionSubtitle"), "Small files");
    EXPECT_EQ(driver->property("factContents", "label"), "Contents");
    EXPECT_EQ(driver->property("factContents", "value"), "1 small files");
    EXPECT_FALSE(isShown("revealButton") || isShown("zoomInButton"));

    clickOn("crumb1");
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block("readme.mov"));
    EXPECT_EQ(text("selectionSubtitle"), "File");
    EXPECT_EQ(shownParts(), "pathBlock revealButton inspectorTrashButton");
    clickOn("inspectorTrashButton");
    EXPECT_TRUE(state().confirmTrash());
}

TEST_F(InspectorTest, LargeFilesAreTickedByClicks)
{
    home.file("Movies/beach.mov", 6 * mib);
    home.file("Music/album.flac", 4 * mib);
    home.file("notes.dmg", 2 * mib);
    start();
    EXPECT_TRUE(isShown("noLargeFiles"));
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    EXPECT_FALSE(isShown("noLargeFiles") || isShown("tickedSize"));

    clickRow(0);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(text("selectionTitle"), "beach.mov");
    EXPECT_EQ(text("pathText").toStdString(), home.at("Movies/beach.mov"));
    const double wide = box("inspectedSize").width();
    EXPECT_EQ(shownParts(), "pathBlock revealButton inspectorTrashButton");
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Movies/beach.mov"))});

    clickRow(2, Qt::ShiftModifier);
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(text("selectionTitle"), "2 large files");
    EXPECT_EQ(text("inspectedSize"), "8.0 MB");
    EXPECT_EQ(text("tickedSize"), "8.0 MB");
    EXPECT_EQ(box("inspectedSize").width(), wide) << "digits are equally wide";
    EXPECT_EQ(shownParts(), "inspectorTrashButton");

    clickRow(2);
    EXPECT_EQ(state().selectedLargeFileIDs(), std::set{home.at("notes.dmg")});
    EXPECT_EQ(levelName(), state().tree().name());
    EXPECT_TRUE(isShown("hogSummary")) << "an installer";

    clickOn("segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel") && !isShown("largeFilesSidebar"));
    EXPECT_EQ(text("selectionTitle"), "notes.dmg") << "the tab does not change the selection";
    clickOn("segmentLargest");

    gate.holdAfter(0);
    state().startScan(home.url());
    EXPECT_FALSE(isEnabled("inspectorTrashButton"));
    EXPECT_TRUE(isEnabled("revealButton"));
    gate.open();
    ASSERT_TRUE(mapAppears());

    driver->click(block("Music"));
    EXPECT_FALSE(state().selection().isOfFiles() || isShown("tickedSize"));
    EXPECT_EQ(text("selectionTitle"), "Music");
}

TEST_F(InspectorTest, TheKeyboardReachesAndWorksEverything)
{
    for (int i = 0; i < 20; ++i)
        home.file("file " + std::to_string(i) + ".bin", (30 - i) * mib / 4);
    useSnapshotTool("echo 2024-01-15-123456");
    startWithMap();

    ASSERT_TRUE(reaches("largeFile0"));
    driver->press(Qt::Key_Down);
    driver->press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(text("selectionTitle"), "2 large files");
    EXPECT_EQ(focused(), "largeFile2");
    driver->press(Qt::Key_End);
    EXPECT_EQ(focused(), "largeFile19");
    EXPECT_TRUE(WindowDriver::waitFor([&] {
        return driver->find("largeFile19") && box("largeFilesList").contains(box("largeFile19"));
    })) << "scrolled into sight";
    driver->press(Qt::Key_Return);
    EXPECT_EQ(state().selected().name(), "file 19.bin");
    driver->press(Qt::Key_Delete);
    EXPECT_TRUE(state().confirmTrash());
    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(state().confirmTrash());

    ASSERT_TRUE(reaches("segmentLargest", Qt::Key_Backtab)) << "out of the list again";
    driver->press(Qt::Key_Right);
    EXPECT_EQ(focused(), "segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel"));
    ASSERT_TRUE(reaches("refreshSnapshotsButton"));
    ASSERT_TRUE(reaches("deleteSnapshotButton"));
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(state().confirmSnapshot().isPresent());
    driver->press(Qt::Key_Escape);
    ASSERT_TRUE(reaches("revealButton"));
    driver->press(Qt::Key_Return);
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("file 19.bin"))});
    ASSERT_TRUE(reaches("pathText"));
    driver->press(Qt::Key_A, Qt::ControlModifier);
    driver->press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), home.at("file 19.bin"));
}

TEST_F(InspectorTest, HostileNamesAndEndlessPathsKeepTheirPlaces)
{
    std::string deep;
    for (int level = 0; level < 30; ++level)
        deep += std::string(100, static_cast<char>('a' + level % 26)) + "/";
    home.file(deep + "<b>bold\nsecond\nthird caf\xe9", 3 * mib);
    home.file("one\ntwo", 2 * mib);
    home.file(deep + "another", mib);
    startWithMap();
    window->resize(960, 700);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return box("inspectorColumn").right() == 960; }));
    clickRow(0, Qt::ControlModifier);
    const QString name = "<b>bold second third caf\ufffd";
    EXPECT_EQ(text("selectionTitle"), name);
    EXPECT_LE(driver->property("selectionTitle", "lineCount").toInt(), 2);
    EXPECT_GT(driver->property("pathText", "lineCount").toInt(), 30);
    EXPECT_LT(box("pathWell").height(), 100);
    EXPECT_GT(box("largeFilesList").height(), 150) << "room for some rows";
    EXPECT_EQ(box("largeFile0").height(), 60);
    EXPECT_EQ(box("largeFile1").height(), 60) << "one line for each name";
    for (const char* const item : {"inspectedSize", "inspectorTrashButton", "pathWell"})
        EXPECT_TRUE(box("inspectPanel").contains(box(item))) << item;

    // Scrolled to its end, and at the start again with another path.
    ASSERT_TRUE(reaches("pathText"));
    driver->press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_LT(box("pathText").top(), box("pathWell").top());
    clickRow(2);
    EXPECT_EQ(box("pathText").top(), box("pathWell").top() + 10);
}

TEST_F(InspectorTest, TheListStandsStillUnderThePointer)
{
    home.file("Caches/node_modules/" + std::string(90, 'x') + "-" + std::string(90, 'y'), 9 * mib);
    home.file("שלום.mov", 8 * mib);
    for (int i = 0; i < 20; ++i)
        home.file("file " + std::to_string(i) + ".bin", (30 - i) * mib / 8);
    startWithMap();
    const QRectF first = box("largeFile0");
    const QRectF list = box("largeFilesList");
    const QPoint lowest(list.center().toPoint().x(), static_cast<int>(list.bottom()) - 2);
    for (const QPoint point :
         {driver->centre("largeFile1"), driver->centre("largeFile0"), lowest}) {
        for (const auto modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
            driver->click(point, modifiers);
            EXPECT_EQ(box("largeFile0"), first) << point.y();
        }
    }
    driver->click(block("file 0.bin"));
    EXPECT_EQ(box("largeFile0"), first);
    clickRow(1);
    EXPECT_EQ(text("selectionTitle"), "שלום.mov");
    EXPECT_EQ(driver->property("selectionTitle", "effectiveHorizontalAlignment").toInt(),
              Qt::AlignLeft);

    // The keys show where they are, but not every key that is held.
    driver->press(Qt::Key_Shift);
    EXPECT_EQ(driver->property("largeFilesList", "showsFocus"), false);
    driver->press(Qt::Key_Down);
    EXPECT_EQ(driver->property("largeFilesList", "showsFocus"), true);

    // The scroll bar lies beside the band that resizes the window.
    const QPoint bar(window->width() - 7, static_cast<int>(list.top()) + 10);
    QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, bar);
    QTest::mouseMove(window, bar + QPoint(0, 40));
    QTest::mouseMove(window, bar + QPoint(0, 80));
    QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, bar + QPoint(0, 80));
    EXPECT_GT(driver->property("largeFilesList", "contentY").toDouble(), 100);
}

TEST_F(InspectorTest, SnapshotsAreListedAndOnlyAskedAbout)
{
    home.file("a.bin", mib);
    useSnapshotTool("[ \"$1\" = listlocalsnapshots ] || echo deleted > " + tools.at("deleted") +
                    "\n[ -e " + tools.at("one") + " ] && echo 2024-01-15-123456\n[ -e " +
                    tools.at("fails") + " ] && echo no rights >&2 && exit 1\nexit 0");
    startWithMap();
    clickOn("segmentSnapshots");
    EXPECT_TRUE(isShown("noSnapshots"));
    EXPECT_FALSE(isShown("snapshotError") || isShown("snapshotList"));

    tools.file("fails", 1);
    clickOn("refreshSnapshotsButton");
    EXPECT_EQ(text("snapshotError").trimmed(), "no rights");
    EXPECT_FALSE(isShown("noSnapshots"));

    tools.file("one", 1);
    clickOn("refreshSnapshotsButton");
    EXPECT_FALSE(isShown("snapshotError")) << "not beside snapshots";
    EXPECT_EQ(text("snapshotTitle"), "2024-01-15 · 12:34");

    gate.holdAfter(0);
    state().startScan(home.url());
    EXPECT_FALSE(isEnabled("refreshSnapshotsButton"));
    EXPECT_TRUE(isEnabled("deleteSnapshotButton"));
    gate.open();
    ASSERT_TRUE(WindowDriver::waitFor([&] { return !state().isScanning(); }));

    clickOn("deleteSnapshotButton");
    ASSERT_TRUE(state().confirmSnapshot().isPresent());
    EXPECT_EQ(state().confirmSnapshot()->dateToken, "2024-01-15-123456");
    EXPECT_EQ(state().snapshots().size(), 1);
    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(state().confirmSnapshot().isPresent());
    EXPECT_EQ(contents(tools.at("deleted")), "");
}

TEST_F(InspectorTest, Geometry)
{
    home.file("Movies/beach.mov", 6 * mib);
    home.file("111.dmg", 2 * mib);
    useSnapshotTool("echo 2024-01-15-123456; echo 2024-01-16-123456");
    startWithMap();
    const QRectF column = box("inspectorColumn");
    EXPECT_EQ(box("SELECTION").topLeft(), column.topLeft() + QPointF(18, 18));
    EXPECT_EQ(below("SELECTION", "Nothing selected"), 14 + 8);
    const double panelBottom = box("inspectPanel").bottom();

    // A hog among the large files, by its row.
    clickRow(1);
    EXPECT_EQ(box("selectionTitle").topLeft(), box("SELECTION").bottomLeft() + QPointF(0, 14));
    EXPECT_EQ(box("inspectedSize").right(), column.right() - 18);
    EXPECT_EQ(box("hogSwatch").size(), QSizeF(12, 12));
    EXPECT_EQ(below("selectionSubtitle", "hogSummary"), 14);
    EXPECT_EQ(box("inspectedRisk").left(), box("Installer").right() + 8);
    EXPECT_EQ(below("hogSummary", "pathBlock"), 14);
    const QRectF well = box("pathWell");
    EXPECT_EQ(below("PATH", "pathWell"), 6);
    EXPECT_EQ(box("pathText"), well.adjusted(10, 10, -10, -10));
    EXPECT_EQ(box("revealButton").topLeft(), QPointF(column.left() + 18, well.bottom() + 14));
    EXPECT_EQ(box("inspectorTrashButton").left(), box("revealButton").right() + 8);
    EXPECT_EQ(box("inspectPanel").bottom(), panelBottom);

    // The picker and the list.
    const QRectF picker = box("inspectorPicker");
    EXPECT_EQ(picker.topLeft(), box("inspectorDivider").bottomLeft() + QPointF(16, 12));
    EXPECT_EQ(picker.right(), column.right() - 16);
    EXPECT_GE(box("LARGEST FILES").top(), picker.bottom() + 12 + 4);
    EXPECT_EQ(box("largeFilesList").bottom(), column.bottom() - 12);
    const QRectF row = box("largeFile0");
    EXPECT_EQ(row, QRectF(column.left() + 16, row.top(), column.width() - 2 * 16, 60));
    const Rendered first = shown().within("largeFile0");
    EXPECT_EQ(first.box("colorBar"), QRectF(row.left() + 10, row.top() + 12, 4, 36));
    EXPECT_EQ(first.box("fileName").left(), row.left() + 10 + 4 + 12);
    EXPECT_EQ(first.below("fileName", "folderName"), 3);
    EXPECT_EQ(first.box("fileSize").right(), row.right() - 10);
    const auto inRow = [this](const char* rowName, const char* item, const char* property) {
        return driver->find(rowName)->findChild<QQuickItem*>(item)->property(property);
    };
    driver->hover(QPoint(1, 1));
    EXPECT_EQ(inRow("largeFile0", "colorBar", "color").value<QColor>(),
              NodeColor::color(HogKind::none, "beach.mov"));
    EXPECT_EQ(inRow("largeFile0", "rowBackground", "color").value<QColor>(),
              Theme::faded(Theme::elevated(), 0.55));
    EXPECT_EQ(inRow("largeFile1", "rowBackground", "color").value<QColor>(), Theme::accentSoft());

    clickOn("segmentSnapshots");
    EXPECT_EQ(below("snapshot0", "snapshot1"), 2 * 2);
    EXPECT_EQ(box("snapshotSymbol").left(), box("snapshot0").left() + 10);
    EXPECT_EQ(colorOf("snapshotSymbol"), Theme::danger());
}

} // namespace brisalon::tests
