#include "ModelFixture.h"

#include "BrisalonCore/FileNodeBuilder.h"
#include "BrisalonCore/ItemStatus.h"

namespace brisalon::tests {

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
    /// Asks, and says what for: the paths below the tree, or else why for nothing.
    std::string asked()
    {
        state->requestTrashSelected();
        // Few items are looked at while the call waits, but on a busy machine not always.
        waitForWork();
        if (!state->confirmTrash())
            return state->statusMessage().toStdString();
        std::string paths;
        for (const FileURL& url : state->confirmTrash()->urls)
            paths += url.path().substr(tree.path().size() + 1) + ' ';
        return paths;
    }
    void confirmAndWait()
    {
        state->confirmPendingTrash();
        waitForWork();
        waitForEnd();
    }
};

TEST_F(TrashTest, AsksForWhatIsSelectedAndSaysWhyNot)
{
    EXPECT_EQ(asked(), "Select a file or folder first.");
    state->setSelectedLargeFileIDs({"/not/listed"});
    EXPECT_EQ(asked(), "Select a file or folder first.");
    state->setSelectedLargeFileIDs({});
    state->setSelected(heldTree(FileNodeBuilder::make(FileURL("/x/.small-files-aggregate"), 5,
                                                      NodeKind::smallFilesAggregate(2))));
    EXPECT_EQ(asked(), "Zoom in to delete individual small files.");
    state->setSelected(heldTree(FileNodeBuilder::make(FileURL("/usr"), 5, NodeKind::directory)));
    EXPECT_EQ(asked(), "Those paths are protected and will not be deleted.");

    scan(tree.url());
    const FileNodeValue folder = child(state->tree(), "folder");
    state->setSelected(folder);
    const QString before = state->statusMessage();
    EXPECT_EQ(asked(), "folder ");
    EXPECT_EQ(state->confirmTrash()->bytes, 2 * mib + 12 * kib);
    EXPECT_EQ(state->statusMessage(), before);
    state->dismissTrash();
    EXPECT_FALSE(state->confirmTrash());

    // An aggregate stands for its files.
    state->setSelected(child(folder, ".small-files-aggregate"));
    EXPECT_EQ(asked(), "folder/small folder/tiny ");
    EXPECT_EQ(state->confirmTrash()->bytes, 12 * kib);

    // Ticked files count before the map's selection.
    state->setSelectedLargeFileIDs({id("big.bin")});
    EXPECT_EQ(asked(), "big.bin ");
    EXPECT_TRUE(workspace.requests.empty()) << "nothing moves before the answer";
}

TEST_F(TrashTest, AQuestionAboutVeryManyItemsComesLaterUnlessAnotherIsAsked)
{
    scan(tree.url());
    std::vector<FileURL> files;
    for (int i = 0; i < 6'000; ++i)
        files.push_back(tree.url().appendingPathComponent(std::to_string(i)));
    state->setSelected(heldTree(FileNodeBuilder::make(url(".small-files-aggregate"), 5,
                                                      NodeKind::smallFilesAggregate(6'000), {},
                                                      FileURLList(files))));
    state->requestTrashSelected();
    EXPECT_FALSE(state->confirmTrash());
    EXPECT_TRUE(state->isWorking());
    ASSERT_TRUE(waitFor([this] { return state->confirmTrash().has_value(); }));
    EXPECT_EQ(state->confirmTrash()->urls.size(), 6'000u);
    EXPECT_FALSE(state->isWorking());
    state->dismissTrash();

    state->requestTrashSelected();
    state->setSelected(child(state->tree(), "big.bin"));
    EXPECT_EQ(asked(), "big.bin ");
}

TEST_F(TrashTest, ReportsTheMoveAndScansAgainUnderTheOldMap)
{
    scan(tree.url());
    state->setSelectedLargeFileIDs({id("big.bin"), id("folder/middle.bin")});
    EXPECT_EQ(asked(), "big.bin folder/middle.bin ");
    // Between question and answer another file takes the place of one.
    const auto before = ItemStatus::read(id("big.bin"));
    tree.remove("big.bin");
    tree.file("big.bin", 4 * mib);
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
    ASSERT_EQ(workspace.requests[0].size(), 2u);
    EXPECT_EQ(workspace.requests[0][0].identity, before->identity) << "what was asked about";
}

TEST_F(TrashTest, NothingMovedLeavesTheReportAndItsFirstFailure)
{
    scan(tree.url());
    state->setSelected(child(state->tree(), "big.bin"));
    workspace.refusedPaths = {id("big.bin")};
    for (const char* error : {"", "Permission denied"}) {
        workspace.error = error;
        asked();
        confirmAndWait();
        const std::string own = "Could not move big.bin to Trash.";
        EXPECT_EQ(state->statusMessage().toStdString(), *error ? error : own);
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
    asked();
    workspace.holdsMoves = true;
    state->confirmPendingTrash();
    ASSERT_TRUE(waitFor([&] { return !workspace.requests.empty(); }));
    EXPECT_TRUE(state->isWorking());
    state.reset();
    EXPECT_TRUE(workspace.releaseMove());
}

} // namespace brisalon::tests
