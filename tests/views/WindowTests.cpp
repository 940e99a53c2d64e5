#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"

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
    EXPECT_EQ(window->minimumSize(), QSize(960, 700));
    EXPECT_EQ(window->size(), QSize(1280, 820));
    EXPECT_EQ(text("statusText"), "Ready");
    EXPECT_FALSE(isShown("rescanButton")) << "no header without a map";

    clickOn("scanHomeCard");
    ASSERT_TRUE(mapAppears());
    EXPECT_TRUE(text("statusText").startsWith("Mapped 11 MB in "));
    driver->settle();
    for (const char* const absent : {"scanHomeCard", "upButton", "selectionSize", "mapTooltip"})
        EXPECT_FALSE(isShown(absent)) << absent;
    EXPECT_TRUE(isShown("mapHint"));

    clickBlock("Music");
    EXPECT_EQ(state().selected().name(), "Music");
    EXPECT_EQ(text("selectionSize"), "3.0 MB");
    enterBlock("Movies");
    EXPECT_EQ(text("crumb1"), "Movies");
    enterBlock("Summer");
    EXPECT_FALSE(isShown("mapHint"));
    EXPECT_EQ(state().breadcrumbs().size(), 3);
    enterBlock("beach.mov");
    EXPECT_EQ(levelName(), "Summer") << "a file is not entered";
    EXPECT_EQ(state().selected().name(), "beach.mov");

    clickOn("upButton");
    EXPECT_EQ(levelName(), "Movies");
    clickOn("crumb0");
    EXPECT_EQ(state().current(), state().tree());
    EXPECT_FALSE(isShown("upButton"));
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
        EXPECT_TRUE(waitFor([&] { return living() == 1; })) << living();

        // Everything that reads nodes: the tooltip, the inspector, the list, the crumbs.
        enterBlock("Movies");
        driver->hover(block("Summer"));
        clickOn("largeFile0");
        clickOn("crumb0");
        clickBlock("Music");
        ASSERT_TRUE(driver->settle());
    }
    EXPECT_EQ(state().selected().name(), "Music");
}

TEST_F(WindowTest, ThePaneShowsWhatThereIs)
{
    home.folder("empty");
    home.file("a.bin", mib);
    start();
    const auto notice = [this] {
        return property("notice", "title").toString() + ": " +
               property("notice", "detail").toString();
    };
    const auto tint = [this] { return property("notice", "tint").value<QColor>(); };

    gate.holdAfter(0);
    press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(state().isScanning());
    EXPECT_TRUE(waitFor([this] { return text("statusText").startsWith("Scanning · 0 items · "); }));
    EXPECT_TRUE(isShown("scanningWelcome") && !isShown("scanOverlay"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(state().isScanning());
    EXPECT_TRUE(isShown("welcomeStack"));
    gate.open();
    press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(mapAppears());

    gate.holdAfter(0);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(isShown("scanOverlay") && isShown("treemapView")) << "the old map stays";
    clickOn("cancelButton");
    EXPECT_FALSE(state().isScanning() || isShown("scanOverlay"));
    EXPECT_TRUE(isShown("treemapView"));
    gate.open();

    scan("empty");
    EXPECT_EQ(notice().toStdString(), "Empty folder: " + home.at("empty"));
    EXPECT_EQ(tint(), Theme::muted());
    // An error does not take the place of a tree, but of none.
    home.remove("empty");
    scan("empty");
    EXPECT_TRUE(notice().startsWith("Empty folder"));
    scan("missing");
    EXPECT_EQ(notice(), "Scan failed: That folder no longer exists.");
    EXPECT_EQ(tint(), Theme::danger());
    EXPECT_EQ(text("statusText"), "That folder no longer exists.");

    // The failure can be left behind by key and by pointer.
    press(Qt::Key_Escape);
    EXPECT_TRUE(isShown("welcomeStack"));
    scan("missing");
    clickOn("notice");
    EXPECT_TRUE(isShown("welcomeStack"));
}

TEST_F(WindowTest, TheWelcomeScreenMarksTheLastTargetAndOnlyARememberedOne)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", "000"}, {"home", "100"}, {"thisMac", "010"}, {"custom", "001"}};
    for (const auto& [kind, marked] : rows) {
        if (*kind)
            store.setText("lastScanTargetKind", kind);
        store.setText("lastScanRootPath", "/somewhere");
        start();
        std::string cards;
        for (const char* const card : {"scanHomeCard", "scanThisMacCard", "chooseFolderCard"})
            cards += property(card, "isLastUsed").toBool() ? '1' : '0';
        EXPECT_EQ(cards, marked);
        EXPECT_EQ(isShown("Last used"), *kind != 0);
    }
}

TEST_F(WindowTest, MovesResizesAndZoomsByHandWhereNoWindowManagerDoesIt)
{
    start();
    const QPoint position = window->position();
    // In the window's own coordinates, which move along with it.
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

    // On its top band only.
    for (const auto& [y, shown] :
         {std::pair{600, QWindow::Windowed}, {20, QWindow::Maximized}, {20, QWindow::Windowed}}) {
        driver->doubleClick(QPoint(124, y));
        EXPECT_EQ(window->visibility(), shown);
    }
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
    for (const bool isDismissed : {true, false}) {
        // The window has no keyboard after the first, as nobody manages windows here.
        isDismissed ? press(Qt::Key_O, Qt::ControlModifier) : state().pickFolderAndScan();
        ASSERT_TRUE(waitFor([&] { return panel() != nullptr; }));
        EXPECT_EQ(panel()->labelText(QFileDialog::Accept), "Scan");
        EXPECT_EQ(panel()->directory().path().toStdString(), home.path());
        panel()->selectFile(QString::fromStdString(home.at("Movies")));
        QMetaObject::invokeMethod(panel(), isDismissed ? "reject" : "accept");
        ASSERT_TRUE(waitFor([&] { return panel() == nullptr; }));
        EXPECT_EQ(state().isScanning() || state().tree(), !isDismissed);
    }
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().scanRoot().path(), home.at("Movies"));
}

} // namespace brisalon::tests
