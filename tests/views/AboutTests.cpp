#include "WindowFixture.h"

#include <cmath>

namespace brisalon::tests {

class AboutTest : public WindowFixture {
public:
    /// Opens the panel as a user does: by the menu.
    void openAbout()
    {
        driver->click(driver->centre("menuButton"));
        ASSERT_TRUE(appears("aboutEntry"));
        driver->click(driver->centre("aboutEntry"));
        ASSERT_TRUE(appears("aboutView"));
        ASSERT_TRUE(
            WindowDriver::waitFor([this] { return driver->find("aboutView")->hasActiveFocus(); }));
    }

    /// Until what lies below the help has moved to its place.
    void openHelp()
    {
        driver->click(driver->centre("aboutHelpButton"));
        ASSERT_TRUE(appears("aboutCallout"));
        ASSERT_TRUE(driver->settle());
    }

    bool isOpen() const { return window->property("showAbout").toBool(); }

    void clickClose() { driver->click(driver->centre("aboutCloseButton")); }
    void clickOutside() { driver->click(QPoint(300, 790)); }
    void pressReturn() { driver->press(Qt::Key_Return); }
    void pressEnter() { driver->press(Qt::Key_Enter); }
    void pressEscape() { driver->press(Qt::Key_Escape); }
};

TEST_F(AboutTest, EveryWayOutClosesItWhereverTheKeyboardIs)
{
    start();
    using Way = void (AboutTest::*)();
    for (const Way leave :
         {&AboutTest::clickClose, &AboutTest::clickOutside, &AboutTest::pressReturn,
          &AboutTest::pressEnter, &AboutTest::pressEscape}) {
        for (const char* const focused : {"aboutCloseButton", "aboutLink", "openSettingsButton"}) {
            openAbout();
            openHelp();
            driver->find(focused)->forceActiveFocus(Qt::TabFocusReason);
            (this->*leave)();
            EXPECT_FALSE(isOpen());
            ASSERT_TRUE(goes("aboutView"));
        }
    }
    EXPECT_TRUE(workspace.addresses.empty()) << "Return presses none of the buttons";
}

TEST_F(AboutTest, TheHelpIsClosedAtEachOpening)
{
    start();
    for (int opening = 0; opening < 2; ++opening) {
        openAbout();
        for (const bool isHelping : {false, true, false, true}) {
            EXPECT_EQ(isShown("aboutCallout"), isHelping);
            EXPECT_EQ(text("aboutHelpButton"),
                      isHelping ? "Hide Full Disk Access help" : "Full Disk Access help");
            driver->click(driver->centre("aboutHelpButton"));
        }
        driver->click(driver->centre("aboutHelpButton"));
        pressReturn();
        ASSERT_TRUE(goes("aboutView"));
    }
}

TEST_F(AboutTest, TheVersionIsThatOfTheBundleOrTheFirst)
{
    start();
    openAbout();
    EXPECT_EQ(text("aboutVersion"), "Version 1.0.0 (1)");
    pressReturn();
    ASSERT_TRUE(goes("aboutView"));

    // Read anew each time.
    bundle.texts = {{"CFBundleShortVersionString", "2.4"}, {"CFBundleVersion", "117"}};
    openAbout();
    EXPECT_EQ(text("aboutVersion"), "Version 2.4 (117)");
    bundle.texts.clear();
    EXPECT_EQ(text("aboutVersion"), "Version 2.4 (117)");
}

TEST_F(AboutTest, TheLinkAndTheHelpReachTheDesktop)
{
    bundle.place = FileURL("/opt/brisalon");
    fileAccess.isHiding = true;
    start();
    openAbout();
    EXPECT_EQ(text("aboutLink"), "brisalon.app");
    driver->click(driver->centre("aboutLink"));
    EXPECT_EQ(workspace.addresses, std::vector<std::string>{"https://brisalon.app"});

    workspace.addresses.clear();
    openHelp();
    driver->click(driver->centre("showInFinderButton"));
    EXPECT_EQ(workspace.revealed, std::vector{FileURL("/opt/brisalon")});
    driver->click(driver->centre("openSettingsButton"));
    ASSERT_EQ(workspace.addresses.size(), 1U);
    EXPECT_TRUE(workspace.addresses[0].ends_with("?Privacy_AllFiles"));
    EXPECT_TRUE(isOpen());
}

TEST_F(AboutTest, Geometry)
{
    start();
    openAbout();
    driver->click(driver->centre("aboutHelpButton"));
    // The sheet grows with its content.
    ASSERT_TRUE(WindowDriver::waitFor([this] {
        return below("aboutHelpButton", "aboutCallout") > 0 &&
               box("sheetPanel") == box("aboutView");
    }));
    const QRectF sheet = box("aboutView");
    EXPECT_EQ(sheet.width(), 420);
    EXPECT_LE(std::abs(sheet.center().x() - 640), 1);
    EXPECT_LE(std::abs(sheet.center().y() - 410), 1);
    double bottom = sheet.top() + 36 - 20;
    for (const char* const name : {"aboutLogo", "aboutName", "aboutTagline", "aboutLink",
                                   "aboutHelpButton", "aboutCallout", "aboutCloseButton"}) {
        EXPECT_EQ(box(name).top() - bottom, 20) << name;
        EXPECT_LE(std::abs(box(name).center().x() - sheet.center().x()), 1) << name;
        bottom = box(name).bottom();
    }
    EXPECT_EQ(sheet.bottom() - bottom, 36);

    window->resize(960, 700);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return box("aboutView").center().x() == 480; }));
    EXPECT_TRUE(QRectF(0, 0, 960, 700).contains(box("sheetPanel")));
}

} // namespace brisalon::tests
