#include "ModelFixture.h"

#include "Brisalon/Platform/HomeFolder.h"
#include "BrisalonCore/LargeFiles.h"

#include <QCoreApplication>

#include <algorithm>
#include <filesystem>
#include <future>
#include <random>
#include <span>
#include <stdexcept>
#include <string>

namespace brisalon::tests {

using ScanTest = ModelFixture;
using Statuses = std::vector<std::string>;

TEST_F(ScanTest, AScanTellsItsStoryAndEndsInAMap)
{
    EXPECT_EQ(state->scanRoot(), homeFolder());
    EXPECT_EQ(state->lastUsedTarget(), WelcomeTarget::None);
    tree.file("Movies/a.mov", 3 * mib);
    tree.file("Movies/b.mov", 2 * mib);
    tree.file("notes.txt", 4 * kib);
    gate.holdAfter(0);
    state->startScan(tree.url());
    // What stands before the scanner has said anything.
    EXPECT_TRUE(state->isScanning());
    EXPECT_EQ(state->progress()->visitedCount, 0);
    EXPECT_EQ(state->progress()->currentPath, tree.path());
    EXPECT_TRUE(state->volume());
    EXPECT_EQ(state->lastUsedTarget(), WelcomeTarget::ChooseFolder);
    EXPECT_FALSE(state->tree());

    gate.open();
    waitForEnd();
    const std::string name = std::filesystem::path(tree.path()).filename();
    EXPECT_EQ(statuses, (Statuses{"Scanning " + tree.path() + "…", "Mapped 5.0 MB in " + name}));
    EXPECT_EQ(scanningStates, (std::vector<bool>{true, false}));
    EXPECT_EQ(state->tree()->id(), tree.path());
    EXPECT_EQ(crumbNames(), (Statuses{name}));
    EXPECT_EQ(state->progress()->visitedCount, 4);
    ASSERT_EQ(state->largeFiles().size(), 2);
    EXPECT_EQ(state->largeFiles().front().name, "a.mov");
}

TEST_F(ScanTest, AnotherFolderClearsTheMapAtOnce)
{
    tree.file("first/a.bin", mib);
    tree.folder("second");
    scan(url("first"));
    state->setSelected(child(state->tree(), "a.bin"));
    state->setSelectedLargeFileIDs({tree.at("first/a.bin")});

    gate.holdAfter(0);
    state->startScan(url("second"));
    EXPECT_FALSE(state->tree() || state->current() || state->selected());
    EXPECT_TRUE(state->breadcrumbs().isEmpty() && state->largeFiles().empty());
    EXPECT_TRUE(state->selectedLargeFileIDs().empty());
    gate.open();
    waitForEnd();
    EXPECT_EQ(state->tree()->children().size(), 0u);
}

TEST_F(ScanTest, TheSameFolderThroughALinkKeepsTheMapUntilTheNewOneIsThere)
{
    tree.file("folder/sub/a.bin", mib);
    tree.link("link", tree.at("folder"));
    scan(url("folder"));
    const FileNodeHold sub = child(state->tree(), "sub").hold();
    state->zoom(sub);
    state->setSelectedLargeFileIDs({tree.at("folder/sub/a.bin")});
    tree.file("folder/b.bin", 2 * mib);

    gate.holdResult();
    state->startScan(url("link"));
    ASSERT_TRUE(gate.waitForScan());
    QCoreApplication::processEvents();
    EXPECT_EQ(state->tree()->children().size(), 1u);
    EXPECT_EQ(state->current(), sub);

    gate.open();
    waitForEnd();
    EXPECT_EQ(state->tree()->children().size(), 2u);
    EXPECT_EQ(state->current(), state->tree());
    EXPECT_EQ(state->breadcrumbs().size(), 1);
    // What was selected stays so, though it is a node of the old tree.
    EXPECT_EQ(*state->selected(), *sub);
    EXPECT_EQ(state->selectedLargeFileIDs().size(), 1u);
    EXPECT_EQ(state->scanRoot().path(), tree.at("link"));
}

TEST_F(ScanTest, ARescanThatFindsTheSameIsSilentAndOneThatDiffersIsNot)
{
    tree.file("sub/a.bin", mib);
    tree.file("sub/b.bin", mib);
    scan(tree.url());
    scan(tree.url());
    EXPECT_EQ(treeChanges, 1);

    // The same sizes everywhere: only a name deep below tells the trees apart.
    std::filesystem::rename(tree.at("sub/a.bin"), tree.at("sub/c.bin"));
    scan(tree.url());
    EXPECT_EQ(treeChanges, 2);
    EXPECT_TRUE(child(child(state->tree(), "sub"), "c.bin"));

    // A map that is zoomed in goes back to the root even when nothing changed.
    state->zoom(child(state->tree(), "sub"));
    scan(tree.url());
    EXPECT_EQ(treeChanges, 2);
    EXPECT_EQ(state->current(), state->tree());
    EXPECT_EQ(state->breadcrumbs().size(), 1);
}

TEST_F(ScanTest, ARescanOfOneFolderEqualsAWholeOneAndKeepsThePlace)
{
    tree.fillAtRandom(5, 300);
    tree.file("big/deep/a.bin", mib);
    scan(tree.url());
    std::mt19937 random(11);
    for (unsigned i = 0; i < 12; ++i) {
        // A level somewhere, and changes in it or in a folder above or below it.
        state->jumpToBreadcrumb(state->tree());
        std::vector<FileNodeValue> folders{state->tree()};
        for (FileNodeValue at = state->tree(); at; folders.push_back(at)) {
            state->zoom(at);
            std::vector<FileNodeValue> below;
            for (const FileNode& node : at->children())
                if (node.kind() == NodeKind::directory)
                    below.push_back(at.at(node));
            if (below.empty())
                break;
            at = below[random() % below.size()];
        }
        const FileURL folder = folders[random() % folders.size()].url();
        const std::string inside = folder.path().substr(tree.path().size());
        if (i % 4 == 3 && !inside.empty())
            tree.remove(inside.substr(1));
        else
            tree.fillAtRandom(100 + i, 20, inside.empty() ? inside : inside.substr(1));
        const auto before = crumbNames();
        state->rescan(folder);
        EXPECT_EQ(state->scanRoot(), tree.url());
        waitForEnd();

        const FileNode anew =
            std::get<FileNode>(AppState::scanner.scan(tree.url(), [](const ScanProgress&) {}));
        ASSERT_EQ(*state->tree(), anew) << folder.path();
        const auto largest = LargeFiles::topFiles(anew, 50);
        EXPECT_EQ(state->largeFiles(), QList<LargeFileEntry>(largest.begin(), largest.end()));
        // All that is left of the way; what is selected is told of as it is now.
        const auto crumbs = crumbNames();
        EXPECT_TRUE(std::ranges::equal(crumbs, std::span(before).first(crumbs.size())));
        EXPECT_EQ(state->current(), state->breadcrumbs().last());
        const FileNode* const selected = LargeFiles::find(state->selected()->id(), anew);
        EXPECT_TRUE(!selected || *state->selected() == *selected);
    }
}

TEST_F(ScanTest, ARescanOfOneFolderThatDoesNotEndInATreeLeavesTheMap)
{
    tree.file("folder/a.bin", mib);
    scan(tree.url());
    const FileURL folder(tree.at("folder"));
    state->zoom(child(state->tree(), "folder"));
    tree.file("folder/b.bin", mib);
    state->rescan(folder);
    state->cancelScan();
    EXPECT_FALSE(state->isScanning());
    tree.remove("");
    state->rescan(folder);
    waitForEnd();
    EXPECT_EQ(state->scanError(), "That folder no longer exists.");
    EXPECT_EQ(treeChanges, 1);
    EXPECT_EQ(crumbNames().size(), 2U);
}

TEST_F(ScanTest, FailuresSayWhyAndOnlyCostAMapThatIsNotTheFolders)
{
    tree.file("file", mib);
    tree.file("folder/a.bin", mib);
    const std::string missing = "That folder no longer exists.";
    struct Row {
        ScanTask::Scan scan;
        const char* root;
        std::string status;
        std::string error;
    };
    const Row rows[] = {
        {{}, "missing", missing, missing},
        {{},
         "file",
         "Choose a folder to scan, not a file.",
         "Choose a folder to scan, not a file."},
        {[](auto&&...) -> ScanResult { throw std::runtime_error("No memory."); }, "folder",
         "No memory.", "No memory."},
        {[](auto&&...) -> ScanResult { return TaskCancelled{}; }, "folder", "Scan cancelled.", ""},
    };
    for (const Row& row : rows) {
        startOver(gate.scan(row.scan));
        scan(url(row.root));
        EXPECT_EQ(state->statusMessage().toStdString(), row.status);
        EXPECT_EQ(state->scanError().toStdString(), row.error);
        EXPECT_FALSE(state->tree());
    }
    startOver(gate.scan());
    scan(url("missing"));
    scan(url("folder"));
    EXPECT_TRUE(state->scanError().isEmpty());
    tree.remove("folder");
    scan(url("folder"));
    EXPECT_EQ(state->scanError().toStdString(), missing);
    ASSERT_TRUE(state->tree());
    EXPECT_EQ(state->tree()->id(), tree.at("folder"));
}

TEST_F(ScanTest, CancellingIsSeenAtOnceAndATreeThatComesAfterItIsDropped)
{
    state->cancelScan();
    EXPECT_EQ(statuses, (Statuses{"Scan cancelled."})) << "nothing runs, which it says as well";
    EXPECT_TRUE(scanningStates.empty());

    tree.file("a.bin", mib);
    for (const bool hasTree : {false, true}) {
        scanningStates.clear();
        hasTree ? gate.holdResult() : gate.holdAfter(0);
        state->startScan(tree.url());
        ASSERT_TRUE(gate.waitForScan());
        state->cancelScan();
        EXPECT_FALSE(state->isScanning());
        EXPECT_EQ(state->statusMessage(), "Scan cancelled.");
        letScanEnd();
        // A walk that notices says so.
        EXPECT_EQ(state->statusMessage(), hasTree ? "Scan cancelled." : "Scan was cancelled.");
        EXPECT_TRUE(state->scanError().isEmpty());
        EXPECT_FALSE(state->tree());
        EXPECT_EQ(scanningStates, (std::vector<bool>{true, false}));
    }
}

TEST_F(ScanTest, AReplacedScanNeverTouchesTheNewerOne)
{
    tree.file("first/a.bin", mib);
    tree.file("second/b.bin", mib);
    // The first ends by noticing its cancellation, then with a finished tree; the
    // second stands at the gate all the while.
    for (const bool hasTree : {false, true}) {
        statuses.clear();
        scanningStates.clear();
        hasTree ? gate.holdResult() : gate.holdAfter(0);
        state->startScan(url("first"));
        ASSERT_TRUE(gate.waitForScan());
        state->startScan(url("second"));
        letScanEnd();
        EXPECT_TRUE(state->isScanning());
        EXPECT_EQ(state->statusMessage().toStdString(), "Scanning " + tree.at("second") + "…");

        gate.open();
        waitForEnd();
        letScanEnd();
        EXPECT_EQ(statuses,
                  (Statuses{"Scanning " + tree.at("first") + "…",
                            "Scanning " + tree.at("second") + "…", "Mapped 1.0 MB in second"}));
        EXPECT_EQ(scanningStates, (std::vector<bool>{true, false}));
        EXPECT_EQ(state->tree()->id(), tree.at("second"));
    }

    // The older scan ignores its cancellation until the newer one has ended.
    std::promise<void> mayEnd;
    startOver(gate.scan([&](const FileURL& root, const DiskScanner::ProgressCallback& progress,
                            auto&&...) -> ScanResult {
        if (root.lastPathComponent() == "second")
            return AppState::scanner.scan(root, progress, {});
        mayEnd.get_future().wait();
        return ScanError::cancelled;
    }));
    state->startScan(url("first"));
    state->startScan(url("second"));
    waitForEnd();
    letScanEnd();
    mayEnd.set_value();
    letScanEnd();
    EXPECT_EQ(state->statusMessage(), "Mapped 1.0 MB in second");
    EXPECT_EQ(state->tree().name(), "second");
}

TEST_F(ScanTest, AModelMayGoWhileItsScanRuns)
{
    tree.file("a.bin", mib);
    gate.holdAfter(0);
    state->startScan(tree.url());
    ASSERT_TRUE(gate.waitForScan());
    state.reset();
    // The reports and the end that were queued find no model.
    QCoreApplication::processEvents();
}

TEST_F(ScanTest, PickingAFolderScansItAndDismissingThePanelChangesNothing)
{
    tree.file("caf\xe9/a.bin", mib); // no text, and shown as far as it can be
    state->pickFolderAndScan();
    EXPECT_EQ(panel.title, "Scan");
    EXPECT_FALSE(state->isScanning());
    EXPECT_TRUE(statuses.empty());

    panel.choose(url("caf\xe9"));
    waitForEnd();
    EXPECT_EQ(state->tree()->url(), url("caf\xe9"));
    EXPECT_EQ(state->statusMessage(), QString("Mapped 1.0 MB in caf\ufffd"));
    EXPECT_EQ(state->preferredWelcomeTarget().folder, url("caf\xe9"));

    // A panel that is answered after the model went.
    state->pickFolderAndScan();
    state.reset();
    panel.choose(tree.url());
}

} // namespace brisalon::tests
