// What every desktop program offers: context menus, copying, dropping.

#include "WindowFixture.h"

#include <QAccessible>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>
#include <QUrl>

namespace brisalon::tests {

class HabitsTest : public WindowFixture {
protected:
    /// The entries of the context menu that is open; empty when none is.
    std::string entries() const
    {
        std::string names;
        for (const char* const name :
             {"zoomIn", "reveal", "openTerminal", "rescanFolder", "copyPath", "moveToTrash"})
            if (isShown(QString(name) + "Entry"))
                names += std::string(name) + ' ';
        return names;
    }
    std::string entriesAfterRightClick(QPoint point)
    {
        QTest::mouseClick(window, Qt::RightButton, Qt::NoModifier, point);
        EXPECT_TRUE(driver->settle());
        return entries();
    }
    void choose(const char* name)
    {
        clickOn(QString(name) + "Entry");
        EXPECT_TRUE(waitFor([&] { return entries().empty(); }));
    }
    static std::string copied() { return QGuiApplication::clipboard()->text().toStdString(); }
};

TEST_F(HabitsTest, ARightClickOrAKeyOpensTheCommandsThatApply)
{
    const char* const ofFolders = "zoomIn reveal openTerminal rescanFolder copyPath moveToTrash ";
    home.file("Movies/small.txt", 10);
    startWithMap({{"Movies/a.mov", 9}, {"Movies/b.mov", 3}});
    EXPECT_EQ(entriesAfterRightClick(block("Movies")), ofFolders);
    EXPECT_EQ(state().selected().name(), "Movies");
    choose("zoomIn");
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_EQ(entriesAfterRightClick(block("b.mov")), "reveal copyPath moveToTrash ");
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return entries().empty(); }));

    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Menu, Qt::NoModifier}, {Qt::Key_F10, Qt::ShiftModifier}}) {
        press(Qt::Key_Backspace);
        ASSERT_TRUE(driver->waitForMap());
        press(Qt::Key_Home);
        press(key, modifiers);
        EXPECT_EQ(entries(), ofFolders);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        EXPECT_EQ(levelName(), "Movies");
    }

    // A crumb stands for its folder, and a block of small files for where they are.
    entriesAfterRightClick(driver->centre("crumb0"));
    choose("copyPath");
    EXPECT_EQ(copied(), home.path());
    const FileNodeValue level = state().current();
    state().select(level.at(level->children().back()));
    ASSERT_TRUE(state().selected().isAggregate());
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), home.at("Movies"));

    driver->find("largeFilesList")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Menu);
    EXPECT_EQ(entries(), "reveal copyPath moveToTrash ");
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return entries().empty(); }));

    // The row that was ticked before is not meant any more; nor does the map move.
    clickOn("largeFile0");
    EXPECT_EQ(entriesAfterRightClick(driver->centre("largeFile1")), "reveal copyPath moveToTrash ");
    choose("copyPath");
    EXPECT_EQ(copied(), home.at("Movies/b.mov"));
    // Of several ticked ones, all.
    clickOn("largeFile0", Qt::ControlModifier);
    EXPECT_EQ(entriesAfterRightClick(driver->centre("largeFile1")), "copyPath moveToTrash ");
    choose("copyPath");
    EXPECT_EQ(copied(), home.at("Movies/a.mov") + '\n' + home.at("Movies/b.mov"));
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->urls().size(), 2);
    entriesAfterRightClick(driver->centre("largeFile1"));
    choose("moveToTrash");
    EXPECT_EQ(state().confirmTrash()->items.size(), 2U);
}

TEST_F(HabitsTest, AFolderDroppedAnywhereIsScanned)
{
    home.file("folder \xff/a.mov", mib);
    home.file("file", mib);
    start();
    const auto drag = [&](const std::string& path, bool isDropped) {
        QMimeData data;
        QByteArray address = "file://";
        address += QByteArray::fromStdString(path).toPercentEncoding("/");
        data.setData("text/uri-list", address);
        QDragEnterEvent enter({600, 400}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &enter);
        const bool isTaken = isShown("dropHint");
        QDropEvent drop({600, 400}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(window, isDropped ? static_cast<QEvent*>(&drop) : &leave);
        EXPECT_FALSE(isShown("dropHint"));
        return isTaken;
    };
    EXPECT_FALSE(drag(home.at("file"), true));
    EXPECT_FALSE(drag(home.at("missing"), true));
    EXPECT_TRUE(drag(home.at("folder \xff"), false));
    openSheet("aboutEntry", "aboutView");
    EXPECT_FALSE(drag(home.at("folder \xff"), true)) << "behind a sheet";
    press(Qt::Key_Escape);
    EXPECT_TRUE(goes("aboutView"));
    EXPECT_FALSE(state().isScanning());
    EXPECT_TRUE(drag(home.at("folder \xff"), true));
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().scanRoot().path(), home.at("folder \xff"));
}

TEST_F(HabitsTest, TheMenuOfDisksScansTheOneThatIsChosen)
{
    home.file("usb/a.mov", mib);
    start();
    clickOn("menuButton");
    clickOn("scanDiskEntry");
    ASSERT_TRUE(appears("noDisksEntry"));
    press(Qt::Key_Left);
    EXPECT_TRUE(goes("noDisksEntry"));
    press(Qt::Key_Escape);
    EXPECT_TRUE(goes("scanDiskEntry"));
    // Each time anew.
    disks = {{"/", FileURL("/"), {}}, {"usb", FileURL(home.at("usb")), VolumeStats{3 << 20, mib}}};
    clickOn("menuButton");
    clickOn("scanDiskEntry");
    ASSERT_TRUE(appears("diskEntry"));
    EXPECT_FALSE(isShown("noDisksEntry"));
    press(Qt::Key_Up);
    ASSERT_EQ(focused(), "diskEntry");
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(window->activeFocusItem())->text(QAccessible::Name),
        "usb, 1.0 MB free of 3.0 MB");
    press(Qt::Key_Return);
    EXPECT_EQ(state().scanRoot().path(), home.at("usb"));
    ASSERT_TRUE(mapAppears());

    beginScan();
    clickOn("menuButton");
    EXPECT_FALSE(property("scanDiskEntry", "enabled").toBool());
    endScan();
}

} // namespace brisalon::tests
