#include "MapFixture.h"

#include "Brisalon/Map/BlockAccessible.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QAccessible>
#include <QTest>

using namespace brisalon;
using namespace brisalon::test;

class MapAccessibleTest : public MapTest {
protected:
    QAccessibleInterface* map() { return QAccessible::queryAccessibleInterface(canvas_); }
    QString name(int block) { return map()->child(block)->text(QAccessible::Name); }
};

TEST_F(MapAccessibleTest, TheMapIsAListOfItsBlocksWhereTheyAreSeen)
{
    show(folder({{"Caches", 3'000'000'000, NodeKind::directory},
                 {"a.iso", 2'000'000'000},
                 {"b.txt", 1'000'000'000},
                 {"nothing", 0}}));
    ASSERT_NE(map(), nullptr);
    EXPECT_EQ(map()->role(), QAccessible::List);
    EXPECT_EQ(map()->text(QAccessible::Name), "Map of a");
    ASSERT_EQ(map()->childCount(), 3);
    EXPECT_EQ(name(1), "a.iso, File, 1.9 GB, Installer, Review");
    EXPECT_EQ(name(2), "b.txt, File, 954 MB");
    for (std::size_t i = 0; i < 3; ++i) {
        QAccessibleInterface* block = map()->child(static_cast<int>(i));
        EXPECT_EQ(map()->indexOfChild(block), static_cast<int>(i));
        EXPECT_EQ(block->parent(), map());
        const QPoint point = window_.mapToGlobal(middle(i));
        EXPECT_TRUE(block->rect().contains(point));
        EXPECT_EQ(map()->childAt(point.x(), point.y()), block);
    }
    const QRect all = map()->rect();
    EXPECT_EQ(map()->childAt(all.left() - 5, all.top() - 5), nullptr);
    EXPECT_EQ(map()->child(3), nullptr);

    // A reader that comes down from the window finds the map, and back.
    QAccessibleInterface* found = map()->parent();
    ASSERT_NE(found, nullptr);
    EXPECT_GE(found->indexOfChild(map()), 0);
}

TEST_F(MapAccessibleTest, ABlockIsSelectedAndZoomedByItsActions)
{
    std::vector<FileNode> inner{
        FileNodeBuilder::make(FileURL("/top/in/file"), 700, NodeKind::file)};
    std::vector<FileNode> nodes{
        FileNodeBuilder::make(FileURL("/top/in"), 700, NodeKind::directory, std::move(inner)),
        FileNodeBuilder::make(FileURL("/top/leaf"), 300, NodeKind::file)};
    show(heldTree(
        FileNodeBuilder::make(FileURL("/top"), 1000, NodeKind::directory, std::move(nodes))));

    QAccessibleActionInterface* in = map()->child(0)->actionInterface();
    QAccessibleActionInterface* leaf = map()->child(1)->actionInterface();
    leaf->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(requests_, (std::vector<std::string>{"select leaf"}));
    EXPECT_TRUE(in->actionNames().contains("Zoom in"));
    EXPECT_FALSE(leaf->actionNames().contains("Zoom in"));
    leaf->doAction("Zoom in");
    in->doAction("Zoom in");
    EXPECT_EQ(requests_, (std::vector<std::string>{"select leaf", "select in", "zoom in"}));
}

TEST_F(MapAccessibleTest, TheFocusIsOnTheSelectedBlock)
{
    show(crowdedFolder(10));
    canvas_->forceActiveFocus();
    EXPECT_EQ(map()->focusChild(), map());
    EXPECT_TRUE(map()->state().focused);
    canvas_->setSelectedID(id(4));
    QAccessibleInterface* fifth = map()->child(4);
    EXPECT_EQ(map()->focusChild(), fifth);
    EXPECT_TRUE(fifth->state().selected && fifth->state().focused);
    EXPECT_FALSE(map()->child(3)->state().selected || map()->child(3)->state().focused);
    EXPECT_FALSE(map()->state().focused);
}

TEST_F(MapAccessibleTest, TheItemsOfALevelGoWithIt)
{
    show(crowdedFolder(20));
    QAccessibleInterface* block = map()->child(7);
    const QAccessible::Id old = QAccessible::uniqueId(block);
    // A smaller map has other places for the same blocks.
    const QRect before = block->rect();
    window_.resize(700, 500);
    ASSERT_TRUE(QTest::qWaitFor([this] { return canvas_->width() == 700; }));
    EXPECT_TRUE(block->isValid());
    EXPECT_NE(block->rect(), before);
    // A new scan of the folder.
    canvas_->setLevel(level_ = crowdedFolder(5));
    EXPECT_EQ(QAccessible::accessibleInterface(old), nullptr);
    EXPECT_EQ(map()->childCount(), 5);
}

TEST_F(MapAccessibleTest, TwentyThousandBlocksCanBeReadInASecond)
{
    show(crowdedFolder(20'000));
    QElapsedTimer timer;
    timer.start();
    const int count = map()->childCount();
    for (int i = 0; i < count; ++i) {
        QAccessibleInterface* block = map()->child(i);
        ASSERT_EQ(map()->indexOfChild(block), i);
        ASSERT_FALSE(block->text(QAccessible::Name).isEmpty());
        ASSERT_FALSE(block->state().selected);
    }
    EXPECT_GE(count, 19'000);
    EXPECT_LT(timer.elapsed(), 1000);
}
