#include "BrisalonCore/TreeGraft.h"

#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/FileNodeBuilder.h"
#include "BrisalonCore/LargeFiles.h"
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
    for (const char* const folder : {"part/again", "part/kernel.app", "link", "file"})
        tree.folder(folder);
    tree.file("part/cached/deep/x", 300 * 1024);
    tree.write("part/cached/CACHEDIR.TAG", "Signature: 8a477f597d28d172789f06886806bc55");
    ASSERT_EQ(::mount(tree.at("seen").c_str(), tree.at("part/again").c_str(), "", MS_BIND, ""), 0);
    ASSERT_EQ(::mount("", tree.at("part/kernel.app").c_str(), "proc", 0, ""), 0);
    const FileNode whole = scanned(tree.url());
    // What is not entered is a folder, whatever its name.
    EXPECT_EQ(foldersIn(whole).size(), 9U);
    for (const FileNode& folder : foldersIn(whole))
        EXPECT_EQ(std::get<FileNode>(rescanned(whole, folder.url())), whole) << folder.url().path();
    EXPECT_NE(scanned(FileURL(tree.at("part"))).allocatedSize(),
              LargeFiles::find(tree.at("part"), whole)->allocatedSize())
        << "by itself it is another scan";

    // What is no folder any more is not there, until a whole scan shows it as what it is.
    for (const char* const name : {"link", "file"})
        tree.remove(name);
    tree.link("link", tree.at("seen"));
    tree.file("file", 1);
    for (const char* const name : {"link", "file"}) {
        const FileNode left = std::get<FileNode>(rescanned(whole, FileURL(tree.at(name))));
        EXPECT_EQ(LargeFiles::find(tree.at(name), left), nullptr) << name;
    }

    for (const std::string& no : {tree.at("part/missing"), tree.at("seen/big"), std::string("/")})
        EXPECT_EQ(rescanned(whole, FileURL(no)), ScanResult(ScanError::rootMissing)) << no;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(rescanned(whole, tree.url(), 0, stop.get_token()), ScanResult(TaskCancelled{}));
    const FileNode below = FileNodeBuilder::make(FileURL("/gone/x"), 0, NodeKind::directory);
    EXPECT_EQ(rescanned(FileNodeBuilder::make(FileURL("/gone"), 0, NodeKind::directory, {below}),
                        below.url()),
              ScanResult(ScanError::rootMissing));
}

TEST(TreeGraft, FindsOnlyFoldersOfTheTree)
{
    const auto made = [](const char* path, NodeKind kind, std::vector<FileNode> children) {
        return FileNodeBuilder::make(FileURL(path), 0, kind, std::move(children));
    };
    const FileNode whole = made("/t", NodeKind::directory,
                                {made("/t/file", NodeKind::file, {}),
                                 made("/t/small", NodeKind::smallFilesAggregate(1), {}),
                                 made("/t/empty", NodeKind::directory, {})});
    for (const char* const wrong :
         {"/t/file", "/t/small", "/t/emp", "/tx/empty", "/tempty", "/t/empty/deeper", "/"})
        EXPECT_FALSE(TreeGraft::graft(whole, wrong, whole)) << wrong;
    EXPECT_FALSE(TreeGraft::graft(whole, "/t", std::nullopt));
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
    omissions.replace(FileURL("/a"), leftOut(std::vector<std::string>(200, "/a/y"), 200));
    ASSERT_EQ(omissions.unreadable.size(), ScanOmissions::limit);
    for (std::size_t i = 0; const char* const path : {"/a-b", "/b", "/a/y"})
        EXPECT_EQ(omissions.unreadable[i++].url, FileURL(path));
    EXPECT_EQ(omissions.unreadableCount, 1198U);
    EXPECT_EQ(omissions.vanishedCount, 1200U);
    EXPECT_EQ(omissions.mounts.omittedCount, 200U);
}

} // namespace
