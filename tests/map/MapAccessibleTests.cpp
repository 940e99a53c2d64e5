#include "MapFixture.h"

#include "Brisalon/Map/BlockAccessible.h"

#include <QAccessible>
#include <QTest>

namespace brisalon::tests {

/// What readers of screens ask for beside what a journey with one sees.
class MapAccessibleTest : public MapTest {
protected:
    QAccessibleInterface* map() { return QAccessible::queryAccessibleInterface(canvas_); }
};

TEST_F(MapAccessibleTest, TheFocusIsOnTheSelectedBlockAndTheItemsOfALevelGoWithIt)
{
    show(crowdedFolder(10));
    canvas_->forceActiveFocus();
    EXPECT_EQ(map()->focusChild(), map());
    EXPECT_TRUE(map()->state().focused);
    ASSERT_NE(map()->parent(), nullptr);
    EXPECT_GE(map()->parent()->indexOfChild(map()), 0);
    const QRect all = map()->rect();
    EXPECT_EQ(map()->childAt(all.left() - 5, all.top() - 5), nullptr);
    EXPECT_EQ(map()->child(10), nullptr);
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

} // namespace brisalon::tests
