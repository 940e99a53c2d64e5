#include "Rendered.h"
#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"

#include <QTest>

namespace brisalon::tests {

/// A desktop that hides private places from the program.
class PermissionTest : public WindowFixture {
protected:
    PermissionTest() { fileAccess.isHiding = true; }

    bool appears(const char* name) const
    {
        return WindowDriver::waitFor([this, name] { return driver->find(name) != nullptr; });
    }
    bool goes(const char* name) const
    {
        return WindowDriver::waitFor([this, name] { return driver->find(name) == nullptr; });
    }
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
    EXPECT_EQ(driver->find("requestBanner"), nullptr);
    EXPECT_EQ(driver->find("grantedBanner"), nullptr);
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Full disk map including system areas");
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    EXPECT_EQ(driver->find("fdaSection"), nullptr);
}

TEST_F(PermissionTest, NotNowHidesTheRequestForAWeek)
{
    start();
    ASSERT_NE(driver->find("requestBanner"), nullptr);
    const double full = driver->find("treemapPane")->height();
    driver->click(driver->centre("notNowButton"));
    EXPECT_EQ(driver->find("requestBanner"), nullptr);
    EXPECT_TRUE(WindowDriver::waitFor([&] {
        return driver->find("treemapPane")->height() > full + 200;
    })) << "it takes no space";

    start();
    EXPECT_EQ(driver->find("requestBanner"), nullptr) << "after a relaunch";

    const auto until = store.number("fdaBannerDismissedUntil");
    ASSERT_TRUE(until);
    store.setNumber("fdaBannerDismissedUntil", *until - 8 * 24 * 3600);
    start();
    EXPECT_NE(driver->find("requestBanner"), nullptr) << "after that time";
}

TEST_F(PermissionTest, RefreshNoticesTheGrantAndSaysThanksUntilDismissed)
{
    bundle.place = FileURL("/opt/brisalon");
    start();
    driver->click(driver->centre("refreshButton"));
    EXPECT_NE(driver->find("requestBanner"), nullptr) << "nothing has changed";

    driver->click(driver->centre("showInFinderButton"));
    EXPECT_EQ(workspace.revealed, std::vector{FileURL("/opt/brisalon")});
    driver->click(driver->centre("openSettingsButton"));
    EXPECT_EQ(workspace.addresses.size(), 1U);

    grant();
    driver->click(driver->centre("refreshButton"));
    EXPECT_EQ(driver->find("requestBanner"), nullptr);
    EXPECT_EQ(text("grantedText"),
              "Full Disk Access enabled — This Mac scans will show more detail.");
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Full disk map including system areas");
    ASSERT_TRUE(WindowDriver::waitFor([this] {
        return Rendered(*window).box("grantedBanner").height() ==
               driver->find("permissionBanner")->height() - 24;
    }));
    driver->click(driver->centre("dismissButton"));
    EXPECT_FALSE(app->state().fdaJustGranted());
    EXPECT_EQ(driver->find("permissionBanner"), nullptr);

    start();
    EXPECT_EQ(driver->find("permissionBanner"), nullptr) << "thanks are said once";
}

TEST_F(PermissionTest, TheWelcomeScreenExplainsTheSecondCard)
{
    start();
    app->state().dismissFDABanner();
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Entire startup disk · Full Disk Access recommended");
    EXPECT_EQ(driver->find("fdaSection"), nullptr);

    ASSERT_TRUE(WindowDriver::waitFor([this] {
        return driver->find("treemapPane")->height() > 700;
    })) << "without the banner";
    ASSERT_TRUE(hoverCard("scanThisMacCard"));
    const QPoint card = driver->centre("scanThisMacCard");
    ASSERT_TRUE(appears("welcomeCallout"));
    EXPECT_EQ(text("fdaDetailsButton"), "Why Full Disk Access?");
    EXPECT_EQ(driver->find("openSettingsButton"), nullptr);
    EXPECT_EQ(driver->centre("scanThisMacCard"), card) << "it must not run from the pointer";
    ASSERT_TRUE(
        WindowDriver::waitFor([this] { return driver->find("fdaSection")->opacity() == 1; }));

    ASSERT_TRUE(hoverCard("scanHomeCard"));
    EXPECT_TRUE(goes("fdaSection"));

    // Opened by its link it stays, wherever the pointer goes, until the link hides it.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    driver->click(driver->centre("fdaDetailsButton"));
    EXPECT_EQ(text("fdaDetailsButton"), "Hide Full Disk Access steps");
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    QTest::qWait(300); // longer than it takes to fade
    ASSERT_NE(driver->find("welcomeCallout"), nullptr);
    driver->click(driver->centre("fdaDetailsButton"));
    ASSERT_TRUE(hoverCard("scanHomeCard"));
    EXPECT_TRUE(goes("fdaSection"));

    // The grant hides it at once.
    ASSERT_TRUE(hoverCard("scanThisMacCard") && appears("fdaSection"));
    grant();
    app->state().refreshPermission();
    EXPECT_EQ(driver->find("fdaSection"), nullptr);
}

TEST_F(PermissionTest, TheKeyboardReachesTheExplanationInASmallWindow)
{
    start();
    window->resize(960, 700);
    const auto focus = [this] {
        const QQuickItem* const item = window->activeFocusItem();
        return item ? item->objectName() : QString();
    };
    for (int tabs = 0; tabs < 20 && focus() != "scanThisMacCard"; ++tabs)
        driver->press(Qt::Key_Tab);
    ASSERT_EQ(focus(), "scanThisMacCard");
    EXPECT_TRUE(appears("fdaSection"));
    const auto isInSight = [this](const char* name) {
        const QQuickItem* const item = driver->find(name);
        const QQuickItem* const pane = driver->find("treemapPane");
        return item && pane->mapRectToScene(pane->boundingRect())
                           .contains(item->mapRectToScene(item->boundingRect()));
    };
    EXPECT_TRUE(WindowDriver::waitFor([&] { return isInSight("scanThisMacCard"); }));
    driver->press(Qt::Key_Tab);
    EXPECT_TRUE(WindowDriver::waitFor([&] { return isInSight("chooseFolderCard"); }));
}

TEST_F(PermissionTest, GeometryAndFonts)
{
    start();
    const Rendered shown(*window);
    const QRectF banner = shown.box("permissionBanner");
    const QRectF request = shown.box("requestBanner");
    EXPECT_EQ(banner.topLeft(), QPointF(248, 0));
    EXPECT_EQ(banner.right(), 1280);
    EXPECT_EQ(request, banner.adjusted(20, 12, -20, -12));
    EXPECT_EQ(driver->property("permissionBanner", "color"), Theme::faded(Theme::amber(), 0.08));
    const QRectF circle = shown.box("requestCircle");
    EXPECT_EQ(circle.size(), QSizeF(36, 36));
    EXPECT_EQ(circle.topLeft(), request.topLeft());
    EXPECT_EQ(driver->property("requestCircle", "color"), Theme::faded(Theme::amber(), 0.15));
    EXPECT_EQ(driver->property("requestSymbol", "size"), 16);
    EXPECT_EQ(shown.box("requestDetail").top() - shown.box("requestTitle").bottom(), 3);
    const QRectF callout = shown.box("bannerCallout");
    EXPECT_EQ(callout.topLeft(), circle.bottomLeft() + QPointF(0, 12));
    EXPECT_EQ(shown.box("refreshButton").top() - callout.bottom(), 12);
    EXPECT_EQ(shown.box("calloutColumn"), callout.adjusted(10, 10, -10, -10));
    EXPECT_EQ(driver->property("bannerCallout", "radius"), 12);
    EXPECT_EQ(driver->property("bannerCallout", "color"), Theme::accentSoft());
    EXPECT_EQ(driver->property("bannerCallout", "borderColor"),
              Theme::faded(Theme::accent(), 0.25));

    const QFont caption = Theme::system(10);
    struct Row {
        const char* text;
        QFont font;
        QColor color;
    };
    for (const auto& [text, font, color] : {
             Row{"Full Disk Access recommended", Theme::rounded(11, QFont::DemiBold),
                 Theme::text()},
             Row{"Home scans work without it. Enable FDA for complete This Mac maps.", caption,
                 Theme::muted()},
             Row{"Full Disk Access", Theme::rounded(10, QFont::DemiBold), Theme::text()},
             Row{"Without it, Mail, Safari, and much of System Data stay hidden during This Mac "
                 "scans.",
                 caption, Theme::muted()},
             Row{"1", Theme::rounded(10, QFont::Bold), Theme::accent()},
             Row{"Open Settings → Privacy & Security → Full Disk Access", caption,
                 Theme::textSecondary()},
             Row{"2", Theme::rounded(10, QFont::Bold), Theme::accent()},
             Row{"Click + and add Brisalon.app", caption, Theme::textSecondary()},
             Row{"3", Theme::rounded(10, QFont::Bold), Theme::accent()},
             Row{"Enable the toggle, quit & reopen Brisalon, then Refresh", caption,
                 Theme::textSecondary()},
         })
        shown.expectText(text, font, color);
    for (const char* const step : {"1", "2", "3"}) {
        const QByteArray name = QByteArray("stepText") + step;
        const QRectF circleOfStep = shown.box((QByteArray("stepCircle") + step).constData());
        EXPECT_EQ(circleOfStep.size(), QSizeF(16, 16));
        EXPECT_EQ(shown.box(name.constData()).left(), circleOfStep.right() + 8);
    }

    grant();
    app->state().refreshPermission();
    EXPECT_TRUE(WindowDriver::waitFor([&] {
        return shown.box("grantedBanner") ==
               shown.box("permissionBanner").adjusted(20, 12, -20, -12);
    }));
    EXPECT_EQ(driver->property("permissionBanner", "color"), Theme::faded(Theme::success(), 0.1));
    EXPECT_EQ(shown.box("grantedText").left() - shown.box("grantedSymbol").right(), 12);
    shown.expectText("Full Disk Access enabled — This Mac scans will show more detail.",
                     Theme::rounded(11, QFont::Medium), Theme::text());
}

} // namespace brisalon::tests
