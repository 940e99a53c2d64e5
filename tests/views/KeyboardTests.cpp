#include "WindowFixture.h"
#include "support/Files.h"
#include "support/Script.h"

namespace brisalon::tests {

/// Where the keyboard is, and that those who use it see it.
class KeyboardTest : public WindowFixture {
protected:
    const std::vector<File> files{
        {"Movies/Summer/a.mov", 3}, {"Movies/b.mov", 2}, {"Music/c.flac", 1}};

    void openAndScan() { startWithMap(files); }
};

TEST_F(KeyboardTest, AloneItScansZoomsInAndStaysOnTheMap)
{
    for (const File& file : files)
        home.file(file.path, file.size * mib);
    start();
    ASSERT_TRUE(reaches("scanHomeCard"));
    press(Qt::Key_Return);
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().tree()->id(), home.path());
    // The map has the focus by itself.
    for (const char* const folder : {"Movies", "Summer"}) {
        press(Qt::Key_Right);
        EXPECT_EQ(state().selected().name(), folder);
        press(Qt::Key_Return);
        EXPECT_EQ(levelName(), folder);
        EXPECT_TRUE(isFocusSeen());
        ASSERT_TRUE(driver->waitForMap());
        ASSERT_TRUE(waitFor([this] {
            return driver->find("mapPanel")->findChildren<QQuickItem*>("treemapView").size() == 1;
        })) << "the old level's map goes";
    }
    // A crumb keeps it when it is jumped to.
    ASSERT_TRUE(reaches("crumb0"));
    press(Qt::Key_Return);
    EXPECT_EQ(state().current(), state().tree());
    EXPECT_TRUE(isFocusSeen("crumb0"));
    zoomIntoFirstOf(state().tree());
    EXPECT_TRUE(isFocusSeen("crumb1"));
    press(Qt::Key_Backspace);
    EXPECT_EQ(state().current(), state().tree());
    EXPECT_TRUE(isFocusSeen("crumb0"));
}

TEST_F(KeyboardTest, WhatGoesAwayUnderTheKeyboardLeavesItToTheMap)
{
    openAndScan();
    zoomIntoFirstOf(state().tree());
    ASSERT_TRUE(reaches("upButton"));
    press(Qt::Key_Space);
    EXPECT_FALSE(isShown("upButton"));
    EXPECT_TRUE(isFocusSeen());

    // The mark of the keyboard is for those who use it.
    zoomIntoFirstOf(state().tree());
    clickOn("upButton");
    EXPECT_TRUE(waitFor([this] { return isFocusOnMap(); }));
    EXPECT_FALSE(window->activeFocusItem()->property("focusVisible").toBool());

    beginScan();
    ASSERT_TRUE(reaches("cancelButton"));
    press(Qt::Key_Return);
    EXPECT_FALSE(state().isScanning());
    EXPECT_TRUE(isFocusSeen());
    gate.open();
}

TEST_F(KeyboardTest, ADeletedSnapshotLeavesTheKeyboardInItsList)
{
    tools.file("deleted");
    const char* const tool = R"(case $1 in
        listlocalsnapshots) printf '2024-01-16-123456\n2024-01-15-123456\n' | grep -vf deleted;;
        deletelocalsnapshots) echo $2 >> deleted;;
    esac)";
    snapshots = SnapshotService(script(tools, "tool", "cd " + tools.path() + '\n' + tool));
    openAndScan();
    state().setSidebarTab(SidebarTab::Snapshots);
    for (const char* const next : {"deleteSnapshotButton", "refreshSnapshotsButton"}) {
        const std::string token = state().snapshots().first()->dateToken;
        ASSERT_TRUE(reaches("deleteSnapshotButton"));
        press(Qt::Key_Return);
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        ASSERT_EQ(focused(), "confirmButton");
        press(Qt::Key_Return);
        EXPECT_TRUE(isFocusSeen(next));
        EXPECT_TRUE(contents(tools.at("deleted")).ends_with(token + '\n'));
        EXPECT_EQ(text("statusText").toStdString(), "Deleted local snapshot " + token + ".");
    }
    EXPECT_TRUE(state().snapshots().isEmpty());
}

TEST_F(KeyboardTest, DeleteAsksForWhatTheRingShows)
{
    openAndScan();
    const std::vector none = std::vector<FileURL>();
    const std::vector block{FileURL(home.at("Movies"))};
    const std::vector file{FileURL(home.at("Movies/Summer/a.mov"))};
    const auto asked = [this] {
        press(Qt::Key_Delete);
        const auto urls =
            state().confirmTrash() ? state().confirmTrash()->urls : std::vector<FileURL>();
        press(Qt::Key_Escape);
        EXPECT_TRUE(goes("confirmationTitle"));
        return urls;
    };
    EXPECT_EQ(asked(), none) << "nothing is selected";
    press(Qt::Key_Right);
    EXPECT_EQ(asked(), block);
    EXPECT_TRUE(isFocusSeen());
    ASSERT_TRUE(reaches("largeFile0"));
    EXPECT_EQ(asked(), file) << "not the block from before";
    home.remove("Movies/Summer/a.mov");
    state().startScan(home.url());
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(asked(), none) << "not its neighbour after a move";
    while (!isFocusOnMap())
        press(Qt::Key_Tab);
    EXPECT_EQ(asked(), block) << "not what is ticked in the list";

    gate.holdAfter(0);
    press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(state().isScanning());
    press(Qt::Key_Delete);
    EXPECT_FALSE(state().confirmTrash());
    endScan();
}

TEST_F(KeyboardTest, TheMenuKeepsTheKeysToItself)
{
    openAndScan();
    zoomIntoFirstOf(state().tree());
    ASSERT_TRUE(reaches("menuButton"));
    press(Qt::Key_Space);
    ASSERT_TRUE(appears("aboutEntry"));
    EXPECT_EQ(driver->find("rescanLevelEntry")->y() - driver->find("scanAgainEntry")->y(), 28 + 11)
        << "a line between the groups";
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Up}) {
        press(key);
        EXPECT_EQ(focused() == "aboutEntry", key == Qt::Key_Up) << "from end to end";
    }
    press(Qt::Key_Backspace);
    EXPECT_EQ(levelName(), "Movies");
    press(Qt::Key_Delete);
    EXPECT_FALSE(state().confirmTrash());
    beginScan();
    press(Qt::Key_Escape);
    EXPECT_TRUE(state().isScanning()) << "Escape closes the menu";
    EXPECT_TRUE(goes("aboutEntry"));
    EXPECT_TRUE(isFocusSeen("menuButton"));
    endScan();
}

TEST_F(KeyboardTest, EveryStopOfTabIsSeen)
{
    start();
    press(Qt::Key_Tab);
    EXPECT_NE(focused(), "closeButton") << "what ends the program comes last";
    openAndScan();
    press(Qt::Key_Right);
    press(Qt::Key_Tab);
    const QQuickItem* const first = window->activeFocusItem();
    int stops = 0;
    do {
        const QQuickItem* const item = window->activeFocusItem();
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->isVisible() && item->isEnabled()) << focused().toStdString();
        EXPECT_TRUE(QRectF(QPointF(), window->size())
                        .intersects(item->mapRectToScene(item->boundingRect())))
            << focused().toStdString();
        press(Qt::Key_Tab);
    } while (window->activeFocusItem() != first && ++stops < 60);
    EXPECT_LT(stops, 60);
    EXPECT_GT(stops, 12);
}

} // namespace brisalon::tests
