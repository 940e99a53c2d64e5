#include "BrisalonCore/FileNodeBuilder.h"
#include "BrisalonCore/HogSummary.h"
#include "BrisalonCore/LargeFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

using namespace brisalon;

namespace {

/// A random tree of everything, with hogs of several kinds in one another; few different
/// sizes, so that many are equal.
FileNode randomTree(std::mt19937& random, const FileURL& url, int depth)
{
    std::vector<FileNode> children;
    std::int64_t total = 0;
    for (const std::string name :
         {"n0", "n1", "n2", "node_modules", ".Trash", "logs", "disk.dmg", "Caches"}) {
        const FileURL child = url.appendingPathComponent(name);
        const auto size = static_cast<std::int64_t>(random() % 8) - 2;
        const auto choice = random() % 6;
        if (choice == 0)
            continue;
        if (choice == 1)
            children.push_back(
                FileNodeBuilder::make(child, size + 100, NodeKind::smallFilesAggregate(3)));
        else if (choice == 2)
            children.push_back(FileNodeBuilder::make(url.appendingPathComponent(name + ".app"),
                                                     size, NodeKind::package));
        else if (choice == 3 || depth == 0)
            children.push_back(FileNodeBuilder::make(child, size, NodeKind::file));
        else
            children.push_back(randomTree(random, child, depth - 1));
        total += children.back().allocatedSize();
    }
    return FileNodeBuilder::make(url, total, NodeKind::directory, std::move(children));
}

/// The node, and all in it, as one meets them.
std::vector<const FileNode*> all(const FileNode& root)
{
    std::vector<const FileNode*> nodes{&root};
    for (const FileNode& child : root.children())
        std::ranges::copy(all(child), std::back_inserter(nodes));
    return nodes;
}

LargeFileEntry entry(const FileNode& node)
{
    return {node.url(), node.name(), node.allocatedSize(), node.hogKind(), node.risk()};
}

std::vector<LargeFileEntry> largest(std::vector<LargeFileEntry> entries, std::size_t limit)
{
    std::ranges::stable_sort(entries, std::ranges::greater(), &LargeFileEntry::allocatedSize);
    if (entries.size() > limit)
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(limit), entries.end());
    return entries;
}

TEST(LargeFiles, TopFilesAreThoseOfAFullStableSort)
{
    std::mt19937 random(2);
    for (int round = 0; round < 100; ++round) {
        const FileNode root = randomTree(random, FileURL("/r"), 3);
        std::vector<LargeFileEntry> files;
        for (const FileNode* node : all(root))
            if (node->kind() == NodeKind::file || node->kind() == NodeKind::package)
                files.push_back(entry(*node));
        for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{7},
                                        std::size_t{50}, files.size(), SIZE_MAX})
            ASSERT_EQ(LargeFiles::topFiles(root, limit), largest(files, limit)) << limit;
    }
    const FileURL url("/r");
    EXPECT_EQ(LargeFiles::topFiles(FileNodeBuilder::make(url, 3, NodeKind::file), 5).size(), 1U);
    EXPECT_TRUE(
        LargeFiles::topFiles(FileNodeBuilder::make(url, 3, NodeKind::smallFilesAggregate(1)), 5)
            .empty());
    // What is in a package is the package.
    const FileNode package(url, "r", 2, NodeKind::package, HogKind::none, Risk::unknown,
                           {FileNodeBuilder::make(FileURL("/r/in"), 2, NodeKind::file)}, {});
    EXPECT_EQ(LargeFiles::topFiles(package, 5), std::vector{entry(package)});
    EXPECT_EQ(LargeFiles::parentPath(FileURL("/r/in"), package), "/r");
    EXPECT_EQ(LargeFiles::parentPath(FileURL("/r/a/b"), package), std::nullopt);
    EXPECT_EQ(LargeFiles::parentPath(url, package), std::nullopt);
}

TEST(LargeFiles, FindsWhatAComparisonOfEveryPathFinds)
{
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        // Also nodes that do not lie where their URL says.
        std::vector<FileNode> children;
        for (const char* path : {"/n1", "/n1/n2", "n1", "/n1"})
            children.push_back(randomTree(random, FileURL(path), 2));
        const FileNode root = FileNodeBuilder::make(FileURL(round % 2 ? "/" : "/n1"), 0,
                                                    NodeKind::directory, std::move(children));
        const auto nodes = all(root);
        std::map<std::string, const FileNode*> first;
        for (const FileNode* node : nodes)
            first.emplace(node->id(), node);
        for (const FileNode* node : nodes)
            for (const char* suffix : {"", "/", "/n0", "0", "_", "//n0"}) {
                std::string path = node->id() + suffix;
                const auto slash = path.rfind('/');
                if (*suffix == '_' && slash != std::string::npos)
                    path[slash] = '_'; // one name where there are two
                if (*suffix == '_')
                    path.pop_back();
                const auto expected = first.find(path);
                ASSERT_EQ(LargeFiles::find(path, root),
                          expected == first.end() ? nullptr : expected->second)
                    << path;
            }
    }
}

/// By recursion and sorting.
std::vector<HogSum> plainSums(const FileNode& root, std::size_t limit)
{
    std::map<HogKind, HogSum> byKind;
    const std::function<void(const FileNode&)> visit = [&](const FileNode& node) {
        if (node.hogKind() == HogKind::none) {
            std::ranges::for_each(node.children(), visit);
            return;
        }
        HogSum& sum = byKind[node.hogKind()];
        sum.kind = node.hogKind();
        sum.allocatedSize += node.allocatedSize();
        ++sum.placeCount;
        sum.places.push_back(entry(node));
    };
    visit(root);
    std::vector<HogSum> sums;
    for (auto& [kind, sum] : byKind) {
        sum.places = largest(std::move(sum.places), limit);
        if (sum.allocatedSize > 0)
            sums.push_back(sum);
    }
    std::ranges::stable_sort(sums, std::ranges::greater(), &HogSum::allocatedSize);
    return sums;
}

TEST(HogSummary, CountsEveryByteOnceUnderItsOutermostHog)
{
    std::mt19937 random(7);
    std::size_t kinds = 0;
    for (int i = 0; i < 100; ++i) {
        const FileNode tree = randomTree(random, FileURL("/home/u"), 3);
        for (const std::size_t limit : {0U, 1U, 3U, 1000U}) {
            const auto sums = HogSummary::of(tree, limit);
            EXPECT_EQ(sums, plainSums(tree, limit));
            kinds = std::max(kinds, sums.size());
            std::int64_t safe = 0;
            for (const HogSum& sum : sums)
                safe += risk(sum.kind) == Risk::safe ? sum.allocatedSize : 0;
            EXPECT_EQ(HogSummary::safeBytes(sums), safe);
        }
    }
    EXPECT_GE(kinds, 3U);
}

} // namespace
