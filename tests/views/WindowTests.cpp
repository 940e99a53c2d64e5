#include "WindowFixture.h"

#include <QApplication>
#include <QFileDialog>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace brisalon::tests {

using WindowTest = WindowFixture;

TEST_F(WindowTest, ANewcomerMapsTheHomeFolderAndDrillsDown)
{
    home.file("Movies/Summer/beach.mov", 6 * mib);
    home.file("Movies/short.mov", 2 * mib);
    home.file("Music/album.flac", 3 * mib);
    start();
    EXPECT_EQ(window->title(), "Brisalon");
    EXPECT_EQ(window->minimumSize(), QSize(960, 700));
    EXPECT_EQ(window->size(), QSize(1280, 820));
    EXPECT_EQ(text("statusText"), "Ready");
    EXPECT_FALSE(isShown("rescanButton")) << "no header without a map";

    driver->click(driver->centre("scanHomeCard"));
    ASSERT_TRUE(mapAppears());
    EXPECT_TRUE(text("statusText").startsWith("Mapped 11 MB in "));
    EXPECT_FALSE(isShown("scanHomeCard"));
    EXPECT_FALSE(isShown("upButton"));
    EXPECT_FALSE(isShown("selectionSize"));
    EXPECT_TRUE(isShown("mapHint"));
    driver->settle();
    EXPECT_FALSE(isShown("mapTooltip")) << "the pointer has not moved";

    driver->click(block("Music"));
    EXPECT_EQ(state().selected().name(), "Music");
    EXPECT_EQ(text("selectionSize"), "3.0 MB");

    driver->doubleClick(block("Movies"));
    EXPECT_EQ(levelName(), "Movies");
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_FALSE(isShown("mapHint"));
    EXPECT_EQ(text("crumb1"), "Movies");
    driver->doubleClick(block("Summer"));
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_EQ(state().breadcrumbs().size(), 3);

    driver->doubleClick(block("beach.mov"));
    EXPECT_EQ(levelName(), "Summer") << "a file is not entered";
    EXPECT_EQ(state().selected().name(), "beach.mov");

    driver->click(driver->centre("upButton"));
    EXPECT_EQ(levelName(), "Movies");
    ASSERT_TRUE(driver->waitForMap());
    driver->click(driver->centre("crumb0"));
    EXPECT_EQ(state().current(), state().tree());
    EXPECT_FALSE(isShown("upButton"));
}

TEST_F(WindowTest, TheCommandsWorkByTheirShortcutsUnlessAScanRuns)
{
    home.file("a.bin", mib);
    start();
    const auto controlShift = Qt::ControlModifier | Qt::ShiftModifier;
    driver->press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(state().isScanning()) << "there is nothing to scan again";

    gate.holdAfter(0);
    driver->press(Qt::Key_H, controlShift);
    EXPECT_TRUE(state().isScanning());
    EXPECT_TRUE(WindowDriver::waitFor(
        [this] { return text("statusText").startsWith("Scanning · 0 items · "); }));
    driver->press(Qt::Key_M, controlShift);
    EXPECT_EQ(state().scanRoot(), home.url()) << "no other scan while one runs";

    driver->press(Qt::Key_Escape);
    EXPECT_FALSE(state().isScanning());
    gate.open();

    driver->press(Qt::Key_H, controlShift);
    ASSERT_TRUE(mapAppears());
    gate.holdAfter(0);
    driver->press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(state().isScanning());
    EXPECT_TRUE(state().tree());
    driver->click(driver->centre("cancelButton"));
    EXPECT_FALSE(state().isScanning());
    EXPECT_TRUE(state().tree());
}

TEST_F(WindowTest, NoTreeOutlivesItsLastShowing)
{
    home.file("Movies/Summer/beach.mov", 6 * mib);
    home.file("Music/album.flac", 3 * mib);
    start();
    std::vector<std::weak_ptr<const FileNode>> trees;
    const auto living = [&] {
        return std::ranges::count_if(trees, [](const auto& tree) { return !tree.expired(); });
    };
    for (const char* const added : {"first.bin", "second.bin", "third.bin"}) {
        home.file(added, mib);
        state().startScan(home.url());
        ASSERT_TRUE(mapAppears());
        trees.push_back(state().tree().hold());
        EXPECT_TRUE(WindowDriver::waitFor([&] { return living() == 1; })) << living();

        // Everything that reads nodes: the tooltip, the inspector, the list, the crumbs.
        driver->doubleClick(block("Movies"));
        ASSERT_TRUE(driver->waitForMap());
        driver->hover(block("Summer"));
        ASSERT_TRUE(driver->settle());
        clickOn("largeFile0");
        clickOn("crumb0");
        driver->click(block("Music"));
        ASSERT_TRUE(driver->settle());
    }
    EXPECT_EQ(state().selected().name(), "Music");
}

TEST_F(WindowTest, ThePaneShowsWhatThereIs)
{
    home.folder("empty");
    home.file("full/a.bin", mib);
    start();
    const auto scan = [this](const char* folder) {
        state().startScan(FileURL(home.at(folder)));
        ASSERT_TRUE(WindowDriver::waitFor([this] { return !state().isScanning(); }));
    };
    const auto notice = [this](const char* property) {
        return driver->property("notice", property).toString().toStdString();
    };

    gate.holdAfter(0);
    state().startScan(FileURL(home.at("full")));
    EXPECT_TRUE(isShown("scanningWelcome") && !isShown("scanOverlay"));
    gate.open();
    ASSERT_TRUE(mapAppears());

    gate.holdAfter(0);
    state().startScan(FileURL(home.at("full")));
    EXPECT_TRUE(isShown("scanOverlay") && isShown("treemapView")) << "the old map stays";
    EXPECT_FALSE(driver->find("homeTarget")->isEnabled());
    gate.open();
    ASSERT_TRUE(mapAppears());
    EXPECT_FALSE(isShown("scanOverlay"));

    scan("empty");
    EXPECT_EQ(notice("title"), "Empty folder");
    EXPECT_EQ(notice("detail"), home.at("empty"));
    // An error does not take the place of a tree, but of none.
    home.remove("empty");
    scan("empty");
    EXPECT_EQ(notice("title"), "Empty folder");
    scan("missing");
    EXPECT_EQ(notice("title"), "Scan failed");
    EXPECT_EQ(notice("detail"), "That folder no longer exists.");
    EXPECT_EQ(text("statusText"), "That folder no longer exists.");

    // The failure can be left behind by key and by pointer.
    driver->press(Qt::Key_Escape);
    EXPECT_TRUE(isShown("welcomeStack"));
    scan("missing");
    clickOn("notice");
    EXPECT_TRUE(isShown("welcomeStack"));
}

TEST_F(WindowTest, TheWelcomeScreenMarksTheLastTargetAndOnlyARememberedOne)
{
    const auto marked = [this] {
        std::string cards;
        for (const char* const card : {"scanHomeCard", "scanThisMacCard", "chooseFolderCard"})
            cards += driver->property(card, "isLastUsed").toBool() ? '1' : '0';
        return cards;
    };
    start();
    EXPECT_EQ(marked(), "000");
    EXPECT_EQ(driver->property("scanThisMacCard", "subtitle"),
              "Full disk map including system areas");

    for (const auto& [kind, cards] : {std::pair{"home", "100"}, {"thisMac", "010"}}) {
        store.setText("lastScanTargetKind", kind);
        start();
        EXPECT_EQ(marked(), cards);
    }
    store.setText("lastScanTargetKind", "custom");
    store.setText("lastScanRootPath", "/somewhere");
    start();
    EXPECT_EQ(marked(), "001");
}

TEST_F(WindowTest, TheKeyboardAloneScansZoomsInAndGoesUp)
{
    home.file("Movies/a.mov", 2 * mib);
    start();
    ASSERT_TRUE(reaches("scanHomeCard"));
    driver->press(Qt::Key_Return);
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().tree()->id(), home.path());

    // The map has the focus by itself.
    driver->press(Qt::Key_Right);
    EXPECT_EQ(state().selected().name(), "Movies");
    driver->press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "Movies");
    ASSERT_TRUE(driver->waitForMap());
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(state().current(), state().tree());
}

TEST_F(WindowTest, FollowsThePointerByHandWhereNoWindowManagerMovesAndResizesIt)
{
    start();
    const auto drag = [this](QPoint from, QPoint by) {
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, from);
        // In the window's own coordinates, which move along with it.
        QTest::mouseMove(window, from + by / 2);
        QTest::mouseMove(window, from + by);
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, from + by);
    };
    const QPoint position = window->position();
    drag(QPoint(40, 600), QPoint(30, 20));
    EXPECT_NE(window->position(), position);

    const QRect before = window->geometry();
    drag(QPoint(1279, 400), QPoint(-40, 0));
    EXPECT_LT(window->width(), before.width());
    EXPECT_EQ(window->height(), before.height());
    EXPECT_EQ(window->position(), before.topLeft());
    drag(QPoint(window->width() - 1, window->height() - 1), QPoint(-600, -400));
    EXPECT_EQ(window->size(), window->minimumSize());
    EXPECT_EQ(window->position(), before.topLeft());
}

TEST_F(WindowTest, ADoubleClickZoomsTheWindowOnItsTopBandOnly)
{
    start();
    driver->doubleClick(QPoint(124, 600));
    EXPECT_NE(window->visibility(), QWindow::Maximized);
    driver->doubleClick(QPoint(124, 20));
    EXPECT_EQ(window->visibility(), QWindow::Maximized);
    driver->doubleClick(QPoint(124, 20));
    EXPECT_EQ(window->visibility(), QWindow::Windowed);
}

TEST_F(WindowTest, TheFolderPanelScansTheFolderThatItNamesAndNothingWhenDismissed)
{
    home.file("Movies/a.mov", 2 * mib);
    start();
    const auto panel = [] {
        QFileDialog* shown = nullptr;
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const dialog = qobject_cast<QFileDialog*>(widget);
                dialog && widget->isVisible())
                shown = dialog;
        return shown;
    };
    driver->press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel() != nullptr; }));
    EXPECT_TRUE(panel()->isModal());
    EXPECT_EQ(panel()->labelText(QFileDialog::Accept), "Scan");
    EXPECT_EQ(panel()->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(panel()->directory().path().toStdString(), home.path());
    panel()->reject();
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel() == nullptr; }));
    EXPECT_FALSE(state().isScanning());

    state().pickFolderAndScan();
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel() != nullptr; }));
    EXPECT_EQ(panel()->directory().path().toStdString(), home.path());
    panel()->selectFile(QString::fromStdString(home.at("Movies")));
    QMetaObject::invokeMethod(panel(), "accept");
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().scanRoot().path(), home.at("Movies"));
}

TEST_F(WindowTest, NamesAreShownAsTheyAreAndNeverAsMarkup)
{
    home.file("<b>bold<br>\nsecond line/a.bin", mib);
    home.file("caf\xe9/b.bin", 2 * mib);
    startWithMap();
    driver->doubleClick(block("caf\xe9"));
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_EQ(text("crumb1"), QString("caf\ufffd"));
    driver->click(driver->centre("crumb0"));
    ASSERT_TRUE(driver->waitForMap());

    driver->doubleClick(block("<b>bold<br>\nsecond line"));
    ASSERT_TRUE(driver->waitForMap());
    EXPECT_EQ(text("crumb1"), "<b>bold<br> second line");
    EXPECT_LT(box("crumb1").height(), 30) << "one line";
}

} // namespace brisalon::tests
