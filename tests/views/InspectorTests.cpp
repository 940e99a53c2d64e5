#include "WindowFixture.h"
#include "support/Script.h"

#include "Brisalon/Map/NodeColor.h"
#include "Brisalon/Theme/Theme.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

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
        return property(objectName, "enabled").toBool();
    }
    /// What the inspector shows of the selection: title, subtitle and size; which of its
    /// parts; what can be done.
    std::string inspected() const
    {
        QString shown = text("selectionTitle") + ", " + text("selectionSubtitle") + ", " +
                        text("inspectedSize") + " |";
        for (const char* const part : {"emptySelection", "hogSummary", "factContents", "pathBlock",
                                       "revealButton", "zoomInButton", "inspectorTrashButton"})
            shown += isShown(part) ? ' ' + QString(part).remove("Button") : QString();
        return shown.toStdString();
    }
    /// The program lists what this script prints.
    void useSnapshotTool(std::string_view body)
    {
        snapshots = SnapshotService(script(tools, "tool", body));
    }
};

TEST_F(InspectorTest, DescribesWhatWasClickedOnTheMap)
{
    home.file("Projects/node_modules/tiny", 200 * 1024);
    startWithMap({{"Projects/node_modules/dependency.js", 4}, {"Projects/readme.mov", 3}});
    EXPECT_EQ(inspected(), ", ,  | emptySelection");

    clickBlock("Projects");
    EXPECT_EQ(inspected(), "Projects, Folder, 7.2 MB | pathBlock reveal zoomIn inspectorTrash");
    EXPECT_EQ(text("pathText").toStdString(), home.at("Projects"));
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Projects"))});
    const QPointer<QQuickItem> before = driver->find("treemapView");
    const QSizeF size = before->size();
    clickOn("zoomInButton");
    EXPECT_EQ(levelName(), "Projects");
    EXPECT_LT(driver->find("treemapView")->opacity(), 1) << "as animated as on the map";
    const auto maps = driver->find("mapPanel")->findChildren<QQuickItem*>("treemapView");
    EXPECT_EQ(std::ranges::count_if(maps, &QQuickItem::isEnabled), 1) << "the new one alone";
    ASSERT_TRUE(driver->settle());
    EXPECT_LT(driver->find("treemapView")->height(), size.height()) << "over a legend";
    EXPECT_TRUE(!before || before->size() == size) << "the old one has no picture of another size";

    clickBlock("node_modules");
    EXPECT_EQ(inspected(), "node_modules, Folder, 4.2 MB | hogSummary pathBlock reveal zoomIn "
                           "inspectorTrash");
    EXPECT_EQ(property("inspectedRisk", "title"), "Review");
    EXPECT_TRUE(isShown(state().selected().riskSummary()));
    EXPECT_EQ(color("hogSwatch"), NodeColor::color(HogKind::nodeModules, {}));

    clickOn("zoomInButton");
    clickBlock(state().current()->children().back().name());
    EXPECT_EQ(inspected(),
              "1 small files, Small files, 200 KB | factContents pathBlock inspectorTrash");
    EXPECT_EQ(property("factContents", "label"), "Contents");
    EXPECT_EQ(property("factContents", "value"), "1 small files");

    clickOn("crumb1");
    clickBlock("readme.mov");
    EXPECT_EQ(inspected(), "readme.mov, File, 3.0 MB | pathBlock reveal inspectorTrash");
    clickOn("inspectorTrashButton");
    EXPECT_TRUE(state().confirmTrash());
}

TEST_F(InspectorTest, LargeFilesAreTickedByClicks)
{
    start();
    EXPECT_TRUE(isShown("noLargeFiles"));
    startWithMap({{"Movies/beach.mov", 6}, {"Music/album.flac", 4}, {"notes.dmg", 2}});
    EXPECT_FALSE(isShown("noLargeFiles") || isShown("tickedSize"));

    clickRow(0);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(inspected(), "beach.mov, File, 6.0 MB | pathBlock reveal inspectorTrash");
    EXPECT_EQ(text("pathText").toStdString(), home.at("Movies/beach.mov"));
    const double wide = box("inspectedSize").width();
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Movies/beach.mov"))});

    clickRow(2, Qt::ShiftModifier);
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(inspected(), "2 large files, Multi-select from Largest tab, 8.0 MB | inspectorTrash");
    EXPECT_EQ(text("tickedSize"), "8.0 MB");
    EXPECT_EQ(box("inspectedSize").width(), wide) << "digits are equally wide";

    clickRow(2);
    EXPECT_EQ(levelName(), state().tree().name());
    EXPECT_EQ(inspected(), "notes.dmg, File, 2.0 MB | hogSummary pathBlock reveal inspectorTrash");
    clickOn("segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel") && !isShown("largeFilesSidebar"));
    EXPECT_EQ(text("selectionTitle"), "notes.dmg") << "the tab does not change the selection";
    clickOn("segmentLargest");

    beginScan();
    EXPECT_FALSE(isEnabled("inspectorTrashButton"));
    EXPECT_TRUE(isEnabled("revealButton"));
    endScan();
    clickBlock("Music");
    EXPECT_EQ(text("selectionTitle"), "Music");
    EXPECT_FALSE(isShown("tickedSize"));
}

TEST_F(InspectorTest, TheKeyboardReachesAndWorksEverything)
{
    std::vector<File> files;
    for (int i = 0; i < 20; ++i)
        files.push_back({"file " + std::to_string(i) + ".bin", 20 - i});
    useSnapshotTool("echo 2024-01-15-123456");
    startWithMap(files);

    ASSERT_TRUE(reaches("largeFile0"));
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "largeFile19");
    EXPECT_TRUE(waitFor([&] {
        return isShown("largeFile19") && box("largeFilesList").contains(box("largeFile19"));
    })) << "scrolled into sight";
    press(Qt::Key_Return);
    EXPECT_EQ(state().selected().name(), "file 19.bin");

    ASSERT_TRUE(reaches("segmentLargest", Qt::Key_Backtab)) << "out of the list again";
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel"));
    ASSERT_TRUE(reaches("refreshSnapshotsButton"));
    ASSERT_TRUE(reaches("pathText"));
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), home.at("file 19.bin"));
}

TEST_F(InspectorTest, HostileNamesAndEndlessPathsKeepTheirPlacesAndAreNeverMarkup)
{
    std::string deep = "<b>bold<br>\nsecond line/";
    for (int level = 0; level < 30; ++level)
        deep += std::string(100, static_cast<char>('a' + level % 26)) + "/";
    startWithMap({{deep + "<b>bold\nsecond\nthird caf\xe9", 3},
                  {"caf\xe9/one\ntwo", 2},
                  {deep + "another", 1}});
    enterBlock("caf\xe9");
    EXPECT_EQ(text("crumb1"), QString("caf\ufffd"));
    clickOn("crumb0");
    enterBlock("<b>bold<br>\nsecond line");
    EXPECT_EQ(text("crumb1"), "<b>bold<br> second line");
    EXPECT_LT(box("crumb1").height(), 30) << "one line";

    resize(960, 700);
    clickRow(0, Qt::ControlModifier);
    EXPECT_EQ(text("selectionTitle"), QString("<b>bold second third caf\ufffd"));
    EXPECT_LE(property("selectionTitle", "lineCount").toInt(), 2);
    EXPECT_GT(property("pathText", "lineCount").toInt(), 30);
    EXPECT_LT(box("pathWell").height(), 100);
    EXPECT_GT(box("largeFilesList").height(), 150) << "room for some rows";
    EXPECT_EQ(box("largeFile0").height(), 60);
    EXPECT_EQ(box("largeFile1").height(), 60) << "one line for each name";
    for (const char* const item : {"inspectedSize", "inspectorTrashButton", "pathWell"})
        EXPECT_TRUE(box("inspectPanel").contains(box(item))) << item;

    // Scrolled to its end, and at the start again with another path.
    ASSERT_TRUE(reaches("pathText"));
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_LT(box("pathText").top(), box("pathWell").top());
    clickRow(2);
    EXPECT_EQ(box("pathText").top(), box("pathWell").top() + 10);
}

TEST_F(InspectorTest, TheListStandsStillUnderThePointer)
{
    std::vector<File> files{
        {"Caches/node_modules/" + std::string(90, 'x') + "-" + std::string(90, 'y'), 9},
        {"שלום.mov", 8}};
    for (int i = 0; i < 20; ++i)
        files.push_back({"file " + std::to_string(i) + ".bin", 7 - i / 4});
    startWithMap(files);
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
    clickBlock("file 0.bin");
    EXPECT_EQ(box("largeFile0"), first);
    clickRow(1);
    EXPECT_EQ(text("selectionTitle"), "שלום.mov");
    EXPECT_EQ(property("selectionTitle", "effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);

    // The keys show where they are, but not every key that is held.
    press(Qt::Key_Shift);
    EXPECT_EQ(property("largeFilesList", "showsFocus"), false);
    press(Qt::Key_Down);
    EXPECT_EQ(property("largeFilesList", "showsFocus"), true);

    // The scroll bar lies beside the band that resizes the window.
    drag(QPoint(window->width() - 7, static_cast<int>(list.top()) + 10), QPoint(0, 80));
    EXPECT_GT(property("largeFilesList", "contentY").toDouble(), 100);
}

TEST_F(InspectorTest, SnapshotsAreListedAndOnlyAskedAbout)
{
    useSnapshotTool("cd " + tools.path() +
                    "\n[ -e one ] && echo 2024-01-15-123456\n"
                    "[ -e fails ] && echo no rights >&2 && exit 1\nexit 0");
    startWithMap({{"a.bin", 1}});
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

    beginScan();
    EXPECT_FALSE(isEnabled("refreshSnapshotsButton"));
    EXPECT_TRUE(isEnabled("deleteSnapshotButton"));
    endScan();

    clickOn("deleteSnapshotButton");
    EXPECT_EQ(state().confirmSnapshot()->dateToken, "2024-01-15-123456");
    press(Qt::Key_Escape);
    EXPECT_FALSE(state().confirmSnapshot().isPresent());
}

TEST_F(InspectorTest, WhereItsPartsAre)
{
    startWithMap({{"Movies/beach.mov", 6}, {"111.dmg", 2}});
    const QRectF column = box("inspectorColumn");
    clickRow(1); // a hog
    const char* const parts[] = {"selectionSubtitle", "hogSummary", "pathBlock", "revealButton"};
    for (std::size_t i = 1; i < std::size(parts); ++i)
        EXPECT_EQ(below(parts[i - 1], parts[i]), 14) << parts[i];
    EXPECT_EQ(box("largeFilesList").bottom(), column.bottom() - 12);
    const QRectF row = box("largeFile0");
    EXPECT_EQ(row, QRectF(column.left() + 16, row.top(), column.width() - 2 * 16, 60));
    EXPECT_EQ(box("colorBar", "largeFile0"), QRectF(row.left() + 10, row.top() + 12, 4, 36));
    EXPECT_EQ(box("itemName", "largeFile0").left(), row.left() + 10 + 4 + 12);
    EXPECT_EQ(box("fileSize", "largeFile0").right(), row.right() - 10);
    EXPECT_EQ(driver->find("colorBar", "largeFile0")->property("color").value<QColor>(),
              NodeColor::color(HogKind::none, "beach.mov"));
    driver->hover(QPoint(1, 1));
    const std::pair<const char*, QColor> backgrounds[] = {
        {"largeFile0", Theme::faded(Theme::elevated(), 0.55)}, {"largeFile1", Theme::accentSoft()}};
    for (const auto& [name, expected] : backgrounds)
        EXPECT_EQ(driver->find("rowBackground", name)->property("color"), expected) << name;
}

} // namespace brisalon::tests
