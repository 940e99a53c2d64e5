#include "MapFixture.h"

#include "Brisalon/Map/BlockAccessible.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QAccessible>
#include <QTest>

namespace brisalon::tests {

class MapAccessibleTest : public MapTest {
protected:
    QAccessibleInterface* map() { return QAccessible::queryAccessibleInterface(canvas_); }
    QString name(int block) { return map()->child(block)->text(QAccessible::Name); }
};

TEST_F(MapAccessibleTest, TheMapIsAListOfItsBlocksWhereTheyAreSeenAndActedOn)
{
    const auto make = [](const char* path, std::int64_t size, NodeKind kind = NodeKind::file,
                         std::vector<FileNode> children = {}) {
        return FileNodeBuilder::make(FileURL(path), size, kind, std::move(children));
    };
    constexpr std::int64_t gb = 1'000'000'000;
    show(heldTree(
        make("/top", 6 * gb, NodeKind::directory,
             {make("/top/in", 3 * gb, NodeKind::directory, {make("/top/in/x", 3 * gb)}),
              make("/top/a.iso", 2 * gb), make("/top/b.txt", gb), make("/top/nothing", 0)})));
    ASSERT_NE(map(), nullptr);
    EXPECT_EQ(map()->role(), QAccessible::List);
    EXPECT_EQ(map()->text(QAccessible::Name), "Map of top");
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
    ASSERT_NE(map()->parent(), nullptr);
    EXPECT_GE(map()->parent()->indexOfChild(map()), 0);

    QAccessibleActionInterface* in = map()->child(0)->actionInterface();
    QAccessibleActionInterface* leaf = map()->child(1)->actionInterface();
    leaf->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(in->actionNames().contains("Zoom in"));
    EXPECT_FALSE(leaf->actionNames().contains("Zoom in"));
    leaf->doAction("Zoom in");
    in->doAction("Zoom in");
    EXPECT_EQ(requests(), "select a.iso, select in, zoom in");
}

TEST_F(MapAccessibleTest, TheFocusIsOnTheSelectedBlockAndTheItemsOfALevelGoWithIt)
{
    show(crowdedFolder(10));
    canvas_->forceActiveFocus();
    EXPECT_EQ(map()->focusChild(), map());
    EXPECT_TRUE(map()->state().focused);
    canvas_->setSelectedID(id(4));
    QAccessibleInterface* block = map()->child(4);
    EXPECT_EQ(map()->focusChild(), block);
    EXPECT_TRUE(block->state().selected && block->state().focused);
    EXPECT_FALSE(map()->child(3)->state().selected || map()->child(3)->state().focused);
    EXPECT_FALSE(map()->state().focused);

    // A smaller map has other places for the same blocks.
    const QAccessible::Id old = QAccessible::uniqueId(block);
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

} // namespace brisalon::tests
