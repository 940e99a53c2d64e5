#include "WindowFixture.h"

namespace brisalon::tests {

/// The sheets that the menu opens to answer a question about the map.
class AnswerTest : public WindowFixture {
public:
    void open(const char* entry, const char* view)
    {
        driver->click(driver->centre("menuButton"));
        ASSERT_TRUE(appears(entry));
        driver->click(driver->centre(entry));
        ASSERT_TRUE(appears(view));
        ASSERT_TRUE(WindowDriver::waitFor([&] { return driver->find(view)->hasActiveFocus(); }));
    }
};

TEST_F(AnswerTest, APlaceThatMayGoIsShownByClickAndByKeys)
{
    home.file("a/node_modules/x.js", 2 * mib);
    home.file("b/node_modules/y.js", mib);
    startWithMap();
    open("whatMayGoEntry", "whatMayGoView");
    driver->press(Qt::Key_Down);
    driver->press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "b");
    ASSERT_TRUE(goes("whatMayGoView"));

    open("whatMayGoEntry", "whatMayGoView");
    clickOn("place0");
    EXPECT_EQ(levelName(), "a");
    EXPECT_EQ(state().selected().name(), "node_modules");
    ASSERT_TRUE(goes("whatMayGoView"));

    open("whatMayGoEntry", "whatMayGoView");
    EXPECT_TRUE(reaches("answerCloseButton"));
    driver->press(Qt::Key_Space);
    EXPECT_TRUE(goes("whatMayGoView"));
}

} // namespace brisalon::tests
