#include "BrisalonCore/TreeGraft.h"

#include "BrisalonCore/LargeFiles.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace brisalon;
using tests::scanned;
using tests::TemporaryTree;

namespace {

std::vector<FileNode> foldersIn(const FileNode& tree)
{
    std::vector<FileNode> folders{tree};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const FileNode folder = folders[i];
        for (const FileNode& child : folder.children())
            if (child.kind() == NodeKind::directory)
                folders.push_back(child);
    }
    return folders;
}

TEST(TreeGraft, EqualsAWholeScanAfterRandomChangesBelowTheFolder)
{
    std::mt19937 random(3);
    int removed = 0;
    unsigned filling = 100; // no name twice
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        tree.fillAtRandom(seed, 400);
        for (const std::int64_t threshold : {0, 32 * 1024}) {
            FileNode whole = scanned(tree.url(), threshold);
            // Several times on one tree, so that grafts lie in grafts.
            for (unsigned i = 0; i < 12; ++i) {
                const auto folders = foldersIn(whole);
                const FileNode folder = folders[random() % folders.size()];
                const std::string path = folder.url().path();
                const std::string inside =
                    path == tree.path() ? "" : path.substr(tree.path().size() + 1);
                for (const FileNode& child : folder.children())
                    if (random() % 3 == 0 && !child.kind().isAggregate())
                        tree.remove(inside + '/' + std::string(child.url().lastPathComponent()));
                tree.fillAtRandom(++filling, static_cast<int>(random() % 30), inside);
                std::optional<FileNode> next;
                if (i % 4 == 3 && path != tree.path()) {
                    tree.remove(inside);
                    ++removed;
                } else {
                    next = scanned(folder.url(), threshold);
                }
                const auto grafted = TreeGraft::graft(whole, path, next);
                const FileNode anew = scanned(tree.url(), threshold);
                ASSERT_EQ(grafted, anew) << path;
                EXPECT_EQ(LargeFiles::topFiles(*grafted, 50), LargeFiles::topFiles(anew, 50));
                for (const FileNode& each : foldersIn(anew))
                    EXPECT_TRUE(LargeFiles::find(each.url().path(), *grafted));
                whole = *grafted;
            }
        }
    }
    EXPECT_GT(removed, 5);
}

TEST(TreeGraft, FindsOnlyFoldersOfTheTree)
{
    const TemporaryTree tree;
    tree.file("folder/big", 300 * 1024);
    tree.file("folder/small", 1);
    tree.folder("folder/empty");
    const FileNode whole = scanned(tree.url(), 256 * 1024);
    for (const char* const wrong :
         {"/folder/big", "/folder/small", "/folder/.small-files-aggregate", "/fold", "/folder/emp",
          "x/folder", "folder", "/folder/empty/deeper"})
        EXPECT_FALSE(TreeGraft::graft(whole, tree.path() + wrong, whole)) << wrong;
    EXPECT_FALSE(TreeGraft::graft(whole, "/", whole));
    EXPECT_FALSE(TreeGraft::graft(whole, tree.path(), std::nullopt));
    EXPECT_EQ(TreeGraft::graft(whole, tree.path(), whole), whole);
    const auto without = TreeGraft::graft(whole, tree.at("folder/empty"), std::nullopt);
    ASSERT_TRUE(without);
    tree.remove("folder/empty");
    EXPECT_EQ(*without, scanned(tree.url(), 256 * 1024));
}

TEST(TreeGraft, DeepTreesCostWhatTheyHold)
{
    const TemporaryTree tree(TemporaryTree::Storage::memory);
    const std::string path = tree.chain("top", "d", 20'000, 1);
    const FileNode whole = scanned(tree.url());
    const auto without = TreeGraft::graft(whole, path, std::nullopt);
    ASSERT_TRUE(without);
    EXPECT_NE(*without, whole);
    EXPECT_EQ(TreeGraft::graft(whole, path, scanned(FileURL(path))), whole);
}

} // namespace
