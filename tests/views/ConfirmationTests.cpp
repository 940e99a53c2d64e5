#include "WindowFixture.h"

#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/ByteFormat.h"
#include "support/Script.h"

#include <cstdlib>
#include <filesystem>
#include <set>

namespace brisalon::tests {

class ConfirmationTest : public WindowFixture {
public:
    /// The program with a map of two folders, of which the larger is selected and
    /// has the keyboard.
    void startWithTwoFolders()
    {
        home.file("Movies/a.mov", 2 * mib);
        home.file("Music/b.flac", mib);
        startWithMap();
        driver->click(block("Movies"));
        map_ = window->activeFocusItem();
        ASSERT_NE(map_, nullptr);
    }

    void requestTrash()
    {
        state().requestTrashSelected();
        EXPECT_TRUE(WindowDriver::waitFor([this] { return isAsking(); }));
    }
    void requestSnapshot() { state().setConfirmSnapshot(LocalSnapshot{"2026-03-14-091500", {}}); }
    bool mapHasFocus() const { return window->activeFocusItem() == map_; }
    bool isAsking() const { return isShown("confirmationTitle"); }
    bool stopsAsking() const { return goes("confirmationTitle"); }

    /// The rows of what would be moved, from the top.
    std::vector<std::string> items() const
    {
        std::vector<std::string> all;
        const auto row = [&] { return "trashItem" + QString::number(all.size()); };
        while (driver->find(row())) {
            const auto entry = driver->property(row(), "entry").value<LargeFileEntry>();
            all.push_back(entry.name + ", " + ByteFormat::string(entry.allocatedSize));
        }
        return all;
    }

    void pressEscape() { driver->press(Qt::Key_Escape); }
    void clickOutside() { driver->click(QPoint(300, 790)); }
    void clickCancel() { driver->click(driver->centre("cancelConfirmationButton")); }
    /// Cancel has the keyboard when the question appears.
    void pressReturn() { driver->press(Qt::Key_Return); }

private:
    QPointer<QQuickItem> map_;
};

TEST_F(ConfirmationTest, ThePendingRequestIsAskedInItsOwnWords)
{
    home.file("one.bin", 3 * mib);
    startWithTwoFolders();
    const std::string one = home.at("one.bin");
    const std::string movie = home.at("Movies/a.mov");
    const std::string song = home.at("Music/b.flac");
    struct Row {
        std::set<std::string> ticked;
        const char* title;
        const char* message;
        std::vector<std::string> items;
    };
    const auto ask = [&](const Row& row) {
        state().setSelectedLargeFileIDs(row.ticked);
        requestTrash();
        EXPECT_EQ(text("confirmationTitle"), row.title);
        EXPECT_EQ(text("confirmationMessage"), row.message);
        EXPECT_EQ(text("confirmButton"), "Move to Trash");
        EXPECT_EQ(text("cancelConfirmationButton"), "Cancel");
        EXPECT_LT(driver->centre("confirmButton").x(),
                  driver->centre("cancelConfirmationButton").x());
        EXPECT_EQ(driver->find("trashItems"), nullptr) << "only when asked for";
        ASSERT_TRUE(driver->settle());
        driver->click(driver->centre("detailsButton"));
        EXPECT_TRUE(WindowDriver::waitFor([&] { return items() == row.items; }));
        pressEscape();
        // The words of a question that fades away are still its own.
        EXPECT_EQ(text("confirmationTitle"), row.title);
        EXPECT_EQ(text("confirmationMessage"), row.message);
        EXPECT_TRUE(stopsAsking());
    };
    ask({{one},
         "Move 1 item(s) to Trash?",
         "This will move 3.0 MB to Trash so you can restore it if needed.",
         {"one.bin, 3.0 MB"}});
    ask({{one, movie, song},
         "Move 3 item(s) to Trash?",
         "This will move 6.0 MB to Trash so you can restore it if needed.",
         {"one.bin, 3.0 MB", "a.mov, 2.0 MB", "b.flac, 1.0 MB"}});
    // The home folder itself is protected, whatever it is.
    ::setenv("HOME", movie.c_str(), 1);
    ask({{one, movie, song},
         "Move 2 item(s) to Trash?",
         "This will move 6.0 MB to Trash so you can restore it if needed."
         " 1 protected path(s) were skipped.",
         {"one.bin, 3.0 MB", "b.flac, 1.0 MB"}});

    requestSnapshot();
    EXPECT_EQ(text("confirmationTitle"), "Delete local Time Machine snapshot?");
    EXPECT_TRUE(text("confirmationMessage").endsWith("This cannot be undone from Trash."));
    EXPECT_EQ(text("confirmButton"), "Delete Snapshot");
}

TEST_F(ConfirmationTest, EveryWayOutButTheConfirmationTakesTheRequestBack)
{
    startWithTwoFolders();
    using Way = void (ConfirmationTest::*)();
    for (const Way leave : {&ConfirmationTest::pressEscape, &ConfirmationTest::clickOutside,
                            &ConfirmationTest::clickCancel, &ConfirmationTest::pressReturn}) {
        for (const bool isSnapshot : {false, true}) {
            isSnapshot ? requestSnapshot() : requestTrash();
            ASSERT_TRUE(isAsking());
            (this->*leave)();
            EXPECT_FALSE(state().confirmTrash() || state().confirmSnapshot());
            EXPECT_TRUE(stopsAsking());
            EXPECT_TRUE(mapHasFocus()) << "the keyboard is where it was";
        }
    }
    EXPECT_TRUE(workspace.requests.empty());
    EXPECT_EQ(state().selected().name(), "Movies");
}

TEST_F(ConfirmationTest, TheKeyboardStaysWithTheQuestion)
{
    startWithTwoFolders();
    requestTrash();
    EXPECT_EQ(focused(), "cancelConfirmationButton");
    EXPECT_TRUE(driver->property("cancelConfirmationButton", "visualFocus").toBool());
    for (const char* const next : {"detailsButton", "confirmButton", "cancelConfirmationButton"}) {
        driver->press(Qt::Key_Tab);
        EXPECT_EQ(focused(), next);
    }
    // A later question begins at Cancel again.
    pressEscape();
    ASSERT_TRUE(stopsAsking());
    requestTrash();
    EXPECT_EQ(focused(), "cancelConfirmationButton");
}

TEST_F(ConfirmationTest, NothingBehindTheQuestionReacts)
{
    startWithTwoFolders();
    driver->doubleClick(block("Movies"));
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block("a.mov"));
    requestTrash();
    const auto id = state().confirmTrash()->id();

    driver->press(Qt::Key_Backspace);
    driver->press(Qt::Key_Delete);
    driver->press(Qt::Key_Left);
    for (const int key : {Qt::Key_H, Qt::Key_M})
        driver->press(key, Qt::ControlModifier | Qt::ShiftModifier);
    driver->press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_FALSE(state().isScanning());
    ASSERT_TRUE(state().confirmTrash());
    EXPECT_EQ(state().confirmTrash()->id(), id);

    // A click on what lies behind only takes the question back.
    driver->click(driver->centre("upButton"));
    EXPECT_EQ(levelName(), "Movies");
    EXPECT_FALSE(state().confirmTrash());
    ASSERT_TRUE(stopsAsking());
    driver->press(Qt::Key_Backspace);
    EXPECT_EQ(state().current(), state().tree()) << "and afterwards all works again";
}

TEST_F(ConfirmationTest, ConfirmingMovesTheItemsAndScansAnew)
{
    startWithTwoFolders();
    workspace.holdsMoves = true;
    requestTrash();
    driver->click(driver->centre("confirmButton"));
    EXPECT_FALSE(state().confirmTrash());
    EXPECT_TRUE(stopsAsking()) << "while the items are still on their way";
    ASSERT_EQ(workspace.requests.size(), 1U);
    ASSERT_EQ(workspace.requests[0].size(), 1U);
    EXPECT_EQ(workspace.requests[0][0].url, FileURL(home.at("Movies")));

    home.remove("Movies");
    EXPECT_EQ(driver->property("statusDot", "color").value<QColor>(), Theme::accent());
    ASSERT_TRUE(workspace.releaseMove());
    EXPECT_TRUE(WindowDriver::waitFor([this] { return state().tree().childCount() == 1; }));
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(driver->property("statusDot", "color").value<QColor>(), Theme::success());

    // By the keyboard, and refused.
    driver->click(block("Music"));
    workspace.holdsMoves = false;
    workspace.refusedPaths = {home.at("Music")};
    workspace.error = "The disk says no.";
    requestTrash();
    driver->press(Qt::Key_Backtab, Qt::ShiftModifier);
    driver->press(Qt::Key_Space);
    ASSERT_TRUE(WindowDriver::waitFor([&] { return state().lastClean().has_value(); }));
    EXPECT_EQ(text("statusText"), "The disk says no. · Could not move Music to Trash.");
    EXPECT_NE(driver->find("failureSymbol"), nullptr);
    EXPECT_TRUE(stopsAsking());
    EXPECT_TRUE(mapHasFocus());
}

TEST_F(ConfirmationTest, ConfirmingDeletesTheSnapshotThatWasAskedFor)
{
    const std::string log = home.at("log");
    snapshots = SnapshotService(script(home, "tmutil", "echo \"$@\" >> '" + log + "'"));
    startWithTwoFolders();
    std::filesystem::remove(log);
    requestSnapshot();
    driver->click(driver->centre("confirmButton"));
    EXPECT_FALSE(state().confirmSnapshot());
    EXPECT_EQ(text("statusText"), "Deleted local snapshot 2026-03-14-091500.");
    EXPECT_TRUE(contents(log).starts_with("deletelocalsnapshots 2026-03-14-091500\n"))
        << contents(log);
    EXPECT_TRUE(stopsAsking());
}

} // namespace brisalon::tests
