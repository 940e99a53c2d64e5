#include "WindowFixture.h"

namespace brisalon::tests {

/// A desktop that hides private places from the program.
class PermissionTest : public WindowFixture {
protected:
    PermissionTest() { fileAccess.isHiding = true; }

    /// Moves the pointer onto the card, wherever the layout is moving it to.
    bool hoverCard(const char* name)
    {
        return waitFor([this, name] {
            driver->hover(driver->centre(name));
            return property(name, "hovered").toBool();
        });
    }
    void grant() { fileAccess.readablePaths.insert(home.at("Library/Mail")); }
    std::string subtitle() const
    {
        return property("scanThisMacCard", "subtitle").toString().toStdString();
    }
};

TEST_F(PermissionTest, NotNowHidesTheRequestAndItsSpace)
{
    start();
    ASSERT_TRUE(isShown("requestBanner"));
    const double full = box("treemapPane").height();
    clickOn("notNowButton");
    EXPECT_FALSE(isShown("requestBanner"));
    EXPECT_TRUE(waitFor([&] { return box("treemapPane").height() > full + 200; }))
        << "it takes no space";

    start();
    EXPECT_FALSE(isShown("requestBanner")) << "after a relaunch";
}

TEST_F(PermissionTest, RefreshNoticesTheGrantAndSaysThanksUntilDismissed)
{
    bundle.place = FileURL("/opt/brisalon");
    start();
    EXPECT_EQ(box("requestBanner"), box("permissionBanner").adjusted(20, 12, -20, -12));
    clickOn("refreshButton");
    EXPECT_TRUE(isShown("requestBanner")) << "nothing has changed";
    clickOn("showInFinderButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL("/opt/brisalon")});
    clickOn("openSettingsButton");
    EXPECT_EQ(workspace.addresses.size(), 1U);

    grant();
    clickOn("refreshButton");
    EXPECT_FALSE(isShown("requestBanner"));
    EXPECT_TRUE(isShown("grantedText"));
    EXPECT_EQ(subtitle(), "Full disk map including system areas");
    clickOn("dismissButton");
    EXPECT_FALSE(state().fdaJustGranted() || isShown("permissionBanner"));
    start();
    EXPECT_FALSE(isShown("permissionBanner")) << "thanks are said once";
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    EXPECT_FALSE(isShown("fdaSection"));
}

TEST_F(PermissionTest, TheWelcomeScreenExplainsTheSecondCard)
{
    start();
    state().dismissFDABanner();
    EXPECT_EQ(subtitle(), "Entire startup disk · Full Disk Access recommended");
    EXPECT_FALSE(isShown("fdaSection"));

    // Shown by the pointer, and then kept by its link wherever the pointer goes.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("welcomeCallout"));
    ASSERT_TRUE(hoverCard("scanHomeCard") && goes("fdaSection"));
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    clickOn("fdaDetailsButton");
    EXPECT_EQ(text("fdaDetailsButton"), "Hide Full Disk Access steps");
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    driver->settle();
    EXPECT_TRUE(isShown("fdaSection"));
    clickOn("fdaDetailsButton");
    ASSERT_TRUE(hoverCard("scanHomeCard") && goes("fdaSection"));

    // The grant hides it at once.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    grant();
    state().refreshPermission();
    EXPECT_FALSE(isShown("fdaSection"));
}

TEST_F(PermissionTest, TheKeyboardReachesTheExplanationInASmallWindow)
{
    start();
    resize(960, 700);
    ASSERT_TRUE(reaches("scanThisMacCard"));
    EXPECT_TRUE(appears("fdaSection"));
    for (const char* const card : {"scanThisMacCard", "chooseFolderCard"}) {
        ASSERT_TRUE(reaches(card));
        EXPECT_TRUE(waitFor([&] { return box("treemapPane").contains(box(card)); })) << card;
    }
}

} // namespace brisalon::tests
