#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"

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

    static constexpr auto granted = "Full disk map including system areas";
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
    // Where the strip and its parts are.
    const QRectF banner = box("permissionBanner");
    const QRectF callout = box("bannerCallout");
    EXPECT_EQ(banner.topLeft(), QPointF(248, 0));
    EXPECT_EQ(banner.right(), 1280);
    EXPECT_EQ(box("requestBanner"), banner.adjusted(20, 12, -20, -12));
    EXPECT_EQ(callout.topLeft(), box("requestCircle").bottomLeft() + QPointF(0, 12));
    EXPECT_EQ(below("bannerCallout", "refreshButton"), 12);
    EXPECT_EQ(box("calloutColumn"), callout.adjusted(10, 10, -10, -10));
    EXPECT_EQ(color("permissionBanner"), Theme::faded(Theme::amber(), 0.08));

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
    EXPECT_EQ(color("permissionBanner"), Theme::faded(Theme::success(), 0.1));
    EXPECT_EQ(subtitle(), granted);
    ASSERT_TRUE(waitFor([this] {
        return box("grantedBanner") == box("permissionBanner").adjusted(20, 12, -20, -12);
    }));
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

    ASSERT_TRUE(waitFor([this] { return box("treemapPane").height() > 700; }))
        << "without the banner";
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    const QPoint card = driver->centre("scanThisMacCard");
    ASSERT_TRUE(appears("welcomeCallout"));
    EXPECT_LE(box("welcomeStack").bottom(), box("well").bottom() - 32 + 0.5) << "all fits";
    EXPECT_EQ(text("fdaDetailsButton"), "Why Full Disk Access?");
    EXPECT_FALSE(isShown("openSettingsButton"));
    EXPECT_EQ(driver->centre("scanThisMacCard"), card) << "it must not run from the pointer";
    const auto isWhole = [this] { return property("fdaSection", "opacity") == 1; };
    ASSERT_TRUE(waitFor(isWhole));
    ASSERT_TRUE(hoverCard("scanHomeCard") && goes("fdaSection"));

    // Opened by its link it stays, wherever the pointer goes, until the link hides it.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    clickOn("fdaDetailsButton");
    EXPECT_EQ(text("fdaDetailsButton"), "Hide Full Disk Access steps");
    ASSERT_TRUE(waitFor(isWhole));
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    driver->settle();
    driver->settle();
    EXPECT_TRUE(isWhole()) << "it does not begin to fade";
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
