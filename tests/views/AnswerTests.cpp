#include "WindowFixture.h"

namespace brisalon::tests {

/// The sheets that the menu opens to answer a question about the map.
using AnswerTest = WindowFixture;

TEST_F(AnswerTest, APlaceThatMayGoIsShownByClickAndByKeys)
{
    startWithMap({{"a/node_modules/x.js", 2}, {"b/node_modules/y.js", 1}});
    openSheet("whatMayGoEntry", "whatMayGoView");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "b");
    ASSERT_TRUE(goes("whatMayGoView"));

    openSheet("whatMayGoEntry", "whatMayGoView");
    clickOn("place0");
    EXPECT_EQ(levelName(), "a");
    EXPECT_EQ(state().selected().name(), "node_modules");
    ASSERT_TRUE(goes("whatMayGoView"));

    openSheet("whatMayGoEntry", "whatMayGoView");
    EXPECT_TRUE(reaches("answerCloseButton"));
    press(Qt::Key_Space);
    EXPECT_TRUE(goes("whatMayGoView"));
}

} // namespace brisalon::tests
