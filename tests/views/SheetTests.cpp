// The questions, the answers and the panel About: what lies over the window until it is left.

#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/ByteFormat.h"

#include <cstdlib>
#include <set>

namespace brisalon::tests {

class SheetTest : public WindowFixture {
protected:
    /// A map of two folders, of which the larger is selected and has the keyboard.
    void startWithTwoFolders()
    {
        startWithMap({{"Movies/a.mov", 2}, {"Music/b.flac", 1}});
        clickBlock("Movies");
    }
    void requestTrash()
    {
        state().requestTrashSelected();
        EXPECT_TRUE(appears("confirmationTitle"));
    }
    QString words() const
    {
        return text("confirmationTitle") + ' ' + text("confirmationMessage") + ' ' +
               text("confirmButton");
    }
    /// What would be moved, as it is listed.
    std::string items() const
    {
        std::string all;
        for (int row = 0;; ++row) {
            const QString name = "trashItem" + QString::number(row);
            if (!isShown(name))
                return all;
            const auto entry = property(name, "entry").value<LargeFileEntry>();
            all += entry.name + ", " + ByteFormat::string(entry.allocatedSize) + "; ";
        }
    }
    bool stopsAsking() const { return goes("confirmationTitle"); }

    void openAbout() { openSheet("aboutEntry", "aboutView"); }
    void clickOutside() { driver->click(QPoint(300, 790)); }
};

TEST_F(SheetTest, TheQuestionNamesWhatItWouldMove)
{
    startWithMap({{"one.bin", 3}, {"a.mov", 2}, {"b.flac", 1}});
    // The home folder itself is protected, whatever it is.
    ::setenv("HOME", home.at("a.mov").c_str(), 1);
    const struct {
        std::set<std::string> ticked;
        const char* words;
        const char* items;
    } rows[] = {
        {{home.at("one.bin")},
         "Move 1 item(s) to Trash? This will move 3.0 MB to Trash so you can restore it if needed."
         " Move to Trash",
         "one.bin, 3.0 MB; "},
        {{home.at("one.bin"), home.at("a.mov"), home.at("b.flac")},
         "Move 2 item(s) to Trash? This will move 6.0 MB to Trash so you can restore it if needed."
         " 1 protected path(s) were skipped. Move to Trash",
         "one.bin, 3.0 MB; b.flac, 1.0 MB; "},
    };
    for (const auto& row : rows) {
        state().setSelectedLargeFileIDs(row.ticked);
        requestTrash();
        EXPECT_EQ(words(), row.words);
        EXPECT_FALSE(isShown("trashItems")) << "only when asked for";
        clickOn("itemsButton");
        EXPECT_TRUE(waitFor([&] { return items() == row.items; })) << items();
        press(Qt::Key_Escape);
        EXPECT_TRUE(stopsAsking());
    }
}

TEST_F(SheetTest, EveryWayOutButTheConfirmationTakesTheRequestBack)
{
    startWithTwoFolders();
    const std::function<void()> ways[] = {
        [&] { press(Qt::Key_Escape); },
        [&] { press(Qt::Key_Return); }, // Cancel has the keyboard
        [&] { clickOutside(); },
        [&] { clickOn("cancelConfirmationButton"); },
    };
    for (const auto& leave : ways) {
        for (const bool isSnapshot : {false, true}) {
            if (isSnapshot)
                state().setConfirmSnapshot(LocalSnapshot{"2026-03-14-091500", {}});
            else
                state().requestTrashSelected();
            ASSERT_TRUE(appears("confirmationTitle"));
            const QString asked = words();
            EXPECT_EQ(asked.startsWith("Delete local Time Machine snapshot?"), isSnapshot);
            EXPECT_EQ(asked.endsWith("cannot be undone from Trash. Delete Snapshot"), isSnapshot);
            leave();
            EXPECT_FALSE(state().confirmTrash() || state().confirmSnapshot());
            EXPECT_TRUE(words() == asked || !isShown("confirmationTitle")) << "as it fades away";
            EXPECT_TRUE(stopsAsking());
            EXPECT_TRUE(isFocusOnMap()) << "the keyboard is where it was";
        }
    }
    EXPECT_TRUE(workspace.requests.empty());
    EXPECT_EQ(state().selected().name(), "Movies");
}

TEST_F(SheetTest, TheQuestionHasTheKeyboardAndNothingBehindItReacts)
{
    startWithTwoFolders();
    enterBlock("Movies");
    clickBlock("a.mov");
    requestTrash();
    const auto id = state().confirmTrash()->id();
    EXPECT_TRUE(isFocusSeen("cancelConfirmationButton"));
    EXPECT_LT(box("confirmButton").right(), box("cancelConfirmationButton").left());
    for (const char* const next : {"itemsButton", "confirmButton", "cancelConfirmationButton"}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
    for (const int key : {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Left})
        press(key);
    for (const int key : {Qt::Key_H, Qt::Key_M})
        press(key, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_FALSE(state().isScanning());
    ASSERT_TRUE(state().confirmTrash());
    EXPECT_EQ(state().confirmTrash()->id(), id);

    // A click on what lies behind only takes the question back.
    driver->click(driver->centre("upButton"));
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_FALSE(state().confirmTrash());
    ASSERT_TRUE(stopsAsking());
    requestTrash();
    EXPECT_EQ(focused(), "cancelConfirmationButton") << "a later question begins there again";
    press(Qt::Key_Escape);
    ASSERT_TRUE(stopsAsking());
    press(Qt::Key_Backspace);
    EXPECT_EQ(state().current(), state().tree()) << "and afterwards all works again";
}

TEST_F(SheetTest, ConfirmingMovesTheItemsAndScansAnew)
{
    startWithTwoFolders();
    workspace.holdsMoves = true;
    requestTrash();
    clickOn("confirmButton");
    EXPECT_FALSE(state().confirmTrash());
    EXPECT_TRUE(stopsAsking()) << "while the items are still on their way";
    ASSERT_EQ(workspace.requests.size(), 1U);
    ASSERT_EQ(workspace.requests[0].size(), 1U);
    EXPECT_EQ(workspace.requests[0][0].url, FileURL(home.at("Movies")));

    home.remove("Movies");
    EXPECT_EQ(color("statusDot"), Theme::accent());
    ASSERT_TRUE(workspace.releaseMove());
    EXPECT_TRUE(waitFor([this] { return state().tree().childCount() == 1; }));
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(color("statusDot"), Theme::success());

    // By the keyboard, and refused.
    clickBlock("Music");
    workspace.holdsMoves = false;
    workspace.refusedPaths = {home.at("Music")};
    workspace.error = "The disk says no.";
    requestTrash();
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Space);
    ASSERT_TRUE(waitFor([&] { return state().lastClean().has_value(); }));
    EXPECT_EQ(text("statusText"), "The disk says no. · Could not move Music to Trash.");
    EXPECT_TRUE(isShown("failureSymbol"));
    EXPECT_TRUE(stopsAsking());
    EXPECT_TRUE(isFocusOnMap());
}

TEST_F(SheetTest, AboutTellsTheVersionAndReachesTheDesktop)
{
    bundle.place = FileURL("/opt/brisalon");
    fileAccess.isHiding = true;
    start();
    openAbout();
    EXPECT_EQ(text("aboutVersion"), "Version 1.0.0 (1)");
    ASSERT_TRUE(reaches("aboutLink"));
    press(Qt::Key_Return);
    ASSERT_TRUE(goes("aboutView")) << "Return presses none of the buttons";
    EXPECT_TRUE(workspace.addresses.empty());

    // Read anew each time, and then kept.
    bundle.texts = {{"CFBundleShortVersionString", "2.4"}, {"CFBundleVersion", "117"}};
    openAbout();
    bundle.texts.clear();
    EXPECT_EQ(text("aboutVersion"), "Version 2.4 (117)");

    clickOn("aboutLink");
    for (const bool isHelping : {false, true, false}) {
        EXPECT_EQ(isShown("aboutCallout"), isHelping);
        EXPECT_EQ(text("aboutHelpButton").startsWith("Hide"), isHelping);
        clickOn("aboutHelpButton");
    }
    clickOn("showInFinderButton");
    EXPECT_EQ(workspace.revealed, std::vector{FileURL("/opt/brisalon")});
    clickOn("openSettingsButton");
    ASSERT_EQ(workspace.addresses.size(), 2U);
    EXPECT_EQ(workspace.addresses[0], "https://brisalon.app");
    EXPECT_TRUE(workspace.addresses[1].ends_with("?Privacy_AllFiles"));

    // The sheet stays in the middle of the window.
    window->resize(960, 700);
    ASSERT_TRUE(waitFor([&] { return box("aboutView").center().x() == 480; }));
    EXPECT_TRUE(QRectF(0, 0, 960, 700).contains(box("sheetPanel")));
}

TEST_F(SheetTest, APlaceThatMayGoIsShownByClickAndByKeys)
{
    startWithMap({{"a/node_modules/x.js", 2}, {"b/node_modules/y.js", 1}});
    openSheet("whatMayGoEntry", "whatMayGoView");
    ASSERT_TRUE(appears("place1"));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(levelName(), "b");
    ASSERT_TRUE(goes("whatMayGoView"));

    openSheet("whatMayGoEntry", "whatMayGoView");
    ASSERT_TRUE(appears("place0"));
    clickOn("place0");
    EXPECT_EQ(levelName(), "a");
    EXPECT_EQ(state().selected().name(), "node_modules");
    ASSERT_TRUE(goes("whatMayGoView"));

    openSheet("whatMayGoEntry", "whatMayGoView");
    EXPECT_TRUE(reaches("answerCloseButton"));
    press(Qt::Key_Space);
    EXPECT_TRUE(goes("whatMayGoView"));
}

TEST_F(SheetTest, WhatTheMapLeavesOutIsReadByKeys)
{
    startWithMap({{"a/file", 1}});
    openSheet("whatIsLeftOutEntry", "whatIsLeftOutView");
    EXPECT_TRUE(text("answerExplanation").contains(" is not a whole volume."));
    ASSERT_TRUE(reaches("leftOut0"));
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "leftOut1");
    press(Qt::Key_Escape);
    EXPECT_TRUE(goes("whatIsLeftOutView"));
}

} // namespace brisalon::tests
