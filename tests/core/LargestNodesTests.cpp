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

/// A random tree of everything, with hogs of several kinds in one another and packages
/// that hold something; few different sizes, so that many are equal.
FileNode randomTree(std::mt19937& random, const FileURL& url, int depth)
{
    std::vector<FileNode> children;
    for (const char* name :
         {"n0", "n1", "n2.app", "node_modules", ".Trash", "logs", "disk.dmg", "Caches"}) {
        const FileURL child = url.appendingPathComponent(name);
        const auto size = static_cast<std::int64_t>(random() % 8) - 2;
        const auto choice = random() % 6;
        if (choice == 1)
            children.push_back(
                FileNodeBuilder::make(child, size + 100, NodeKind::smallFilesAggregate(3)));
        else if (choice > 1 && (choice < 4 || depth == 0))
            children.push_back(FileNodeBuilder::make(child, size, NodeKind::file));
        else if (choice > 3)
            children.push_back(randomTree(random, child, depth - 1));
    }
    std::int64_t total = 0;
    for (const FileNode& child : children)
        total += child.allocatedSize();
    const bool isPackage = url.lastPathComponent().ends_with(".app");
    return FileNodeBuilder::make(
        url, total, isPackage ? NodeKind::package : NodeKind(NodeKind::directory), children);
}

using Nodes = std::vector<const FileNode*>;

/// The node and all in it, as one meets them, but nothing that is in those.
Nodes nodesIn(
    const FileNode& root,
    const std::function<bool(const FileNode&)>& isClosed = [](const FileNode&) { return false; })
{
    Nodes nodes{&root};
    if (!isClosed(root))
        for (const FileNode& child : root.children())
            std::ranges::copy(nodesIn(child, isClosed), std::back_inserter(nodes));
    return nodes;
}

/// The largest, by sorting all.
std::vector<LargeFileEntry> largest(Nodes nodes, std::size_t limit)
{
    std::ranges::stable_sort(nodes, std::ranges::greater(), &FileNode::allocatedSize);
    std::vector<LargeFileEntry> entries;
    for (std::size_t i = 0; i < std::min(limit, nodes.size()); ++i)
        entries.push_back({nodes[i]->url(), nodes[i]->name(), nodes[i]->allocatedSize(),
                           nodes[i]->hogKind(), nodes[i]->risk()});
    return entries;
}

TEST(LargeFiles, TopFilesAreThoseOfAFullStableSort)
{
    std::mt19937 random(2);
    const auto isPackage = [](const FileNode& node) { return node.kind() == NodeKind::package; };
    for (int round = 0; round < 100; ++round) {
        const FileNode tree = randomTree(random, FileURL("/r"), 3);
        const Nodes all = nodesIn(tree);
        for (const FileNode* root : {&tree, all[random() % all.size()]}) {
            Nodes files = nodesIn(*root, isPackage);
            std::erase_if(files, [&](const FileNode* node) {
                return !isPackage(*node) && node->kind() != NodeKind::file;
            });
            for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, std::size_t{7},
                                            std::size_t{50}, files.size(), SIZE_MAX})
                ASSERT_EQ(LargeFiles::topFiles(*root, limit), largest(files, limit)) << limit;
        }
    }
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
        const Nodes nodes = nodesIn(root);
        std::map<std::string, const FileNode*> first;
        for (const FileNode* node : nodes)
            first.emplace(node->id(), node);
        for (const FileNode* node : nodes) {
            const std::string above = node->url().deletingLastPathComponent().path();
            EXPECT_EQ(LargeFiles::parentPath(node->url(), root),
                      first.contains(above) ? std::optional(above) : std::nullopt);
            for (const char* suffix : {"", "/", "/n0", "0", "_", "//n0"}) {
                std::string path = node->id() + suffix;
                if (*suffix == '_') { // one name where there are two
                    path.pop_back();
                    std::replace(path.begin() + 1, path.end(), '/', '_');
                }
                const auto expected = first.find(path);
                ASSERT_EQ(LargeFiles::find(path, root),
                          expected == first.end() ? nullptr : expected->second)
                    << path;
            }
        }
    }
}

TEST(HogSummary, CountsEveryByteOnceUnderItsOutermostHog)
{
    std::mt19937 random(7);
    std::size_t kinds = 0;
    const auto isHog = [](const FileNode& node) { return node.hogKind() != HogKind::none; };
    for (int i = 0; i < 100; ++i) {
        const FileNode tree = randomTree(random, FileURL("/home/u"), 3);
        std::map<HogKind, Nodes> places;
        for (const FileNode* node : nodesIn(tree, isHog))
            if (isHog(*node))
                places[node->hogKind()].push_back(node);
        for (const std::size_t limit : {0U, 1U, 3U, 1000U}) {
            std::vector<HogSum> expected;
            std::int64_t safe = 0;
            for (const auto& [kind, nodes] : places) {
                std::int64_t bytes = 0;
                for (const FileNode* node : nodes)
                    bytes += node->allocatedSize();
                if (bytes > 0)
                    expected.push_back({kind, bytes, nodes.size(), largest(nodes, limit)});
                safe += bytes > 0 && risk(kind) == Risk::safe ? bytes : 0;
            }
            std::ranges::stable_sort(expected, std::ranges::greater(), &HogSum::allocatedSize);
            const auto sums = HogSummary::of(tree, limit);
            EXPECT_EQ(sums, expected);
            EXPECT_EQ(HogSummary::safeBytes(sums), safe);
            kinds = std::max(kinds, sums.size());
        }
    }
    EXPECT_GE(kinds, 3U);
}

} // namespace
