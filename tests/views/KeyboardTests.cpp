#include "WindowFixture.h"
#include "support/Script.h"

#include <QTest>

namespace brisalon::tests {

/// Where the keyboard is, and that those who use it see it.
class KeyboardTest : public WindowFixture {
protected:
    void openAndScan()
    {
        home.file("Movies/Summer/a.mov", 3 * mib);
        home.file("Movies/b.mov", 2 * mib);
        home.file("Music/c.flac", mib);
        startWithMap();
    }

    bool isOnTheMap() const
    {
        const QQuickItem* const item = window->activeFocusItem();
        return item && item->inherits("brisalon::TreemapCanvas") && item->isVisible();
    }

    bool isSeenOn(const QString& name)
    {
        return WindowDriver::waitFor(
            [&] { return focused() == name && driver->property(name, "visualFocus").toBool(); });
    }

    bool isSeenOnTheMap()
    {
        return WindowDriver::waitFor([this] {
            return isOnTheMap() && window->activeFocusItem()->property("focusVisible").toBool();
        });
    }
};

TEST_F(KeyboardTest, WhatGoesAwayUnderTheKeyboardLeavesItToTheMap)
{
    openAndScan();
    zoomIntoFirstOf(state().tree());
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(reaches("upButton"));
    driver->press(Qt::Key_Space);
    EXPECT_EQ(driver->find("upButton"), nullptr);
    EXPECT_TRUE(isSeenOnTheMap());

    // The mark of the keyboard is for those who use it.
    zoomIntoFirstOf(state().tree());
    ASSERT_TRUE(driver->waitForMap());
    driver->click(driver->centre("upButton"));
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_TRUE(WindowDriver::waitFor([this] { return isOnTheMap(); }));
    EXPECT_FALSE(window->activeFocusItem()->property("focusVisible").toBool());

    gate.holdAfter(0);
    state().startScan(home.url());
    ASSERT_TRUE(reaches("cancelButton"));
    driver->press(Qt::Key_Return);
    EXPECT_FALSE(state().isScanning());
    EXPECT_TRUE(isSeenOnTheMap());
    gate.open();
}

TEST_F(KeyboardTest, TheMapKeepsTheKeyboardFromLevelToLevel)
{
    openAndScan();
    for (const char* const folder : {"Movies", "Summer"}) {
        driver->press(Qt::Key_Right);
        EXPECT_EQ(state().selected().name(), folder);
        driver->press(Qt::Key_Return);
        EXPECT_EQ(levelName(), folder);
        EXPECT_TRUE(isSeenOnTheMap());
        ASSERT_TRUE(driver->waitForMap());
        ASSERT_TRUE(WindowDriver::waitFor([this] {
            return driver->find("mapPanel")->findChildren<QQuickItem*>("treemapView").size() == 1;
        })) << "the old level's map goes";
    }
    driver->press(Qt::Key_Right);
    EXPECT_EQ(state().selected().name(), "a.mov");
}

TEST_F(KeyboardTest, ACrumbKeepsTheKeyboardWhenItIsJumpedTo)
{
    openAndScan();
    zoomIntoFirstOf(state().tree());
    zoomIntoFirstOf(state().current());
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(reaches("crumb1"));
    driver->press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_TRUE(isSeenOn("crumb1"));
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(state().current(), state().tree());
    EXPECT_TRUE(isSeenOn("crumb0"));
}

TEST_F(KeyboardTest, ADeletedSnapshotLeavesTheKeyboardInItsList)
{
    TemporaryTree tools;
    const std::string deleted = tools.at("deleted");
    snapshots = SnapshotService(
        script(tools, "tool",
               "case $1 in list*) [ -e " + deleted + ".2 ] || echo 2024-01-16-123456\n" + "[ -e " +
                   deleted + ".1 ] || echo 2024-01-15-123456;;\n" + "*) [ -e " + deleted +
                   ".1 ] && touch " + deleted + ".2; touch " + deleted + ".1;; esac"));
    openAndScan();
    state().setSidebarTab(SidebarTab::Snapshots);
    for (const char* const next : {"deleteSnapshotButton", "refreshSnapshotsButton"}) {
        ASSERT_TRUE(reaches("deleteSnapshotButton"));
        driver->press(Qt::Key_Return);
        driver->press(Qt::Key_Backtab, Qt::ShiftModifier);
        ASSERT_EQ(focused(), "confirmButton");
        driver->press(Qt::Key_Return);
        EXPECT_TRUE(isSeenOn(next));
    }
    EXPECT_TRUE(state().snapshots().isEmpty());
}

TEST_F(KeyboardTest, DeleteAsksForWhatTheRingShows)
{
    openAndScan();
    const FileURL block = home.url().appendingPathComponent("Movies");
    const FileURL file = block.appendingPathComponent("Summer").appendingPathComponent("a.mov");
    const auto asked = [this] {
        driver->press(Qt::Key_Delete);
        const auto urls =
            state().confirmTrash() ? state().confirmTrash()->urls : std::vector<FileURL>();
        driver->press(Qt::Key_Escape);
        EXPECT_TRUE(goes("confirmationTitle"));
        return urls;
    };
    driver->press(Qt::Key_Right);
    ASSERT_TRUE(reaches("largeFile0"));
    EXPECT_EQ(asked(), std::vector{file}) << "not the block from before";
    home.remove("Movies/Summer/a.mov");
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(asked(), std::vector<FileURL>()) << "not its neighbour after a move";
    while (!isOnTheMap())
        driver->press(Qt::Key_Tab);
    EXPECT_EQ(asked(), std::vector{block}) << "not what is ticked in the list";
}

TEST_F(KeyboardTest, DeleteAsksForTheSelectionWhereverTheKeyboardIs)
{
    openAndScan();
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(state().confirmTrash()) << "nothing is selected";
    driver->press(Qt::Key_Right);
    ASSERT_EQ(state().selected().name(), "Movies");
    driver->press(Qt::Key_Delete);
    ASSERT_TRUE(state().confirmTrash());
    EXPECT_EQ(state().confirmTrash()->urls, std::vector{FileURL(home.at("Movies"))});
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(isSeenOnTheMap());
    ASSERT_TRUE(goes("confirmationTitle"));

    ASSERT_TRUE(reaches("revealButton"));
    driver->press(Qt::Key_Delete);
    EXPECT_TRUE(state().confirmTrash());
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(isSeenOn("revealButton"));
    ASSERT_TRUE(goes("confirmationTitle"));

    gate.holdAfter(0);
    driver->press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(state().isScanning());
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(state().confirmTrash());
    gate.open();
    ASSERT_TRUE(mapAppears());
}

TEST_F(KeyboardTest, TheMenuKeepsTheKeysToItself)
{
    openAndScan();
    zoomIntoFirstOf(state().tree());
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(reaches("menuButton"));
    driver->press(Qt::Key_Space);
    ASSERT_TRUE(appears("aboutEntry"));
    EXPECT_EQ(driver->find("aboutEntry")->y() - driver->find("scanAgainEntry")->y(), 28 + 11)
        << "a line between the groups";
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Up}) {
        driver->press(key);
        EXPECT_EQ(focused() == "aboutEntry", key == Qt::Key_Up) << "from end to end";
    }
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(levelName(), "Movies");
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(state().confirmTrash());
    gate.holdAfter(0);
    state().startScan(home.url());
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(state().isScanning()) << "Escape closes the menu";
    EXPECT_TRUE(goes("aboutEntry"));
    EXPECT_TRUE(isSeenOn("menuButton"));
    gate.open();
    ASSERT_TRUE(mapAppears());
}

TEST_F(KeyboardTest, EveryStopOfTabIsSeen)
{
    start();
    driver->press(Qt::Key_Tab);
    EXPECT_NE(focused(), "closeButton") << "what ends the program comes last";
    openAndScan();
    driver->press(Qt::Key_Right);
    driver->press(Qt::Key_Tab);
    const QQuickItem* const first = window->activeFocusItem();
    int stops = 0;
    do {
        const QQuickItem* const item = window->activeFocusItem();
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->isVisible() && item->isEnabled()) << focused().toStdString();
        EXPECT_TRUE(QRectF(QPointF(), window->size())
                        .intersects(item->mapRectToScene(item->boundingRect())))
            << focused().toStdString();
        driver->press(Qt::Key_Tab);
    } while (window->activeFocusItem() != first && ++stops < 60);
    EXPECT_LT(stops, 60);
    EXPECT_GT(stops, 12);
}

} // namespace brisalon::tests
