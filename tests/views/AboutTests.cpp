#include "Rendered.h"
#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"

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

    bool appears(const char* name) const
    {
        return WindowDriver::waitFor([this, name] { return driver->find(name) != nullptr; });
    }
    bool goes() const
    {
        return WindowDriver::waitFor([this] { return driver->find("aboutView") == nullptr; });
    }
    bool isShown() const { return window->property("showAbout").toBool(); }

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
            EXPECT_FALSE(isShown());
            ASSERT_TRUE(goes());
        }
    }
    EXPECT_TRUE(workspace.addresses.empty()) << "Return presses none of the buttons";
}

TEST_F(AboutTest, TheHelpIsClosedAtEachOpening)
{
    start();
    for (int opening = 0; opening < 2; ++opening) {
        openAbout();
        EXPECT_EQ(driver->find("aboutCallout"), nullptr);
        EXPECT_EQ(text("aboutHelpButton"), "Full Disk Access help");
        driver->click(driver->centre("aboutHelpButton"));
        EXPECT_NE(driver->find("aboutCallout"), nullptr);
        EXPECT_EQ(text("aboutHelpButton"), "Hide Full Disk Access help");
        pressReturn();
        ASSERT_TRUE(goes());
    }

    openAbout();
    driver->click(driver->centre("aboutHelpButton"));
    driver->click(driver->centre("aboutHelpButton"));
    EXPECT_EQ(driver->find("aboutCallout"), nullptr);
}

TEST_F(AboutTest, TheVersionIsThatOfTheBundleOrTheFirst)
{
    start();
    openAbout();
    EXPECT_EQ(text("aboutVersion"), "Version 1.0.0 (1)");
    pressReturn();
    ASSERT_TRUE(goes());

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
    EXPECT_TRUE(isShown());
}

TEST_F(AboutTest, GeometryAndFonts)
{
    start();
    openAbout();
    driver->click(driver->centre("aboutHelpButton"));
    // The sheet grows with its content.
    const Rendered shown(*window);
    ASSERT_TRUE(WindowDriver::waitFor([&] {
        return shown.box("aboutCallout").top() > shown.box("aboutHelpButton").bottom() &&
               shown.box("sheetPanel").height() == shown.box("aboutView").height();
    }));
    const QRectF sheet = shown.box("aboutView");
    EXPECT_EQ(sheet, shown.box("sheetPanel"));
    EXPECT_EQ(driver->property("sheetPanel", "color"), Theme::panel());
    EXPECT_EQ(sheet.width(), 420);
    EXPECT_LE(std::abs(sheet.center().x() - 640), 1);
    EXPECT_LE(std::abs(sheet.center().y() - 410), 1);

    QRectF previous(sheet.left(), sheet.top() + 36 - 20, 0, 0);
    for (const char* const name : {"aboutLogo", "aboutName", "aboutTagline", "aboutLink",
                                   "aboutHelpButton", "aboutCallout", "aboutCloseButton"}) {
        const QRectF box = shown.box(name);
        EXPECT_EQ(box.top() - previous.bottom(), 20) << name;
        EXPECT_LE(std::abs(box.center().x() - sheet.center().x()), 1) << name;
        previous = box;
    }
    EXPECT_EQ(sheet.bottom() - previous.bottom(), 36);
    EXPECT_EQ(shown.box("aboutLogo").size(), QSizeF(80, 80));
    EXPECT_EQ(shown.box("aboutTagline").width(), 300);
    EXPECT_EQ(shown.box("aboutCallout").width(), 340);
    EXPECT_EQ(shown.box("aboutVersion").top() - shown.box("aboutWordmark").bottom(), 4);

    shown.expectText("Version 1.0.0 (1)", Theme::system(12), Theme::muted());
    shown.expectText("See your Mac as a map. Reclaim the big blocks.", Theme::system(13),
                     Theme::textSecondary());
    shown.expectText("brisalon.app", Theme::system(12, QFont::DemiBold), Theme::accent());
    shown.expectText("Hide Full Disk Access help", Theme::system(13), Theme::accent());

    window->resize(960, 700);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return shown.box("aboutView").center().x() == 480; }));
    EXPECT_TRUE(QRectF(0, 0, 960, 700).contains(shown.box("sheetPanel")));
}

} // namespace brisalon::tests
