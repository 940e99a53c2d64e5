#include "BrisalonCore/LargeFiles.h"

#include "BrisalonCore/FileNodeBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace brisalon;

namespace {

FileNode leaf(const FileURL& folder, const std::string& name, std::int64_t size,
              NodeKind kind = NodeKind::file)
{
    return FileNodeBuilder::make(folder.appendingPathComponent(name), size, kind);
}

/// A random tree whose leaves have few different sizes, so that many are equal.
FileNode randomTree(std::mt19937& random, const FileURL& url, int depth)
{
    std::vector<FileNode> children;
    const auto count = random() % 6;
    for (unsigned i = 0; i < count; ++i) {
        const std::string name = std::string("n").append(std::to_string(i));
        const auto size = static_cast<std::int64_t>(random() % 8) - 2;
        switch (random() % 5) {
        case 0:
        case 1:
            if (depth > 0) {
                children.push_back(randomTree(random, url.appendingPathComponent(name), depth - 1));
                break;
            }
            [[fallthrough]];
        case 2:
            children.push_back(leaf(url, name, size));
            break;
        case 3:
            children.push_back(leaf(url, name + ".app", size, NodeKind::package));
            break;
        default:
            children.push_back(leaf(url, name, size + 100, NodeKind::smallFilesAggregate(3)));
        }
    }
    return FileNodeBuilder::make(url, 0, NodeKind::directory, std::move(children));
}

std::vector<LargeFileEntry> sortedFiles(const FileNode& root)
{
    std::vector<LargeFileEntry> all;
    const std::function<void(const FileNode&)> collect = [&](const FileNode& node) {
        if (node.kind() == NodeKind::file || node.kind() == NodeKind::package)
            all.push_back(
                {node.url(), node.name(), node.allocatedSize(), node.hogKind(), node.risk()});
        else if (node.kind() == NodeKind::directory)
            for (const FileNode& child : node.children())
                collect(child);
    };
    collect(root);
    std::ranges::stable_sort(all, std::ranges::greater(), &LargeFileEntry::allocatedSize);
    return all;
}

TEST(LargeFiles, TopFilesAreThoseOfAFullStableSort)
{
    std::mt19937 random(2);
    for (int round = 0; round < 300; ++round) {
        const FileNode root = randomTree(random, FileURL("/r"), 6);
        const auto all = sortedFiles(root);
        for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{7},
                                        std::size_t{50}, all.size(), SIZE_MAX}) {
            const auto expected =
                std::vector(all.begin(),
                            all.begin() + static_cast<std::ptrdiff_t>(std::min(limit, all.size())));
            ASSERT_EQ(LargeFiles::topFiles(root, limit), expected) << round << ' ' << limit;
        }
    }
}

TEST(LargeFiles, FilesAndPackagesButNoAggregates)
{
    const FileURL url("/r");
    const FileNode inside = leaf(FileURL("/r/A.app"), "big", 1000);
    const FileNode package(FileURL("/r/A.app"), "A.app", 500, NodeKind::package, HogKind::none,
                           Risk::unknown, {inside}, {});
    const FileNode root =
        FileNodeBuilder::make(url, 0, NodeKind::directory,
                              {leaf(url, "aggregate", 900, NodeKind::smallFilesAggregate(4)),
                               package, leaf(url, "image.dmg", 500), leaf(url, "empty", 0)});
    const auto entries = LargeFiles::topFiles(root, 50);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].id(), "/r/A.app");
    EXPECT_EQ(entries[1].name, "image.dmg");
    EXPECT_EQ(entries[1].hogKind, HogKind::installer);
    EXPECT_EQ(entries[1].risk, Risk::review);
    EXPECT_EQ(entries[2].allocatedSize, 0);

    EXPECT_EQ(LargeFiles::parentPath(FileURL("/r/A.app"), root), "/r");
    EXPECT_EQ(LargeFiles::parentPath(FileURL("/r/A.app/x"), root), "/r/A.app");
    EXPECT_EQ(LargeFiles::parentPath(url, root), std::nullopt);
    EXPECT_EQ(LargeFiles::topFiles(leaf(url, "alone", 3), 5).size(), 1u);
    EXPECT_TRUE(
        LargeFiles::topFiles(leaf(url, "a", 3, NodeKind::smallFilesAggregate(1)), 5).empty());
}

TEST(LargeFiles, FindsWhatAComparisonOfEveryPathFinds)
{
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        // Also nodes that do not lie where their URL says.
        std::vector<FileNode> children;
        for (const char* path : {"/n1", "/n1/n2", "n1", "/n1"})
            children.push_back(randomTree(random, FileURL(path), 3));
        const FileNode root = FileNodeBuilder::make(FileURL(round % 2 ? "/" : "/n1"), 0,
                                                    NodeKind::directory, std::move(children));
        std::vector<const FileNode*> all;
        const std::function<void(const FileNode&)> collect = [&](const FileNode& node) {
            all.push_back(&node);
            for (const FileNode& child : node.children())
                collect(child);
        };
        collect(root);
        for (const FileNode* node : all)
            for (const char* suffix : {"", "/", "/n0", "0", "_", "//n0"}) {
                std::string path = node->id() + suffix;
                const auto slash = path.rfind('/');
                if (*suffix == '_' && slash != std::string::npos)
                    path[slash] = '_'; // one name where there are two
                if (*suffix == '_')
                    path.pop_back();
                const auto first = std::ranges::find(all, path, &FileNode::id);
                ASSERT_EQ(LargeFiles::find(path, root), first == all.end() ? nullptr : *first)
                    << path;
            }
    }
}

TEST(LargeFiles, SurvivesAnyDepth)
{
    constexpr int depth = 100'000;
    std::vector<FileURL> urls{FileURL("/")};
    for (int i = 0; i < depth; ++i)
        urls.push_back(urls.back().appendingPathComponent("d"));
    FileNode node = FileNodeBuilder::make(FileURL("/deepest"), 9, NodeKind::file);
    const std::string longest = urls.back().path();
    for (; !urls.empty(); urls.pop_back())
        node = FileNode(urls.back(), "d", 9, NodeKind::directory, HogKind::none, Risk::unknown,
                        {node}, {});
    EXPECT_EQ(LargeFiles::topFiles(node, 50).size(), 1u);
    ASSERT_NE(LargeFiles::find("/deepest", node), nullptr);
    ASSERT_NE(LargeFiles::find(longest, node), nullptr);
}

} // namespace
