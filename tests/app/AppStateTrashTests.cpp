#include "ModelFixture.h"

#include "Brisalon/Platform/DesktopWorkspace.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace brisalon::tests {

namespace fs = std::filesystem;

namespace {

std::string contentsOf(const fs::path& path)
{
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

class TrashTest : public ModelFixture {
protected:
    TrashTest()
    {
        tree.file("big.bin", 4 * mib);
        tree.file("folder/middle.bin", 2 * mib);
        tree.file("folder/tiny", 4 * kib);
        tree.file("folder/small", 8 * kib);
    }

    std::string id(const char* relative) const { return tree.at(relative); }
    std::vector<std::string> requested() const
    {
        std::vector<std::string> paths;
        if (state->confirmTrash())
            for (const FileURL& url : state->confirmTrash()->urls)
                paths.push_back(url.path());
        return paths;
    }
    void confirmAndWait()
    {
        const auto status = state->statusMessage();
        state->confirmPendingTrash();
        ASSERT_TRUE(waitFor([&] { return state->statusMessage() != status; }));
        waitForEnd();
    }
};

TEST_F(TrashTest, AsksForWhatIsSelectedAndSaysWhyNot)
{
    const auto refusal = [&] {
        state->requestTrashSelected();
        EXPECT_FALSE(state->confirmTrash());
        return state->statusMessage().toStdString();
    };
    EXPECT_EQ(refusal(), "Select a file or folder first.");
    state->setSelectedLargeFileIDs({"/not/listed"});
    EXPECT_EQ(refusal(), "Select a file or folder first.");
    state->setSelectedLargeFileIDs({});
    state->setSelected(FileNode(FileNodeBuilder::make(FileURL("/x/.small-files-aggregate"), 5,
                                                      NodeKind::smallFilesAggregate(2))));
    EXPECT_EQ(refusal(), "Zoom in to delete individual small files.");
    state->setSelected(FileNode(FileNodeBuilder::make(FileURL("/usr"), 5, NodeKind::directory)));
    EXPECT_EQ(refusal(), "Those paths are protected and will not be deleted.");

    scan(tree.url());
    const FileNodeValue folder = child(state->tree(), "folder");
    state->setSelected(folder);
    const QString before = state->statusMessage();
    state->requestTrashSelected();
    EXPECT_EQ(requested(), std::vector{id("folder")});
    EXPECT_EQ(state->trashQuestion().title, "Move 1 item(s) to Trash?");
    EXPECT_EQ(state->trashQuestion().message,
              "This will move 2.0 MB to Trash so you can restore it if needed.");
    EXPECT_EQ(state->statusMessage(), before);
    state->dismissTrash();
    EXPECT_FALSE(state->confirmTrash());
    EXPECT_EQ(state->trashQuestion().title, "Move to Trash?");
    EXPECT_EQ(state->trashQuestion().message, "");

    // An aggregate stands for its files.
    state->setSelected(child(folder, ".small-files-aggregate"));
    state->requestTrashSelected();
    EXPECT_EQ(requested().size(), 2u);
    EXPECT_EQ(state->confirmTrash()->bytes, 12 * kib);

    // Ticked files count before the map's selection.
    state->setSelectedLargeFileIDs({id("big.bin")});
    state->requestTrashSelected();
    EXPECT_EQ(requested(), std::vector{id("big.bin")});
    EXPECT_TRUE(workspace.requests.empty()) << "nothing moves before the answer";
}

TEST_F(TrashTest, ReportsTheMoveAndScansAgainUnderTheOldMap)
{
    scan(tree.url());
    state->setSelectedLargeFileIDs({id("big.bin"), id("folder/middle.bin")});
    state->requestTrashSelected();
    statuses.clear();
    workspace.error = "The disk is tired.";
    workspace.refusedPaths = {id("big.bin")};
    gate.holdResult();
    state->confirmPendingTrash();
    EXPECT_FALSE(state->confirmTrash());
    ASSERT_TRUE(waitFor([&] { return state->isScanning(); }));
    ASSERT_TRUE(gate.waitForScan());
    EXPECT_TRUE(state->tree()) << "the old map stays";
    EXPECT_FALSE(state->lastClean()) << "cleared by the scan";
    gate.open();
    waitForEnd();
    ASSERT_GE(statuses.size(), 2u);
    EXPECT_EQ(statuses[0], "Moved 1 item(s) (2.0 MB) to Trash.");
    EXPECT_TRUE(statuses.back().starts_with("Mapped "));
    ASSERT_EQ(workspace.requests.size(), 1u);
    EXPECT_EQ(workspace.requests[0].size(), 2u);
}

TEST_F(TrashTest, NothingMovedLeavesTheReportAndItsFirstFailure)
{
    scan(tree.url());
    state->setSelected(child(state->tree(), "big.bin"));
    workspace.refusedPaths = {id("big.bin")};
    for (const char* error : {"", "Permission denied"}) {
        workspace.error = error;
        state->requestTrashSelected();
        confirmAndWait();
        const std::string own = "Could not move big.bin to Trash.";
        EXPECT_EQ(state->statusMessage().toStdString(), *error ? error : own);
        ASSERT_TRUE(state->lastClean());
        EXPECT_EQ(state->lastClean()->movedCount, 0);
        EXPECT_EQ(state->failureText().toStdString(), *error ? error + (" · " + own) : own);
        EXPECT_FALSE(state->isScanning());
    }
    scan(tree.url());
    EXPECT_FALSE(state->lastClean());
    state->confirmPendingTrash();
    EXPECT_EQ(workspace.requests.size(), 2u) << "nothing waits";
}

TEST_F(TrashTest, AModelThatGoesDuringAMoveIsNotCalledAnyMore)
{
    scan(tree.url());
    state->setSelected(child(state->tree(), "big.bin"));
    state->requestTrashSelected();
    workspace.holdsMoves = true;
    state->confirmPendingTrash();
    ASSERT_TRUE(waitFor([&] { return !workspace.requests.empty(); }));
    state.reset();
    EXPECT_TRUE(workspace.releaseMove());
}

/// Moves on the real file system, with a home trash of the test's own.
class RealTrashTest : public TrashTest {
protected:
    RealTrashTest()
    {
        ::setenv("XDG_DATA_HOME", data.path().c_str(), 1);
        state = std::make_unique<AppState>(AppServices{
            .defaults = store,
            .folderPanel = panel,
            .workspace = desktop,
            .fileAccess = fileAccess,
            .bundle = bundle,
            .snapshots = SnapshotService(tools.at("tmutil")),
        });
    }
    ~RealTrashTest() override { ::setenv("XDG_DATA_HOME", before_.c_str(), 1); }

    static std::vector<std::string> namesIn(const fs::path& folder)
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryTree data;
    DesktopWorkspace desktop;

private:
    std::string before_ = std::getenv("XDG_DATA_HOME");
};

using Names = std::vector<std::string>;

TEST_F(RealTrashTest, KeepsWhatRestoringNeedsAndSparesWhatWasSwapped)
{
    tree.file("goes.bin", mib);
    tree.file("outside.bin", mib);
    scan(tree.url());
    state->setSelectedLargeFileIDs({id("goes.bin"), id("big.bin")});
    state->requestTrashSelected();
    ASSERT_EQ(requested().size(), 2u);
    // Between question and answer one becomes a link to something else.
    tree.remove("big.bin");
    tree.link("big.bin", tree.at("outside.bin"));
    confirmAndWait();

    EXPECT_FALSE(fs::exists(tree.at("goes.bin")));
    EXPECT_TRUE(fs::is_symlink(tree.at("big.bin")));
    EXPECT_TRUE(fs::exists(tree.at("outside.bin")));
    const fs::path trash = fs::path(data.path()) / "Trash";
    EXPECT_EQ(namesIn(trash / "files"), Names{"goes.bin"});
    const std::string info = contentsOf(trash / "info/goes.bin.trashinfo");
    EXPECT_NE(info.find("Path=" + tree.at("goes.bin")), std::string::npos) << info;
    EXPECT_EQ(child(state->tree(), "goes.bin").isPresent(), false) << "scanned again";
}

} // namespace brisalon::tests
