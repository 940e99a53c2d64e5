#include "WindowFixture.h"
#include "support/Script.h"

#include <QAccessible>

#include <cstdlib>
#include <filesystem>
#include <set>

namespace brisalon::tests {

namespace {

constexpr const char* snapshotMessage =
    "Local snapshots can free a lot of space, but Time Machine will have to recopy that data "
    "later. This cannot be undone from Trash.";

} // namespace

class ConfirmationTest : public WindowFixture {
public:
    /// The program with a map of two folders, of which the larger is selected and
    /// has the keyboard.
    void startWithMap()
    {
        home.file("Movies/a.mov", 2 * mib);
        home.file("Music/b.flac", mib);
        start();
        app->state().startScan(home.url());
        ASSERT_TRUE(mapAppears());
        driver->click(block("Movies"));
        map_ = window->activeFocusItem();
        ASSERT_NE(map_, nullptr);
    }

    AppState& state() { return app->state(); }

    void requestSnapshot() { state().setConfirmSnapshot(LocalSnapshot{"2026-03-14-091500", {}}); }

    QString focus() const
    {
        const QQuickItem* const item = window->activeFocusItem();
        return item ? item->objectName() : QString();
    }

    bool mapHasFocus() const { return window->activeFocusItem() == map_; }

    bool isAsking() const { return driver->find("confirmationTitle") != nullptr; }
    bool stopsAsking() const
    {
        return WindowDriver::waitFor([this] { return !isAsking(); });
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
    startWithMap();
    const std::string one = home.at("one.bin");
    const std::string movie = home.at("Movies/a.mov");
    const std::string song = home.at("Music/b.flac");
    struct Row {
        std::set<std::string> ticked;
        const char* title;
        const char* message;
    };
    const auto ask = [&](const Row& row) {
        state().setSelectedLargeFileIDs(row.ticked);
        state().requestTrashSelected();
        EXPECT_EQ(text("confirmationTitle"), row.title);
        EXPECT_EQ(text("confirmationMessage"), row.message);
        EXPECT_EQ(text("confirmButton"), "Move to Trash");
        EXPECT_EQ(text("cancelConfirmationButton"), "Cancel");
        EXPECT_LT(driver->centre("confirmButton").x(),
                  driver->centre("cancelConfirmationButton").x());
        pressEscape();
        // The words of a question that fades away are still its own.
        EXPECT_EQ(text("confirmationTitle"), row.title);
        EXPECT_EQ(text("confirmationMessage"), row.message);
        EXPECT_TRUE(stopsAsking());
    };
    ask({{one},
         "Move 1 item(s) to Trash?",
         "This will move 3.0 MB to Trash so you can restore it if needed."});
    ask({{one, movie, song},
         "Move 3 item(s) to Trash?",
         "This will move 6.0 MB to Trash so you can restore it if needed."});
    // The home folder itself is protected, whatever it is.
    ::setenv("HOME", movie.c_str(), 1);
    ask({{one, movie, song},
         "Move 2 item(s) to Trash?",
         "This will move 6.0 MB to Trash so you can restore it if needed."
         " 1 protected path(s) were skipped."});

    requestSnapshot();
    EXPECT_EQ(text("confirmationTitle"), "Delete local Time Machine snapshot?");
    EXPECT_EQ(text("confirmationMessage"), snapshotMessage);
    EXPECT_EQ(text("confirmButton"), "Delete Snapshot");
}

TEST_F(ConfirmationTest, EveryWayOutButTheConfirmationTakesTheRequestBack)
{
    startWithMap();
    using Way = void (ConfirmationTest::*)();
    for (const Way leave : {&ConfirmationTest::pressEscape, &ConfirmationTest::clickOutside,
                            &ConfirmationTest::clickCancel, &ConfirmationTest::pressReturn}) {
        state().requestTrashSelected();
        ASSERT_TRUE(isAsking());
        (this->*leave)();
        EXPECT_FALSE(state().confirmTrash());
        EXPECT_TRUE(stopsAsking());
        EXPECT_TRUE(mapHasFocus()) << "the keyboard is where it was";

        requestSnapshot();
        ASSERT_TRUE(isAsking());
        (this->*leave)();
        EXPECT_FALSE(state().confirmSnapshot());
        EXPECT_TRUE(stopsAsking());
        EXPECT_TRUE(mapHasFocus());
    }
    EXPECT_TRUE(workspace.requests.empty());
    EXPECT_EQ(state().selected().name(), "Movies");
}

TEST_F(ConfirmationTest, TheKeyboardStaysWithTheQuestion)
{
    startWithMap();
    state().requestTrashSelected();
    EXPECT_EQ(focus(), "cancelConfirmationButton");
    EXPECT_TRUE(driver->property("cancelConfirmationButton", "visualFocus").toBool());
    for (const char* const next : {"confirmButton", "cancelConfirmationButton", "confirmButton"}) {
        driver->press(Qt::Key_Tab);
        EXPECT_EQ(focus(), next);
    }
    // A later question begins at Cancel again.
    pressEscape();
    ASSERT_TRUE(stopsAsking());
    state().requestTrashSelected();
    EXPECT_EQ(focus(), "cancelConfirmationButton");
}

TEST_F(ConfirmationTest, NothingBehindTheQuestionReacts)
{
    startWithMap();
    driver->doubleClick(block("Movies"));
    ASSERT_TRUE(driver->waitForMap());
    driver->click(block("a.mov"));
    state().requestTrashSelected();
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
    startWithMap();
    workspace.holdsMoves = true;
    state().requestTrashSelected();
    driver->click(driver->centre("confirmButton"));
    EXPECT_FALSE(state().confirmTrash());
    EXPECT_TRUE(stopsAsking()) << "while the items are still on their way";
    ASSERT_EQ(workspace.requests.size(), 1U);
    ASSERT_EQ(workspace.requests[0].size(), 1U);
    EXPECT_EQ(workspace.requests[0][0].url, FileURL(home.at("Movies")));

    home.remove("Movies");
    ASSERT_TRUE(workspace.releaseMove());
    EXPECT_TRUE(state().isScanning());
    ASSERT_TRUE(mapAppears());
    EXPECT_EQ(state().tree().childCount(), 1);

    // By the keyboard, and refused.
    driver->click(block("Music"));
    workspace.holdsMoves = false;
    workspace.refusedPaths = {home.at("Music")};
    workspace.error = "The disk says no.";
    state().requestTrashSelected();
    driver->press(Qt::Key_Tab);
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
    startWithMap();
    std::filesystem::remove(log);
    requestSnapshot();
    driver->click(driver->centre("confirmButton"));
    EXPECT_FALSE(state().confirmSnapshot());
    EXPECT_EQ(text("statusText"), "Deleted local snapshot 2026-03-14-091500.");
    EXPECT_TRUE(contents(log).starts_with("deletelocalsnapshots 2026-03-14-091500\n"))
        << contents(log);
    EXPECT_TRUE(stopsAsking());
}

TEST_F(ConfirmationTest, AScreenReaderHearsTheQuestion)
{
    startWithMap();
    state().requestTrashSelected();
    QStringList dialogs;
    for (QObject* item = window->activeFocusItem(); item;
         item = qobject_cast<QQuickItem*>(item)->parentItem()) {
        QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(item);
        if (reader && reader->role() == QAccessible::Dialog)
            dialogs.append(reader->text(QAccessible::Name) + '|' +
                           reader->text(QAccessible::Description));
    }
    EXPECT_EQ(dialogs, QStringList("Move 1 item(s) to Trash?|"
                                   "This will move 2.0 MB to Trash so you can restore it if "
                                   "needed."));
}

} // namespace brisalon::tests
