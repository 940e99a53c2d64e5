#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"

#include <QTest>

namespace brisalon::tests {

/// A desktop that hides private places from the program.
class PermissionTest : public WindowFixture {
protected:
    PermissionTest() { fileAccess.isHiding = true; }

    /// Moves the pointer onto the card, wherever the layout is moving it to.
    bool hoverCard(const char* name)
    {
        return WindowDriver::waitFor([this, name] {
            driver->hover(driver->centre(name));
            return driver->property(name, "hovered").toBool();
        });
    }
    void grant() { fileAccess.readablePaths.insert(home.at("Library/Mail")); }
};

TEST_F(PermissionTest, NoBannerWhereAccessIsGranted)
{
    grant();
    start();
    EXPECT_FALSE(isShown("requestBanner"));
    EXPECT_FALSE(isShown("grantedBanner"));
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Full disk map including system areas");
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    EXPECT_FALSE(isShown("fdaSection"));
}

TEST_F(PermissionTest, NotNowHidesTheRequestForAWeek)
{
    start();
    ASSERT_TRUE(isShown("requestBanner"));
    const double full = driver->find("treemapPane")->height();
    driver->click(driver->centre("notNowButton"));
    EXPECT_FALSE(isShown("requestBanner"));
    EXPECT_TRUE(WindowDriver::waitFor([&] {
        return driver->find("treemapPane")->height() > full + 200;
    })) << "it takes no space";

    start();
    EXPECT_FALSE(isShown("requestBanner")) << "after a relaunch";

    const auto until = store.number("fdaBannerDismissedUntil");
    ASSERT_TRUE(until);
    store.setNumber("fdaBannerDismissedUntil", *until - 8 * 24 * 3600);
    start();
    EXPECT_TRUE(isShown("requestBanner")) << "after that time";
}

TEST_F(PermissionTest, RefreshNoticesTheGrantAndSaysThanksUntilDismissed)
{
    bundle.place = FileURL("/opt/brisalon");
    start();
    driver->click(driver->centre("refreshButton"));
    EXPECT_TRUE(isShown("requestBanner")) << "nothing has changed";

    driver->click(driver->centre("showInFinderButton"));
    EXPECT_EQ(workspace.revealed, std::vector{FileURL("/opt/brisalon")});
    driver->click(driver->centre("openSettingsButton"));
    EXPECT_EQ(workspace.addresses.size(), 1U);

    grant();
    driver->click(driver->centre("refreshButton"));
    EXPECT_FALSE(isShown("requestBanner"));
    EXPECT_EQ(text("grantedText"),
              "Full Disk Access enabled — This Mac scans will show more detail.");
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Full disk map including system areas");
    ASSERT_TRUE(WindowDriver::waitFor([this] {
        return box("grantedBanner") == box("permissionBanner").adjusted(20, 12, -20, -12);
    }));
    driver->click(driver->centre("dismissButton"));
    EXPECT_FALSE(state().fdaJustGranted());
    EXPECT_FALSE(isShown("permissionBanner"));

    start();
    EXPECT_FALSE(isShown("permissionBanner")) << "thanks are said once";
}

TEST_F(PermissionTest, TheWelcomeScreenExplainsTheSecondCard)
{
    start();
    state().dismissFDABanner();
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Entire startup disk · Full Disk Access recommended");
    EXPECT_FALSE(isShown("fdaSection"));

    ASSERT_TRUE(WindowDriver::waitFor([this] {
        return driver->find("treemapPane")->height() > 700;
    })) << "without the banner";
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    const QPoint card = driver->centre("scanThisMacCard");
    ASSERT_TRUE(appears("welcomeCallout"));
    EXPECT_LE(box("welcomeStack").bottom(), box("well").bottom() - 32 + 0.5) << "all fits";
    EXPECT_EQ(text("fdaDetailsButton"), "Why Full Disk Access?");
    EXPECT_FALSE(isShown("openSettingsButton"));
    EXPECT_EQ(driver->centre("scanThisMacCard"), card) << "it must not run from the pointer";
    const auto isWhole = [this] { return driver->property("fdaSection", "opacity") == 1; };
    ASSERT_TRUE(WindowDriver::waitFor(isWhole));

    ASSERT_TRUE(hoverCard("scanHomeCard"));
    EXPECT_TRUE(goes("fdaSection"));

    // Opened by its link it stays, wherever the pointer goes, until the link hides it.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    driver->click(driver->centre("fdaDetailsButton"));
    EXPECT_EQ(text("fdaDetailsButton"), "Hide Full Disk Access steps");
    ASSERT_TRUE(WindowDriver::waitFor(isWhole));
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    driver->settle();
    driver->settle();
    EXPECT_TRUE(isWhole()) << "it does not begin to fade";
    driver->click(driver->centre("fdaDetailsButton"));
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    EXPECT_TRUE(goes("fdaSection"));

    // The grant hides it at once.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    grant();
    state().refreshPermission();
    EXPECT_FALSE(isShown("fdaSection"));
}

TEST_F(PermissionTest, TheKeyboardReachesTheExplanationInASmallWindow)
{
    start();
    window->resize(960, 700);
    ASSERT_TRUE(reaches("scanThisMacCard"));
    EXPECT_TRUE(appears("fdaSection"));
    const auto isInSight = [this](const char* name) {
        return box("treemapPane").contains(box(name));
    };
    EXPECT_TRUE(WindowDriver::waitFor([&] { return isInSight("scanThisMacCard"); }));
    driver->press(Qt::Key_Tab);
    EXPECT_TRUE(WindowDriver::waitFor([&] { return isInSight("chooseFolderCard"); }));
}

TEST_F(PermissionTest, Geometry)
{
    start();
    const QRectF banner = box("permissionBanner");
    const QRectF request = box("requestBanner");
    EXPECT_EQ(banner.topLeft(), QPointF(248, 0));
    EXPECT_EQ(banner.right(), 1280);
    EXPECT_EQ(request, banner.adjusted(20, 12, -20, -12));
    const QRectF circle = box("requestCircle");
    EXPECT_EQ(circle, QRectF(request.topLeft(), QSizeF(36, 36)));
    EXPECT_EQ(below("requestTitle", "requestDetail"), 3);
    const QRectF callout = box("bannerCallout");
    EXPECT_EQ(callout.topLeft(), circle.bottomLeft() + QPointF(0, 12));
    EXPECT_EQ(below("bannerCallout", "refreshButton"), 12);
    EXPECT_EQ(box("calloutColumn"), callout.adjusted(10, 10, -10, -10));
    for (const QString step : {"1", "2", "3"}) {
        EXPECT_EQ(box("stepCircle" + step).size(), QSizeF(16, 16));
        EXPECT_EQ(box("stepText" + step).left(), box("stepCircle" + step).right() + 8);
    }
    const QFont caption = Theme::system(10);
    shown().expectText("Full Disk Access", Theme::rounded(10, QFont::DemiBold), Theme::text());
    shown().expectText("Home scans work without it. Enable FDA for complete This Mac maps.",
                       caption, Theme::muted());
    shown().expectText("Click + and add Brisalon.app", caption, Theme::textSecondary());
    EXPECT_EQ(driver->property("permissionBanner", "color"), Theme::faded(Theme::amber(), 0.08));
    grant();
    state().refreshPermission();
    EXPECT_EQ(driver->property("permissionBanner", "color"), Theme::faded(Theme::success(), 0.1));
}

} // namespace brisalon::tests
