// What the model does with snapshots, the permission and the file manager.

#include "ModelFixture.h"

#include "support/Files.h"
#include "support/Script.h"

#include <QDateTime>

namespace brisalon::tests {

class ServicesTest : public ModelFixture {
protected:
    /// Puts a tool in place that lists the lines of the file "list" and answers a
    /// deletion with the given lines of shell.
    void installTool(const std::string& deletion)
    {
        script(tools, "tmutil",
               "cd '" + tools.path() + "'\n[ \"$1\" = listlocalsnapshots ] && exec cat list\n" +
                   deletion);
    }
    void list(const std::string& lines) { tools.write("list", lines); }
    /// Confirms the deletion of a snapshot; what is said then.
    std::string deleteSnapshot(const LocalSnapshotValue& snapshot)
    {
        state->setConfirmSnapshot(snapshot);
        state->confirmPendingSnapshot();
        EXPECT_FALSE(state->confirmSnapshot());
        waitForWork();
        return state->statusMessage().toStdString();
    }
};

TEST_F(ServicesTest, SnapshotsAreListedAfterAScanAndDeletedWhenConfirmed)
{
    scan(tree.url());
    EXPECT_FALSE(state->snapshotError().isEmpty()) << "there is no tool yet";
    EXPECT_TRUE(state->snapshots().isEmpty());

    list("Snapshots for disk /:\nx.2024-01-15-123456.local\nx.2024-02-01-000000.local\n");
    installTool("[ \"$1 $2\" = \"deletelocalsnapshots 2024-01-15-123456\" ] || exit 7\n"
                "sed -i /123456/d list");
    scan(tree.url());
    EXPECT_TRUE(state->snapshotError().isEmpty());
    ASSERT_EQ(state->snapshots().size(), 2);
    EXPECT_EQ(state->snapshots()[0].title(), QString::fromUtf8("2024-01-15 · 12:34"));

    const LocalSnapshotValue first = state->snapshots()[0];
    EXPECT_EQ(deleteSnapshot(first), "Deleted local snapshot 2024-01-15-123456.");
    ASSERT_EQ(state->snapshots().size(), 1);

    // A failure is shown as the tool put it, and the list is left alone.
    list("");
    installTool("echo 'Not permitted' >&2; exit 1");
    EXPECT_EQ(deleteSnapshot(first), "Not permitted ");
    installTool("exit 1");
    EXPECT_EQ(deleteSnapshot(first), "Could not delete snapshot 2024-01-15-123456.");
    EXPECT_EQ(state->snapshots().size(), 1);
}

TEST_F(ServicesTest, AToolThatDidNotAnswerIsAskedAgainOnlyOnRequest)
{
    installTool("exit 0\n");
    list("x.2024-01-15-123456.local\n");
    state->appear();
    ASSERT_EQ(state->snapshots().size(), 1);

    script(tools, "tmutil", "echo asked >> '" + tools.at("log") + "'; kill -STOP $$");
    scan(tree.url());
    EXPECT_TRUE(state->snapshots().isEmpty());
    EXPECT_TRUE(state->snapshotError().endsWith(" did not answer in time."));
    scan(tree.url());
    state->appear();
    EXPECT_EQ(contents(tools.at("log")), "asked\n");

    installTool("exit 0\n");
    state->listSnapshots();
    EXPECT_EQ(state->snapshots().size(), 1);
    list("");
    scan(tree.url());
    EXPECT_TRUE(state->snapshots().isEmpty());
}

TEST_F(ServicesTest, AppearingAsksForThePermissionThenTheVolumeThenTheSnapshots)
{
    std::vector<std::string> order;
    const std::pair<void (AppState::*)(), const char*> changes[] = {
        {&AppState::hasFullDiskAccessChanged, "permission"},
        {&AppState::volumeChanged, "volume"},
        {&AppState::snapshotsChanged, "snapshots"},
        {&AppState::isScanningChanged, "scan"}};
    for (const auto& [changed, name] : changes)
        QObject::connect(state.get(), changed, [&order, name] { order.emplace_back(name); });
    list("x.2024-01-15-123456.local\n");
    installTool("exit 1");
    fileAccess.isHiding = false;
    state->appear();
    EXPECT_EQ(order, (std::vector<std::string>{"permission", "volume", "snapshots"}));
    EXPECT_EQ(state->volume()->total, VolumeStats::read(FileURL("/"))->total);
    EXPECT_TRUE(statuses.empty());

    const TemporaryTree elsewhere(TemporaryTree::Storage::memory);
    scan(elsewhere.url());
    state->appear();
    EXPECT_EQ(state->volume()->total, VolumeStats::read(elsewhere.url())->total);
}

TEST_F(ServicesTest, ThePermissionIsNoticedWhenItComesAndWhenItGoes)
{
    UIPreferences preferences(store);
    int announced = 0;
    QObject::connect(state.get(), &AppState::fdaJustGrantedChanged, [&] { ++announced; });
    const auto shown = [&] {
        return std::string(state->hasFullDiskAccess() ? "granted " : "") +
               (state->fdaJustGranted() ? "thanks " : "") +
               (state->shouldShowFDABanner() ? "banner" : "");
    };
    EXPECT_EQ(shown(), "banner");
    state->dismissFDABanner();
    const auto until = preferences.fdaBannerDismissedUntil();
    ASSERT_TRUE(until);
    EXPECT_EQ(QDateTime::fromSecsSinceEpoch(1'700'000'000).addDays(7).toSecsSinceEpoch(),
              std::chrono::duration_cast<std::chrono::seconds>(until->time_since_epoch()).count());
    now = *until - std::chrono::seconds(1);
    EXPECT_EQ(shown(), "");
    now = *until + std::chrono::seconds(1);
    EXPECT_EQ(shown(), "banner");

    fileAccess.isHiding = false;
    state->refreshPermission();
    state->refreshPermission();
    EXPECT_EQ(shown(), "granted thanks ");
    EXPECT_EQ(announced, 1);
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());

    fileAccess.isHiding = true;
    state->refreshPermission();
    EXPECT_EQ(shown(), "thanks ") << "losing it changes nothing else";
    fileAccess.isHiding = false;
    scan(tree.url());
    EXPECT_EQ(shown(), "granted thanks ") << "asked again after every scan";
}

TEST_F(ServicesTest, RevealsLargeFilesInTheMap)
{
    tree.file("a/b/c/deep.bin", 3 * mib);
    tree.file("top.bin", 2 * mib);
    tree.file("a/small", 4 * kib);
    scan(tree.url());
    ASSERT_EQ(state->largeFiles().size(), 2);
    state->setSelectedLargeFileIDs({state->largeFiles()[0].id()});
    state->revealLargeFile(state->largeFiles()[0]);
    EXPECT_EQ(crumbNames(),
              (std::vector<std::string>{state->tree().name().toStdString(), "a", "b", "c"}));
    EXPECT_EQ(state->current().name(), "c");
    EXPECT_EQ(state->selected().name(), "deep.bin");
    EXPECT_EQ(state->selectedLargeFileIDs().size(), 1u);

    // A file that was folded has no node: its folder is selected.
    state->revealLargeFile({FileURL(tree.at("a/small")), "small", 1, HogKind::none, Risk::unknown});
    EXPECT_EQ(state->selected().name(), "a");
    state->revealLargeFile({FileURL("/elsewhere/x"), "x", 1, HogKind::none, Risk::unknown});
    EXPECT_EQ(state->current().name(), "a") << "not part of the tree: nothing happens";
}

TEST_F(ServicesTest, RevealsItemsInTheFileManager)
{
    state->requestReveal(FileURL("/home/someone/file"));
    fileAccess.existingPaths = {"/usr"};
    state->requestReveal(FileURL("/usr"));
    EXPECT_EQ(workspace.revealed.size(), 2u);
    state->requestReveal(FileURL("/usr/missing"));
    EXPECT_EQ(workspace.revealed.size(), 2u);
    EXPECT_EQ(state->statusMessage(), "That path is not available.");

    state->requestTerminal(FileURL("/home"));
    EXPECT_EQ(workspace.terminals, std::vector{FileURL("/home")});
    workspace.startsPrograms = false;
    EXPECT_EQ(state->statusMessage(), "That path is not available.");
    state->requestTerminal(FileURL("/home"));
    EXPECT_EQ(state->statusMessage(), "No terminal could be opened there.");
    state->requestReveal(FileURL("/usr"));
    EXPECT_EQ(state->statusMessage(), "No file manager could be opened.");
}

} // namespace brisalon::tests
