// What the model does with snapshots, the permission and the file manager.

#include "ModelFixture.h"

#include "BrisalonCore/FileNodeBuilder.h"
#include "support/Script.h"

#include <QDateTime>

#include <filesystem>
#include <fstream>

namespace brisalon::tests {

class ServicesTest : public ModelFixture {
protected:
    /// Puts a tool in place that lists the lines of the file "list" and answers a
    /// deletion with the given lines of shell.
    void installTool(const std::string& deletion)
    {
        const std::string path = tools.at("tmutil");
        std::ofstream(path) << "#!/bin/sh\ncd '" << tools.path() << "'\n"
                            << "if [ \"$1\" = listlocalsnapshots ]; then cat list; exit 0; fi\n"
                            << deletion << "\n";
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    void deleteSnapshot()
    {
        state->confirmPendingSnapshot();
        ASSERT_TRUE(waitFor([this] { return !state->isWorking(); }));
    }
    void list(const std::string& lines) { std::ofstream(tools.at("list")) << lines; }

    static constexpr auto token = "2024-01-15-123456";
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

    state->setConfirmSnapshot(state->snapshots()[0]);
    state->dismissSnapshot();
    state->confirmPendingSnapshot(); // nothing waits any more
    EXPECT_EQ(state->snapshots().size(), 2);
    state->setConfirmSnapshot(state->snapshots()[0]);
    deleteSnapshot();
    EXPECT_FALSE(state->confirmSnapshot());
    EXPECT_EQ(state->statusMessage(), "Deleted local snapshot 2024-01-15-123456.");
    ASSERT_EQ(state->snapshots().size(), 1);

    // A failure is shown as the tool put it, and the list is left alone.
    installTool("echo 'Not permitted' >&2; exit 1");
    list("");
    state->setConfirmSnapshot(state->snapshots()[0]);
    deleteSnapshot();
    EXPECT_EQ(state->statusMessage(), "Not permitted ");
    EXPECT_EQ(state->snapshots().size(), 1);
    installTool("exit 1");
    state->setConfirmSnapshot(LocalSnapshot{token, ""});
    deleteSnapshot();
    EXPECT_EQ(state->statusMessage(), "Could not delete snapshot 2024-01-15-123456.");
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
    const auto record = [&](void (AppState::*changed)(), const char* name) {
        QObject::connect(state.get(), changed, [&order, name] { order.emplace_back(name); });
    };
    record(&AppState::hasFullDiskAccessChanged, "permission");
    record(&AppState::volumeChanged, "volume");
    record(&AppState::snapshotsChanged, "snapshots");
    record(&AppState::isScanningChanged, "scan");
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
    EXPECT_FALSE(state->hasFullDiskAccess());
    EXPECT_TRUE(state->shouldShowFDABanner());

    state->dismissFDABanner();
    EXPECT_FALSE(state->shouldShowFDABanner());
    const auto until = preferences.fdaBannerDismissedUntil();
    ASSERT_TRUE(until);
    EXPECT_EQ(QDateTime::fromSecsSinceEpoch(1'700'000'000).addDays(7).toSecsSinceEpoch(),
              std::chrono::duration_cast<std::chrono::seconds>(until->time_since_epoch()).count());
    now = *until - std::chrono::seconds(1);
    EXPECT_FALSE(state->shouldShowFDABanner());
    now = *until + std::chrono::seconds(1);
    EXPECT_TRUE(state->shouldShowFDABanner());

    int announced = 0;
    QObject::connect(state.get(), &AppState::fdaJustGrantedChanged, [&] { ++announced; });
    fileAccess.isHiding = false;
    state->refreshPermission();
    state->refreshPermission();
    EXPECT_EQ(announced, 1);
    EXPECT_TRUE(state->fdaJustGranted());
    EXPECT_TRUE(state->hasFullDiskAccess());
    EXPECT_FALSE(state->shouldShowFDABanner());
    EXPECT_FALSE(preferences.fdaBannerDismissedUntil());

    fileAccess.isHiding = true;
    state->refreshPermission();
    EXPECT_FALSE(state->hasFullDiskAccess());
    EXPECT_TRUE(state->fdaJustGranted()) << "losing it changes nothing else";
    EXPECT_FALSE(state->shouldShowFDABanner());
    state->setFDAJustGranted(false);
    EXPECT_TRUE(state->shouldShowFDABanner());

    fileAccess.isHiding = false;
    scan(tree.url());
    EXPECT_TRUE(state->hasFullDiskAccess()) << "asked again after every scan";
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

    state->revealLargeFile(state->largeFiles()[1]);
    EXPECT_EQ(state->breadcrumbs().size(), 1);
    EXPECT_EQ(state->selected().name(), "top.bin");

    // A file that was folded has no node: its folder is selected.
    state->revealLargeFile({FileURL(tree.at("a/small")), "small", 1, HogKind::none, Risk::unknown});
    EXPECT_EQ(state->selected().name(), "a");
    state->revealLargeFile({FileURL("/elsewhere/x"), "x", 1, HogKind::none, Risk::unknown});
    EXPECT_EQ(state->current().name(), "a") << "not part of the tree: nothing happens";
}

TEST_F(ServicesTest, RevealsAFileInATreeOfAbsurdDepth)
{
    constexpr int depth = 5000;
    std::vector<FileURL> urls{FileURL("/d")};
    for (int level = 0; level < depth; ++level)
        urls.push_back(urls.back().appendingPathComponent("d"));
    FileNode node = FileNodeBuilder::make(urls.back(), mib, NodeKind::file);
    for (int level = depth - 1; level >= 0; --level)
        node = FileNodeBuilder::make(urls[static_cast<std::size_t>(level)], mib,
                                     NodeKind::directory, {node});
    AppServices deep = services();
    deep.scan = [node](const FileURL&, const DiskScanner::ProgressCallback&,
                       auto&&...) -> ScanResult { return node; };
    state = std::make_unique<AppState>(std::move(deep));
    scan(urls.front());
    state->revealLargeFile(state->largeFiles().first());
    ASSERT_EQ(state->breadcrumbs().size(), depth);
    EXPECT_TRUE(state->breadcrumbs().last()->url() == urls[depth - 1]);
    EXPECT_EQ(state->current(), state->breadcrumbs().last());
    EXPECT_TRUE(state->selected()->url() == urls.back());
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
