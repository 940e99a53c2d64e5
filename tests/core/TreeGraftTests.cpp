#include "BrisalonCore/TreeGraft.h"

#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "support/Files.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include <sys/mount.h>

using namespace brisalon;
using tests::scanned;
using tests::TemporaryTree;

namespace {

ScanResult rescanned(const FileNode& tree, const FileURL& folder, std::int64_t threshold = 0,
                     std::stop_token stop = {})
{
    return DiskScanner{threshold, 0}.rescan(tree, folder, [](const ScanProgress&) {}, stop);
}

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
                if (i % 4 == 3 && path != tree.path()) {
                    tree.remove(inside);
                    ++removed;
                }
                whole = std::get<FileNode>(rescanned(whole, folder.url(), threshold));
                const FileNode anew = scanned(tree.url(), threshold);
                ASSERT_EQ(whole, anew) << path;
                EXPECT_EQ(LargeFiles::topFiles(whole, 50), LargeFiles::topFiles(anew, 50));
                for (const FileNode& each : foldersIn(anew))
                    EXPECT_TRUE(LargeFiles::find(each.url().path(), whole));
            }
        }
    }
    EXPECT_GT(removed, 5);
}

TEST(TreeGraft, ARescanKeepsToTheRulesOfTheWholeScan)
{
    const TemporaryTree tree(TemporaryTree::Storage::memory);
    if (!tree.isInMemory())
        GTEST_SKIP() << "needs the right to mount";
    tree.file("seen/big", 300 * 1024);
    for (const char* const folder :
         {"part/again", "part/kernel", "part/cached/deep", "link", "file"})
        tree.folder(folder);
    tests::writeText(tree.at("part/cached/CACHEDIR.TAG"),
                     "Signature: 8a477f597d28d172789f06886806bc55");
    tree.file("part/cached/deep/x", 300 * 1024);
    ASSERT_EQ(::mount(tree.at("seen").c_str(), tree.at("part/again").c_str(), "", MS_BIND, ""), 0);
    ASSERT_EQ(::mount("", tree.at("part/kernel").c_str(), "proc", 0, ""), 0);
    const FileNode whole = scanned(tree.url());
    for (const FileNode& folder : foldersIn(whole))
        EXPECT_EQ(std::get<FileNode>(rescanned(whole, folder.url())), whole) << folder.url().path();
    EXPECT_NE(scanned(FileURL(tree.at("part"))).allocatedSize(),
              LargeFiles::find(tree.at("part"), whole)->allocatedSize())
        << "by itself it is another scan";

    // What is no folder any more, which a scan shows as a file or not at all.
    const FileURL link(tree.at("link"));
    tree.remove("link");
    tree.link("link", tree.at("seen"));
    EXPECT_EQ(std::get<FileNode>(rescanned(whole, link)), scanned(tree.url()));
    const FileURL file(tree.at("file"));
    tree.remove("file");
    tree.file("file", 1);
    const FileNode left = std::get<FileNode>(rescanned(whole, file));
    EXPECT_EQ(LargeFiles::find(file.path(), left), nullptr);
    EXPECT_TRUE(LargeFiles::find(file.path(), whole));

    for (const char* const no : {"part/missing", "seen/big"})
        EXPECT_EQ(std::get<ScanError>(rescanned(whole, FileURL(tree.at(no)))),
                  ScanError::rootMissing);
    EXPECT_EQ(std::get<ScanError>(rescanned(whole, FileURL("/"))), ScanError::rootMissing);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(rescanned(whole, link, 0, stop.get_token()), ScanResult(TaskCancelled{}));
    const TemporaryTree gone;
    gone.folder("folder");
    const FileNode before = scanned(gone.url());
    gone.remove("");
    EXPECT_EQ(std::get<ScanError>(rescanned(before, FileURL(gone.at("folder")))),
              ScanError::rootMissing);
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

TEST(TreeGraft, WhatTheFolderLeavesOutTakesTheOldPlace)
{
    const auto leftOut = [](std::vector<std::string> folders, std::size_t count) {
        ScanOmissions omissions;
        for (const std::string& folder : folders)
            omissions.unreadable.push_back({FileURL(folder)});
        omissions.unreadableCount = omissions.vanishedCount = count;
        omissions.mounts.omittedCount = count;
        return omissions;
    };
    ScanOmissions omissions = leftOut({"/a", "/a/x", "/a-b", "/b"}, 1000);
    omissions.replace(FileURL("/a"), leftOut({"/a/y"}, 1));
    std::vector<std::string> paths;
    for (const ScanOmissions::Folder& folder : omissions.unreadable)
        paths.push_back(folder.url.path());
    EXPECT_EQ(paths, (std::vector<std::string>{"/a-b", "/b", "/a/y"}));
    EXPECT_EQ(omissions.unreadableCount, 999U);
    EXPECT_EQ(omissions.vanishedCount, 1001U);
    EXPECT_EQ(omissions.mounts.omittedCount, 1U);
    omissions.replace(FileURL("/c"), leftOut(std::vector<std::string>(200, "/c/d"), 200));
    EXPECT_EQ(omissions.unreadable.size(), ScanOmissions::limit);
}

} // namespace
