#include "MapFixture.h"

#include "Brisalon/Platform/Workers.h"
#include "Brisalon/Theme/Theme.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <cmath>
#include <latch>

namespace brisalon::tests {

namespace {

/// Four large blocks of different colours, without labels in their middles.
FileNodeHold fourBlocks(const std::string& path = "/home/a")
{
    return folder({{"movies", 400}, {"node_modules", 300}, {"disk.iso", 200}, {"docker.raw", 100}},
                  path);
}

} // namespace

class TreemapCanvasTest : public MapTest {};

TEST_F(TreemapCanvasTest, AHoverDimsAllButTheHoveredAndTheSelectedBlock)
{
    show(fourBlocks());
    canvas_->setSelectedID(id(1));
    expectLook("BBBB");
    movePointer(middle(0) - QPoint(40, 40));
    EXPECT_EQ(canvas_->hoverID(), id(0));
    expectLook("BBdd");
    movePointer(middle(3));
    EXPECT_EQ(canvas_->hoveredNode().id(), id(3));
    expectLook("dBdB");
    leaveWindow();
    EXPECT_TRUE(canvas_->hoverID().isEmpty());
    expectLook("BBBB");
}

TEST_F(TreemapCanvasTest, OutlinesFollowTheBlockAndTheSelectedOneWinsOverTheHover)
{
    show(fourBlocks());
    const QRectF cell = MapLevel(level_, canvas_->size()).cell(1);
    const double ratio = window_.effectiveDevicePixelRatio();
    // The device pixels just inside the edges of the shape, whose gap is two points.
    const auto after = [&](double edge) { return (std::round(edge * ratio) + 0.25) / ratio + 2; };
    const auto before = [&](double edge) { return (std::round(edge * ratio) - 0.75) / ratio - 2; };
    const QPointF left(after(cell.left()), cell.center().y());
    const QPointF edges[] = {left,
                             {before(cell.right()), cell.center().y()},
                             {cell.center().x(), after(cell.top())},
                             {cell.center().x(), before(cell.bottom())}};
    const QColor hovered = mix(pixel(left), Qt::white, 0.85 * std::min(0.75 * ratio, 1.0));
    const QColor selected = mix(Qt::white, Theme::accent(), std::min(0.5 * ratio, 1.0));

    movePointer(middle(1));
    expectPixel(left, hovered);
    canvas_->setSelectedID(id(1));
    for (const QPointF& edge : edges)
        expectPixel(edge, selected);
    movePointer(middle(0));
    expectPixel(left, selected);
    canvas_->setSelectedID("/no/such/block");
    movePointer(middle(1));
    expectPixel(left, hovered);
}

TEST_F(TreemapCanvasTest, AClickSelectsAndADoubleClickSelectsBeforeItZooms)
{
    show(fourBlocks());
    click(middle(2));
    EXPECT_EQ(requests(), "select disk.iso");
    QTest::mouseDClick(&window_, Qt::LeftButton, {}, middle(0));
    EXPECT_EQ(requests(), "select movies, zoom movies");
    // The gap between two blocks belongs to their cells.
    const QRectF cell = MapLevel(level_, canvas_->size()).cell(1);
    click(QPoint(static_cast<int>(std::ceil(cell.left())), middle(1).y()));
    EXPECT_EQ(requests(), "select node_modules");

    // Not clicks: a drag to another block, another button.
    QTest::mousePress(&window_, Qt::LeftButton, {}, middle(0));
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, middle(1));
    click(middle(1), Qt::MiddleButton);
    EXPECT_EQ(requests(), "");
    click(middle(1), Qt::RightButton);
    EXPECT_EQ(requests(), "select node_modules, menu");

    // Two blocks may have one id: a file may have the name of the block of small files.
    show(folder({{"same", 600}, {"same", 400, NodeKind::smallFilesAggregate(7)}}));
    for (const std::size_t i : {0u, 1u})
        click(middle(i));
    EXPECT_EQ(requests(), "select same, select 7 small files");
}

TEST_F(TreemapCanvasTest, AnEmptyLevelShowsNothingAndDoesNothing)
{
    const QColor background = Theme::panel();
    show(fourBlocks());
    EXPECT_NE(pixel({500, 300}), background);
    for (const FileNodeHold& level : {folder({}), folder({{"nothing", 0}}), FileNodeHold()}) {
        show(level);
        expectPixel({500, 300}, background);
        movePointer({400, 300});
        movePointer({500, 300});
        EXPECT_TRUE(canvas_->hoverID().isEmpty());
        QTest::mouseDClick(&window_, Qt::LeftButton, {}, QPoint(500, 300));
        QTest::keyClick(&window_, Qt::Key_Right);
        EXPECT_EQ(requests(), "");
    }
    // What has no size takes no part, and puts no other block out of its place.
    show(folder({{"a", 500}, {"nothing", 0}, {"b", 500}}));
    movePointer({900, 300});
    EXPECT_EQ(canvas_->hoveredNode().name(), "b");
}

TEST_F(TreemapCanvasTest, AnotherLevelEndsTheHoverUntilThePointerMoves)
{
    show(fourBlocks());
    const QPoint point = middle(0);
    movePointer(point);
    EXPECT_EQ(canvas_->hoverID(), id(0));

    // A new scan of the same folder goes on under the pointer.
    QSignalSpy changes(canvas_, &TreemapCanvas::hoverChanged);
    show(folder({{"other", 500}, {"movies", 1}}));
    EXPECT_EQ(canvas_->hoveredNode().name(), "other");
    EXPECT_FALSE(changes.isEmpty());

    show(fourBlocks("/home/b"));
    EXPECT_TRUE(canvas_->hoverID().isEmpty());
    expectLook("BBBB");
    movePointer(point + QPoint(1, 0));
    EXPECT_EQ(canvas_->hoverID(), id(0));

    // A map on its way out keeps its look.
    view_->setEnabled(false);
    leaveWindow();
    EXPECT_EQ(canvas_->hoverID(), id(0));
    view_->setEnabled(true);
    movePointer(point);

    // A resize keeps it, and the selection, and lays out anew.
    canvas_->setSelectedID(id(3));
    window_.resize(700, 800);
    ASSERT_TRUE(QTest::qWaitFor([this] { return canvas_->width() == 700; }));
    ASSERT_TRUE(waitForPicture());
    const auto under = MapLevel(level_, canvas_->size()).blockAt(canvas_->hoverPoint());
    ASSERT_TRUE(under);
    EXPECT_EQ(canvas_->hoverID(), id(*under));
    std::string look = "dddB";
    look[*under] = 'B';
    expectLook(look);
}

TEST_F(TreemapCanvasTest, APictureThatIsNoLongerWantedIsNeverShown)
{
    show(folder({{"disk.iso", 1}}, "/first"));
    const QColor first = pixel(middle(0));
    // A level that takes long to paint, and at once another.
    const FileNodeHold slow = crowdedFolder(20'000);
    canvas_->setLevel(slow);
    QTest::qWait(1);
    canvas_->setLevel(level_ = folder({{"docker.raw", 1}}, "/third"));
    while (!canvas_->isUpToDate()) {
        EXPECT_EQ(pixel(middle(0)), first);
        QTest::qWait(5);
    }
    expectLook("B");
    EXPECT_NE(pixel(middle(0)), first);

    // Nor one of another size, which would be arranged otherwise.
    canvas_->setLevel(level_ = crowdedFolder(20'000));
    QTest::qWait(1);
    view_->setWidth(600);
    QSignalSpy looks(canvas_, &TreemapCanvas::appearanceChanged);
    EXPECT_TRUE(looks.wait());
    EXPECT_TRUE(canvas_->isUpToDate());
}

TEST_F(TreemapCanvasTest, WhileTheNextPictureIsPaintedTheLastStaysAndThePointerTells)
{
    show(fourBlocks());
    movePointer(middle(3));
    expectLook("dddB");
    std::latch others(1);
    QThreadPool& painters = workers();
    for (int i = painters.maxThreadCount(); i > 0; --i)
        painters.start([&] { others.wait(); });
    const auto shape = [&] { return canvas_->cursor().shape(); };
    canvas_->setLevel(fourBlocks());
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shape() == Qt::BusyCursor; }));
    expectLook("dddB");
    others.count_down();
    painters.waitForDone();
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(shape(), Qt::ArrowCursor);
    expectLook("dddB");
}

TEST_F(TreemapCanvasTest, TheKeyboardWalksBetweenNeighboursAndZooms)
{
    // a at the left, b above c at the right.
    show(folder({{"a", 400}, {"b", 300}, {"c", 300}}));
    canvas_->forceActiveFocus();
    const auto expectKeys = [&](const std::vector<std::pair<Qt::Key, std::string>>& rows) {
        for (const auto& [key, expected] : rows) {
            QTest::keyClick(&window_, key);
            const std::string request = requests();
            EXPECT_EQ(request, expected) << key;
            if (request.starts_with("select "))
                canvas_->setSelectedID(request == "select " ? QByteArray()
                                                            : id(block(request.substr(7))));
        }
    };
    // The largest block is where one starts; Escape ends the selection.
    expectKeys({{Qt::Key_Return, ""}, {Qt::Key_Down, "select a"}});
    EXPECT_TRUE(canvas_->isFocusVisible());
    expectKeys({{Qt::Key_Left, ""},
                {Qt::Key_Right, "select c"},
                {Qt::Key_Up, "select b"},
                {Qt::Key_Right, ""},
                {Qt::Key_Down, "select c"},
                {Qt::Key_Left, "select a"},
                {Qt::Key_Return, "zoom a"},
                {Qt::Key_End, "select c"},
                {Qt::Key_Home, "select a"},
                {Qt::Key_Escape, "select "}});

    // The keys go on from what the mouse selects, and the mouse needs no focus ring.
    click(middle(1));
    EXPECT_EQ(requests(), "select b");
    EXPECT_FALSE(canvas_->isFocusVisible());
    canvas_->setSelectedID(id(1));
    expectKeys({{Qt::Key_Down, "select c"}});
}

TEST_F(TreemapCanvasTest, TwentyThousandBlocksAreUsable)
{
    show(crowdedFolder(20'000));
    const MapLevel* const laidOut = &canvas_->laidOut();
    QSignalSpy repaints(canvas_, &TreemapCanvas::upToDateChanged);
    for (int step = 1; step < 40; ++step) {
        const QPoint point(step * 25 - 12, step * 15 - 7);
        movePointer(point);
        // The picture shown keeps its layout, so another one would lie elsewhere.
        ASSERT_EQ(&canvas_->laidOut(), laidOut) << "a move of the pointer lays nothing out";
        const auto under = laidOut->blockAt(point);
        ASSERT_TRUE(under);
        EXPECT_EQ(canvas_->hoverID(), id(*under));
    }
    EXPECT_EQ(repaints.count(), 0) << "nor paints it the blocks";
    expectLook("d");
    click(middle(19'000));
    EXPECT_EQ(requests(), "select " + node(19'000).name());
}

} // namespace brisalon::tests
