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
        start();
        app->state().startScan(home.url());
        ASSERT_TRUE(mapAppears());
    }

    QString focused() const
    {
        const QQuickItem* const item = window->activeFocusItem();
        return item ? item->objectName() : QString();
    }

    bool tabTo(const QString& name)
    {
        for (int tabs = 0; tabs < 60 && focused() != name; ++tabs)
            driver->press(Qt::Key_Tab);
        return focused() == name;
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
    app->state().zoom(FileNodeValue(app->state().tree()->children()[0]));
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(tabTo("upButton"));
    driver->press(Qt::Key_Space);
    EXPECT_EQ(driver->find("upButton"), nullptr);
    EXPECT_TRUE(isSeenOnTheMap());

    // The mark of the keyboard is for those who use it.
    app->state().zoom(FileNodeValue(app->state().tree()->children()[0]));
    ASSERT_TRUE(driver->waitForMap());
    driver->click(driver->centre("upButton"));
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_TRUE(WindowDriver::waitFor([this] { return isOnTheMap(); }));
    EXPECT_FALSE(window->activeFocusItem()->property("focusVisible").toBool());

    gate.holdAfter(0);
    app->state().startScan(home.url());
    ASSERT_TRUE(tabTo("cancelButton"));
    driver->press(Qt::Key_Return);
    EXPECT_FALSE(app->state().isScanning());
    EXPECT_TRUE(isSeenOnTheMap());
    gate.open();
}

TEST_F(KeyboardTest, TheMapKeepsTheKeyboardFromLevelToLevel)
{
    openAndScan();
    for (const char* const folder : {"Movies", "Summer"}) {
        driver->press(Qt::Key_Right);
        EXPECT_EQ(app->state().selected().name(), folder);
        driver->press(Qt::Key_Return);
        EXPECT_EQ(levelName(), folder);
        EXPECT_TRUE(isSeenOnTheMap());
        ASSERT_TRUE(driver->waitForMap());
        // The old level's map is gone by then.
        QTest::qWait(500);
    }
    driver->press(Qt::Key_Right);
    EXPECT_EQ(app->state().selected().name(), "a.mov");
}

TEST_F(KeyboardTest, ACrumbKeepsTheKeyboardWhenItIsJumpedTo)
{
    openAndScan();
    app->state().zoom(FileNodeValue(app->state().tree()->children()[0]));
    app->state().zoom(FileNodeValue(app->state().current()->children()[0]));
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(tabTo("crumb1"));
    driver->press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_TRUE(isSeenOn("crumb1"));
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(app->state().current(), app->state().tree());
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
    app->state().setSidebarTab(SidebarTab::snapshots);
    for (const char* const next : {"deleteSnapshotButton", "refreshSnapshotsButton"}) {
        ASSERT_TRUE(tabTo("deleteSnapshotButton"));
        driver->press(Qt::Key_Return);
        driver->press(Qt::Key_Backtab, Qt::ShiftModifier);
        ASSERT_EQ(focused(), "confirmButton");
        driver->press(Qt::Key_Return);
        EXPECT_TRUE(isSeenOn(next));
    }
    EXPECT_TRUE(app->state().snapshots().isEmpty());
}

TEST_F(KeyboardTest, DeleteAsksForTheSelectionWhereverTheKeyboardIs)
{
    openAndScan();
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(app->state().confirmTrash()) << "nothing is selected";
    driver->press(Qt::Key_Right);
    ASSERT_EQ(app->state().selected().name(), "Movies");
    driver->press(Qt::Key_Delete);
    ASSERT_TRUE(app->state().confirmTrash());
    EXPECT_EQ(app->state().confirmTrash()->urls, std::vector{FileURL(home.at("Movies"))});
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(isSeenOnTheMap());
    const auto stopsAsking = [this] {
        return WindowDriver::waitFor([this] { return !driver->find("confirmationTitle"); });
    };
    ASSERT_TRUE(stopsAsking());

    ASSERT_TRUE(tabTo("revealButton"));
    driver->press(Qt::Key_Delete);
    EXPECT_TRUE(app->state().confirmTrash());
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(isSeenOn("revealButton"));
    ASSERT_TRUE(stopsAsking());

    gate.holdAfter(0);
    driver->press(Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(app->state().isScanning());
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(app->state().confirmTrash());
    gate.open();
    ASSERT_TRUE(mapAppears());
}

TEST_F(KeyboardTest, TheMenuKeepsTheKeysToItself)
{
    openAndScan();
    app->state().zoom(FileNodeValue(app->state().tree()->children()[0]));
    ASSERT_TRUE(driver->waitForMap());
    ASSERT_TRUE(tabTo("menuButton"));
    driver->press(Qt::Key_Space);
    ASSERT_TRUE(WindowDriver::waitFor([this] { return driver->find("aboutEntry"); }));
    EXPECT_EQ(driver->find("aboutEntry")->y() - driver->find("scanAgainEntry")->y(), 28 + 11)
        << "a line between the groups";
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(levelName(), "Movies");
    driver->press(Qt::Key_Delete);
    EXPECT_FALSE(app->state().confirmTrash());
    gate.holdAfter(0);
    app->state().startScan(home.url());
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(app->state().isScanning()) << "Escape closes the menu";
    EXPECT_TRUE(WindowDriver::waitFor([this] { return !driver->find("aboutEntry"); }));
    EXPECT_TRUE(isSeenOn("menuButton"));
    gate.open();
    ASSERT_TRUE(mapAppears());
}

TEST_F(KeyboardTest, EveryStopOfTabIsSeen)
{
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
