#include "MapFixture.h"

#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QSignalSpy>
#include <QTest>

using namespace brisalon;
using namespace brisalon::test;

namespace {

/// Four large blocks of different colours, without labels in their middles.
FileNodeHold fourBlocks(const std::string& path = "/home/a")
{
    return folder({{"movies", 400}, {"node_modules", 300}, {"disk.iso", 200}, {"docker.raw", 100}},
                  path);
}

/// Opacities halfway along the gradients.
constexpr double bright = (1.0 + 0.72) / 2;
constexpr double dimmed = (0.45 + 0.35) / 2;

QColor mix(const QColor& under, const QColor& over, double share)
{
    const auto channel = [&](int u, int o) {
        return static_cast<int>(std::lround(u + (o - u) * share));
    };
    return QColor(channel(under.red(), over.red()), channel(under.green(), over.green()),
                  channel(under.blue(), over.blue()));
}

} // namespace

class TreemapCanvasTest : public MapTest {};

TEST_F(TreemapCanvasTest, AHoverDimsAllButTheHoveredAndTheSelectedBlock)
{
    show(fourBlocks());
    canvas_->setSelectedID(id(1));
    for (std::size_t i = 0; i < 4; ++i)
        expectPixel(middle(i), shade(node(i), bright));

    movePointer(middle(0) - QPoint(40, 40));
    EXPECT_EQ(canvas_->hoverID(), id(0));
    expectPixel(middle(0), shade(node(0), bright));
    expectPixel(middle(1), shade(node(1), bright));
    expectPixel(middle(2), shade(node(2), dimmed));
    expectPixel(middle(3), shade(node(3), dimmed));

    movePointer(middle(3));
    EXPECT_EQ(canvas_->hoveredNode().id(), id(3));
    expectPixel(middle(0), shade(node(0), dimmed));
    expectPixel(middle(1), shade(node(1), bright));

    // The pointer leaves the window.
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window_, &leave);
    EXPECT_TRUE(canvas_->hoverID().isEmpty());
    for (std::size_t i = 0; i < 4; ++i)
        expectPixel(middle(i), shade(node(i), bright));
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
    const QColor plain = pixel(left);

    movePointer(middle(1));
    const double hoverShare = 0.85 * std::min(0.75 * ratio, 1.0);
    expectPixel(left, mix(plain, Qt::white, hoverShare));

    canvas_->setSelectedID(id(1));
    const double accentShare = std::min(0.5 * ratio, 1.0);
    for (const QPointF& edge : edges)
        expectPixel(edge, mix(Qt::white, Theme::accent(), accentShare));
    movePointer(middle(0));
    expectPixel(left, mix(Qt::white, Theme::accent(), accentShare));

    canvas_->setSelectedID("/no/such/block");
    movePointer(middle(1));
    expectPixel(left, mix(plain, Qt::white, hoverShare));
}

TEST_F(TreemapCanvasTest, AClickSelectsAndADoubleClickSelectsBeforeItZooms)
{
    show(fourBlocks());
    QTest::mouseClick(&window_, Qt::LeftButton, {}, middle(2));
    EXPECT_EQ(requests_, (std::vector<std::string>{"select disk.iso"}));

    requests_.clear();
    QTest::mouseDClick(&window_, Qt::LeftButton, {}, middle(0));
    EXPECT_EQ(requests_, (std::vector<std::string>{"select movies", "zoom movies"}));

    // The gap between two blocks belongs to their cells.
    requests_.clear();
    const QRectF cell = MapLevel(level_, canvas_->size()).cell(1);
    QTest::mouseClick(&window_, Qt::LeftButton, {},
                      QPoint(static_cast<int>(std::ceil(cell.left())), middle(1).y()));
    EXPECT_EQ(requests_, (std::vector<std::string>{"select node_modules"}));

    // Not clicks: a drag to another block, another button.
    requests_.clear();
    QTest::mousePress(&window_, Qt::LeftButton, {}, middle(0));
    QTest::mouseRelease(&window_, Qt::LeftButton, {}, middle(1));
    QTest::mouseClick(&window_, Qt::MiddleButton, {}, middle(1));
    EXPECT_TRUE(requests_.empty());
    QTest::mouseClick(&window_, Qt::RightButton, {}, middle(1));
    EXPECT_EQ(requests_, (std::vector<std::string>{"select node_modules", "menu"}));
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
        EXPECT_TRUE(requests_.empty());
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
    expectPixel(middle(2), shade(node(2), bright));
    movePointer(point + QPoint(1, 0));
    EXPECT_EQ(canvas_->hoverID(), id(0));

    // A map on its way out keeps its look.
    view_->setEnabled(false);
    pixel(point);
    EXPECT_EQ(canvas_->hoverID(), id(0));
    view_->setEnabled(true);
}

TEST_F(TreemapCanvasTest, AResizeKeepsHoverAndSelectionAndLaysOutAnew)
{
    show(fourBlocks());
    canvas_->setSelectedID(id(3));
    movePointer(middle(0));
    window_.resize(700, 800);
    ASSERT_TRUE(QTest::qWaitFor([this] { return canvas_->width() == 700; }));
    ASSERT_TRUE(waitForPicture());
    const auto under = MapLevel(level_, canvas_->size()).blockAt(canvas_->hoverPoint());
    ASSERT_TRUE(under);
    EXPECT_EQ(canvas_->hoverID(), id(*under));
    expectPixel(middle(3), shade(node(3), bright));
    expectPixel(middle(2), shade(node(2), *under == 2 ? bright : dimmed));
}

TEST_F(TreemapCanvasTest, APictureThatIsNoLongerWantedIsNeverShown)
{
    show(folder({{"disk.iso", 1}}, "/first"));
    const QColor first = shade(node(0), bright);
    // A level that takes long to paint, and at once another.
    const FileNodeHold slow = crowdedFolder(20'000);
    canvas_->setLevel(slow);
    QTest::qWait(1);
    canvas_->setLevel(level_ = folder({{"docker.raw", 1}}, "/third"));
    const QColor third = shade(node(0), bright);
    bool sawThird = false;
    for (int i = 0; i < 40; ++i) {
        const QColor now = pixel(middle(0));
        sawThird = sawThird || now == third;
        EXPECT_TRUE(now == third || (now == first && !sawThird)) << now.name().toStdString();
        QTest::qWait(5);
    }
    EXPECT_TRUE(sawThird);

    // Nor one of another size, which would be arranged otherwise.
    canvas_->setLevel(level_ = crowdedFolder(20'000));
    QTest::qWait(1);
    view_->setWidth(600);
    QSignalSpy looks(canvas_, &TreemapCanvas::appearanceChanged);
    EXPECT_TRUE(looks.wait());
    EXPECT_TRUE(canvas_->isUpToDate());
}

TEST_F(TreemapCanvasTest, TwoBlocksOfOneIdAreBothUsable)
{
    const FileURL url("/home/a/.small-files-aggregate");
    std::vector<FileNode> nodes{FileNodeBuilder::make(url, 600, NodeKind::file),
                                FileNodeBuilder::make(url, 400, NodeKind::smallFilesAggregate(7))};
    show(heldTree(
        FileNodeBuilder::make(FileURL("/home/a"), 1000, NodeKind::directory, std::move(nodes))));
    for (std::size_t i : {0u, 1u}) {
        movePointer(middle(i));
        EXPECT_EQ(canvas_->hoverID(), id(i));
        QTest::mouseClick(&window_, Qt::LeftButton, {}, middle(i));
        canvas_->setSelectedID(id(i));
        (void)window_.grabWindow();
    }
    EXPECT_EQ(requests_.size(), 2u);
}

TEST_F(TreemapCanvasTest, TheKeyboardWalksBetweenNeighboursAndZooms)
{
    // a at the left, b above c at the right.
    show(folder({{"a", 400}, {"b", 300}, {"c", 300}}));
    canvas_->forceActiveFocus();
    const auto press = [this](Qt::Key key) {
        requests_.clear();
        QTest::keyClick(&window_, key);
        if (!requests_.empty() && requests_[0].starts_with("select "))
            canvas_->setSelectedID(requests_[0] == "select " ? QByteArray()
                                                             : id(block(requests_[0].substr(7))));
        return requests_.empty() ? std::string() : requests_[0];
    };
    EXPECT_EQ(press(Qt::Key_Return), "");
    EXPECT_EQ(press(Qt::Key_Down), "select a") << "the largest block is where one starts";
    EXPECT_TRUE(canvas_->isFocusVisible());
    EXPECT_EQ(press(Qt::Key_Left), "");
    EXPECT_EQ(press(Qt::Key_Right), "select c");
    EXPECT_EQ(press(Qt::Key_Up), "select b");
    EXPECT_EQ(press(Qt::Key_Right), "");
    EXPECT_EQ(press(Qt::Key_Down), "select c");
    EXPECT_EQ(press(Qt::Key_Left), "select a");
    EXPECT_EQ(press(Qt::Key_Return), "zoom a");
    EXPECT_EQ(press(Qt::Key_End), "select c");
    EXPECT_EQ(press(Qt::Key_Home), "select a");
    EXPECT_EQ(press(Qt::Key_Escape), "select ") << "Escape ends the selection";

    // The keys go on from what the mouse selects, and the mouse needs no focus ring.
    QTest::mouseClick(&window_, Qt::LeftButton, {}, middle(1));
    EXPECT_FALSE(canvas_->isFocusVisible());
    canvas_->setSelectedID(id(1));
    EXPECT_EQ(press(Qt::Key_Down), "select c");
}

TEST_F(TreemapCanvasTest, TheKeyboardReachesEveryBlockOfACrowdedLevelThatCanBeSeen)
{
    // Every arrow goes over a shared edge to the side that it names.
    const MapLevel level(crowdedFolder(2'000), {1000, 600});
    std::vector<bool> reached(level.count(), false);
    std::vector<std::size_t> pending{0};
    while (!pending.empty()) {
        const std::size_t at = pending.back();
        pending.pop_back();
        if (reached[at])
            continue;
        reached[at] = true;
        const QRectF from = level.cell(at);
        for (const Qt::Edge edge : {Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge}) {
            const auto next = level.neighbor(at, edge);
            if (!next)
                continue;
            const QRectF to = level.cell(*next);
            const double gap = edge == Qt::LeftEdge    ? from.left() - to.right()
                               : edge == Qt::RightEdge ? to.left() - from.right()
                               : edge == Qt::TopEdge   ? from.top() - to.bottom()
                                                       : to.top() - from.bottom();
            EXPECT_NEAR(gap, 0, 0.01);
            pending.push_back(*next);
        }
    }
    for (std::size_t block = 0; block < level.count(); ++block) {
        const bool isLabelled = level.cell(block).width() > 64 && level.cell(block).height() > 28;
        EXPECT_TRUE(reached[block] || !isLabelled) << block;
    }
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
    // Only one of the 20,000 is bright.
    expectPixel(middle(0), shade(node(0), dimmed));
    QTest::mouseClick(&window_, Qt::LeftButton, {}, middle(19'000));
    EXPECT_EQ(requests_.size(), 1u);
}
