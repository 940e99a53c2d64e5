#include "Rendered.h"
#include "WindowFixture.h"
#include "support/Script.h"

#include "Brisalon/Map/NodeColor.h"
#include "Brisalon/Theme/Theme.h"

#include <QClipboard>
#include <QGuiApplication>

namespace brisalon::tests {

/// The right-hand column.
class InspectorTest : public WindowFixture {
protected:
    void scanHome()
    {
        start();
        app->state().startScan(home.url());
        ASSERT_TRUE(mapAppears());
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        driver->settle();
        driver->click(driver->centre(QStringLiteral("largeFile%1").arg(row)), modifiers);
    }
    void clickOn(const char* objectName)
    {
        driver->settle();
        driver->click(driver->centre(objectName));
    }
    bool isShown(const char* objectName) const { return driver->find(objectName) != nullptr; }
    bool isEnabled(const char* objectName) const
    {
        return driver->property(objectName, "enabled").toBool();
    }
    QString focused() const
    {
        const QQuickItem* const item = window->activeFocusItem();
        return item ? item->objectName() : QString();
    }
    /// Presses a key until the item has the keyboard; false if it never does.
    bool reaches(const QString& objectName, int key = Qt::Key_Tab)
    {
        for (int presses = 0; presses < 30 && focused() != objectName; ++presses)
            driver->press(key);
        return focused() == objectName;
    }
    /// The program lists what this script prints.
    void useSnapshotTool(std::string_view body)
    {
        snapshots = SnapshotService(script(tools, "tool", body));
    }
    Rendered shown() const { return Rendered(*window); }
    QRectF box(const char* name)
    {
        driver->settle();
        return shown().box(name);
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
    scanHome();
    EXPECT_TRUE(isShown("emptySelection"));
    for (const char* const button : {"revealButton", "zoomInButton", "inspectorTrashButton"})
        EXPECT_FALSE(isShown(button)) << button;

    driver->click(block("Projects"));
    EXPECT_EQ(text("selectionTitle"), "Projects");
    EXPECT_EQ(text("selectionSubtitle"), "Folder");
    EXPECT_EQ(text("inspectedSize"), app->state().selection().sizeText());
    EXPECT_EQ(text("pathText").toStdString(), home.at("Projects"));
    EXPECT_FALSE(isShown("emptySelection"));
    EXPECT_FALSE(isShown("hogSummary"));
    EXPECT_FALSE(isShown("factContents"));
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Projects"))});

    clickOn("zoomInButton");
    EXPECT_EQ(levelName(), "Projects");
    EXPECT_LT(driver->find("treemapView")->opacity(), 1) << "as animated as on the map";
    ASSERT_TRUE(driver->waitForMap());

    driver->click(block("node_modules"));
    EXPECT_TRUE(isShown("hogSummary"));
    EXPECT_EQ(driver->property("inspectedRisk", "title"), app->state().selected().riskTitle());
    EXPECT_EQ(colorOf("hogSwatch"), NodeColor::color(HogKind::nodeModules, {}));

    clickOn("zoomInButton");
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block(app->state().current()->children().back().name()));
    EXPECT_EQ(text("selectionSubtitle"), "Small files");
    EXPECT_EQ(driver->property("factContents", "label"), "Contents");
    EXPECT_EQ(driver->property("factContents", "value"), "1 small files");
    EXPECT_FALSE(isShown("revealButton"));
    EXPECT_FALSE(isShown("zoomInButton"));

    clickOn("crumb1");
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block("readme.mov"));
    EXPECT_EQ(text("selectionSubtitle"), "File");
    EXPECT_TRUE(isShown("revealButton"));
    EXPECT_FALSE(isShown("zoomInButton"));
    clickOn("inspectorTrashButton");
    EXPECT_TRUE(app->state().confirmTrash());
}

TEST_F(InspectorTest, LargeFilesAreTickedByClicks)
{
    home.file("Movies/beach.mov", 6 * mib);
    home.file("Music/album.flac", 4 * mib);
    home.file("notes.dmg", 2 * mib);
    start();
    EXPECT_EQ(text("noLargeFiles"), "Run a scan to list the biggest files here.");
    app->state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    EXPECT_FALSE(isShown("noLargeFiles"));
    EXPECT_FALSE(isShown("tickedSize"));

    clickRow(0);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(text("selectionTitle"), "beach.mov");
    EXPECT_EQ(text("selectionSubtitle"), "File");
    EXPECT_EQ(text("pathText").toStdString(), home.at("Movies/beach.mov"));
    EXPECT_EQ(text("tickedSize"), "6.0 MB");
    EXPECT_FALSE(isShown("hogSummary"));
    EXPECT_FALSE(isShown("zoomInButton"));
    clickOn("revealButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL(home.at("Movies/beach.mov"))});

    clickRow(2, Qt::ShiftModifier);
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(text("selectionTitle"), "2 large files");
    EXPECT_EQ(text("selectionSubtitle"), "Multi-select from Largest tab");
    EXPECT_EQ(text("inspectedSize"), "8.0 MB");
    EXPECT_EQ(text("tickedSize"), "8.0 MB");
    EXPECT_FALSE(isShown("pathBlock"));
    EXPECT_FALSE(isShown("revealButton"));
    EXPECT_TRUE(isShown("inspectorTrashButton"));

    clickRow(2);
    EXPECT_EQ(app->state().selectedLargeFileIDs(), std::set{home.at("notes.dmg")});
    EXPECT_EQ(levelName(), app->state().tree().name());
    EXPECT_TRUE(isShown("hogSummary")) << "an installer";

    clickOn("segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel"));
    EXPECT_FALSE(isShown("largeFilesSidebar"));
    EXPECT_EQ(text("selectionTitle"), "notes.dmg") << "the tab does not change the selection";
    clickOn("segmentLargest");

    gate.holdAfter(0);
    app->state().startScan(home.url());
    EXPECT_FALSE(isEnabled("inspectorTrashButton"));
    EXPECT_TRUE(isEnabled("revealButton"));
    gate.open();
    ASSERT_TRUE(mapAppears());

    driver->click(block("Music"));
    EXPECT_FALSE(app->state().selection().isOfFiles());
    EXPECT_FALSE(isShown("tickedSize"));
    EXPECT_EQ(text("selectionTitle"), "Music");
}

TEST_F(InspectorTest, TheKeyboardReachesAndWorksEverything)
{
    for (int i = 0; i < 20; ++i)
        home.file("file " + std::to_string(i) + ".bin", (30 - i) * mib / 4);
    useSnapshotTool("echo 2024-01-15-123456");
    scanHome();

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
    EXPECT_EQ(app->state().selected().name(), "file 19.bin");
    driver->press(Qt::Key_Delete);
    EXPECT_TRUE(app->state().confirmTrash());
    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(app->state().confirmTrash());

    ASSERT_TRUE(reaches("segmentLargest", Qt::Key_Backtab)) << "out of the list again";
    driver->press(Qt::Key_Right);
    EXPECT_EQ(focused(), "segmentSnapshots");
    EXPECT_TRUE(isShown("snapshotPanel"));
    ASSERT_TRUE(reaches("refreshSnapshotsButton"));
    ASSERT_TRUE(reaches("deleteSnapshotButton"));
    driver->press(Qt::Key_Return);
    EXPECT_TRUE(app->state().confirmSnapshot().isPresent());
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
    scanHome();
    window->resize(960, 700);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return box("inspectorColumn").right() == 960; }));
    clickRow(0, Qt::ControlModifier);
    const QString name = "<b>bold\nsecond\nthird caf\ufffd";
    EXPECT_EQ(text("selectionTitle"), name);
    EXPECT_LE(driver->property("selectionTitle", "lineCount").toInt(), 2);
    EXPECT_GT(driver->property("pathText", "lineCount").toInt(), 30);
    EXPECT_LT(box("pathWell").height(), 100);
    EXPECT_GT(box("largeFilesList").height(), 150) << "room for some rows";
    EXPECT_EQ(box("largeFile0").height(), 60);
    EXPECT_EQ(box("largeFile1").height(), 60) << "one line for each name";
    for (const char* const item : {"inspectedSize", "inspectorTrashButton", "pathWell"})
        EXPECT_TRUE(box("inspectPanel").contains(box(item))) << item;
}

TEST_F(InspectorTest, SnapshotsAreListedAndOnlyAskedAbout)
{
    home.file("a.bin", mib);
    useSnapshotTool("[ \"$1\" = listlocalsnapshots ] || echo deleted > " + tools.at("deleted") +
                    "\n[ -e " + tools.at("one") + " ] && echo 2024-01-15-123456\n[ -e " +
                    tools.at("fails") + " ] && echo no rights >&2 && exit 1\nexit 0");
    scanHome();
    clickOn("segmentSnapshots");
    EXPECT_TRUE(isShown("noSnapshots"));
    EXPECT_FALSE(isShown("snapshotError"));
    EXPECT_FALSE(isShown("snapshotList"));

    tools.file("fails", 1);
    clickOn("refreshSnapshotsButton");
    EXPECT_EQ(text("snapshotError").trimmed(), "no rights");
    EXPECT_FALSE(isShown("noSnapshots"));

    tools.file("one", 1);
    clickOn("refreshSnapshotsButton");
    EXPECT_FALSE(isShown("snapshotError")) << "not beside snapshots";
    EXPECT_EQ(text("snapshotTitle"), "2024-01-15 · 12:34");

    gate.holdAfter(0);
    app->state().startScan(home.url());
    EXPECT_FALSE(isEnabled("refreshSnapshotsButton"));
    EXPECT_TRUE(isEnabled("deleteSnapshotButton"));
    gate.open();
    ASSERT_TRUE(WindowDriver::waitFor([&] { return !app->state().isScanning(); }));

    clickOn("deleteSnapshotButton");
    ASSERT_TRUE(app->state().confirmSnapshot().isPresent());
    EXPECT_EQ(app->state().confirmSnapshot()->dateToken, "2024-01-15-123456");
    EXPECT_EQ(app->state().snapshots().size(), 1);
    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(app->state().confirmSnapshot().isPresent());
    EXPECT_EQ(contents(tools.at("deleted")), "");
}

TEST_F(InspectorTest, Geometry)
{
    home.file("Movies/beach.mov", 6 * mib);
    home.file("111.dmg", 2 * mib);
    useSnapshotTool("echo 2024-01-15-123456; echo 2024-01-16-123456");
    scanHome();
    const QRectF column = box("inspectorColumn");
    EXPECT_EQ(colorOf("inspectorColumn"), Theme::panel());
    EXPECT_EQ(box("inspectorEdge"), QRectF(column.left(), column.top(), 1, column.height()));
    EXPECT_EQ(colorOf("inspectorEdge"), Theme::stroke());

    // Nothing selected.
    QFont label = Theme::rounded(10, QFont::DemiBold);
    label.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    shown().expectText("SELECTION", label, Theme::muted());
    EXPECT_EQ(shown().textBox("SELECTION").topLeft(), column.topLeft() + QPointF(18, 18));
    shown().expectText("Nothing selected", Theme::rounded(13, QFont::DemiBold),
                       Theme::textSecondary());
    EXPECT_EQ(shown().textBox("Nothing selected").top(),
              shown().textBox("SELECTION").bottom() + 14 + 8);
    const char* const advice =
        "Click a block on the map to inspect it. Double-click a folder to drill down.";
    shown().expectText(advice, Theme::system(12), Theme::muted());
    EXPECT_EQ(box("inspectPanel").bottom(), shown().textBox(advice).bottom() + 8 + 18);

    // A hog among the large files, by its row.
    clickRow(1);
    const QRectF title = box("selectionTitle");
    EXPECT_EQ(title.topLeft(),
              QPointF(column.left() + 18, shown().textBox("SELECTION").bottom() + 14));
    EXPECT_EQ(box("inspectedSize").right(), column.right() - 18);
    EXPECT_EQ(box("hogSwatch").size(), QSizeF(12, 12));
    EXPECT_EQ(driver->property("hogSwatch", "radius"), 4);
    EXPECT_EQ(box("hogSummary").top(), box("selectionSubtitle").bottom() + 14);
    EXPECT_EQ(shown().textBox("Installer").left(), box("hogSwatch").right() + 8);
    EXPECT_EQ(box("inspectedRisk").left(), shown().textBox("Installer").right() + 8);
    shown().expectText("Installer", Theme::rounded(12, QFont::Medium), Theme::textSecondary());
    shown().expectText(app->state().selected().riskSummary(), Theme::system(10), Theme::muted());
    EXPECT_EQ(box("pathBlock").top(), box("hogSummary").bottom() + 14);
    const QRectF well = box("pathWell");
    EXPECT_EQ(well.top(), shown().textBox("PATH").bottom() + 6);
    EXPECT_EQ(box("pathText"), well.adjusted(10, 10, -10, -10));
    EXPECT_EQ(colorOf("pathWell"), Theme::well());
    EXPECT_EQ(driver->property("pathWell", "radius"), 8);
    EXPECT_EQ(box("revealButton").topLeft(), QPointF(column.left() + 18, well.bottom() + 14));
    EXPECT_EQ(box("inspectorTrashButton").left(), box("revealButton").right() + 8);
    EXPECT_EQ(box("inspectPanel").bottom(), box("revealButton").bottom() + 18);

    struct Font {
        const char* item;
        QFont font;
        QColor color;
    };
    const Font fonts[] = {
        {"selectionTitle", Theme::rounded(15, QFont::Bold), Theme::text()},
        {"selectionSubtitle", Theme::rounded(10, QFont::Medium), Theme::muted()},
        {"inspectedSize", Theme::rounded(17, QFont::Bold), Theme::accent()},
        {"pathText", Theme::monospaced(10), Theme::textSecondary()},
        {"tickedSize", Theme::rounded(10, QFont::Bold), Theme::accent()},
        {"fileName", Theme::rounded(12, QFont::Medium), Theme::text()},
        {"folderName", Theme::system(10), Theme::muted()},
        {"fileSize", Theme::rounded(10, QFont::DemiBold), Theme::textSecondary()},
    };
    for (const Font& expected : fonts) {
        const auto font = driver->property(expected.item, "font").value<QFont>();
        EXPECT_EQ(font.families(), expected.font.families()) << expected.item;
        EXPECT_EQ(font.pixelSize(), expected.font.pixelSize()) << expected.item;
        EXPECT_EQ(font.weight(), expected.font.weight()) << expected.item;
        EXPECT_EQ(colorOf(expected.item).rgba(), expected.color.rgba()) << expected.item;
    }

    // The picker and the list.
    const QRectF line = box("inspectorDivider");
    EXPECT_EQ(line.top(), box("inspectPanel").bottom());
    const QRectF picker = box("inspectorPicker");
    EXPECT_EQ(picker.topLeft(), line.bottomLeft() + QPointF(16, 12));
    EXPECT_EQ(picker.right(), column.right() - 16);
    const QRectF heading = shown().textBox("LARGEST FILES");
    EXPECT_GE(heading.top(), picker.bottom() + 12 + 4);
    EXPECT_EQ(heading.left(), column.left() + 16);
    EXPECT_EQ(box("largeFilesList").bottom(), column.bottom() - 12);
    const QRectF row = box("largeFile0");
    EXPECT_EQ(row.height(), 36 + 2 * 4 + 2 * 8);
    EXPECT_EQ(row.left(), column.left() + 16);
    const QQuickItem* const first = driver->find("largeFile0");
    const auto inRow = [&](const char* name) {
        const auto* const item = first->findChild<QQuickItem*>(name);
        return item ? item->mapRectToScene(QRectF(QPointF(), item->size())) : QRectF();
    };
    EXPECT_EQ(inRow("colorBar"), QRectF(row.left() + 10, row.top() + 12, 4, 36));
    EXPECT_EQ(inRow("fileName").left(), row.left() + 10 + 4 + 12);
    EXPECT_EQ(inRow("folderName").top(), inRow("fileName").bottom() + 3);
    EXPECT_EQ(inRow("fileSize").right(), row.right() - 10);
    EXPECT_EQ(first->findChild<QQuickItem*>("colorBar")->property("color").value<QColor>(),
              NodeColor::color(HogKind::none, "beach.mov"));
    const auto background = [](const QQuickItem* item, const char* property) {
        return item->findChild<QQuickItem*>("rowBackground")->property(property);
    };
    EXPECT_EQ(background(first, "color").value<QColor>(), Theme::faded(Theme::elevated(), 0.55));
    EXPECT_EQ(background(first, "borderColor").value<QColor>(), Theme::stroke());
    driver->hover(QPoint(1, 1));
    const QQuickItem* const ticked = driver->find("largeFile1");
    EXPECT_EQ(background(ticked, "color").value<QColor>(), Theme::accentSoft());
    EXPECT_EQ(background(ticked, "borderColor").value<QColor>(),
              Theme::faded(Theme::accent(), 0.35));
    EXPECT_EQ(background(ticked, "radius"), 8);

    // The snapshots.
    clickOn("segmentSnapshots");
    const QRectF snapshot = box("snapshot0");
    EXPECT_EQ(box("snapshot1").top(), snapshot.bottom() + 2 * 2);
    EXPECT_EQ(box("snapshotSymbol").left(), snapshot.left() + 10);
    shown().expectText("2024-01-15 · 12:34", Theme::rounded(12, QFont::Medium), Theme::text());
    shown().expectText("Local snapshot · may appear as System Data", Theme::system(10),
                       Theme::muted());
    shown().expectText("TIME MACHINE", label, Theme::muted());
    EXPECT_EQ(driver->property("snapshotSymbol", "size"), 14);
    EXPECT_EQ(colorOf("snapshotSymbol"), Theme::danger());
    EXPECT_EQ(driver->property("deleteSnapshotButton", "tint").value<QColor>(), Theme::danger());
}

TEST_F(InspectorTest, NumbersOfEquallyManyDigitsAreEquallyWide)
{
    home.file("a.bin", mib);
    home.file("b.bin", 8 * mib);
    scanHome();
    clickRow(0);
    const double wide = box("inspectedSize").width();
    clickRow(1);
    EXPECT_EQ(text("inspectedSize"), "1.0 MB");
    EXPECT_EQ(box("inspectedSize").width(), wide);
}

} // namespace brisalon::tests
