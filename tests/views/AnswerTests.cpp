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

TEST_F(AnswerTest, WhatTheMapLeavesOutIsReadByKeys)
{
    startWithMap({{"a/file", 1}});
    openSheet("whatIsLeftOutEntry", "whatIsLeftOutView");
    EXPECT_TRUE(text("answerExplanation").contains(" is not a whole volume."));
    ASSERT_TRUE(reaches("leftOut0"));
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "leftOut1");
    press(Qt::Key_Escape);
    EXPECT_TRUE(goes("whatIsLeftOutView"));
}

} // namespace brisalon::tests
