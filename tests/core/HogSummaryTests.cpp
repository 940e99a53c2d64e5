#include "BrisalonCore/HogSummary.h"

#include "BrisalonCore/FileNodeBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

using namespace brisalon;

namespace {

FileNode directory(const FileURL& url, std::vector<FileNode> children)
{
    std::int64_t size = 0;
    for (const FileNode& child : children)
        size += child.allocatedSize();
    return FileNodeBuilder::make(url, size, NodeKind::directory, std::move(children));
}

/// A random tree with hogs of several kinds in one another; few different sizes, so
/// that many are equal.
FileNode randomTree(std::mt19937& random, const FileURL& url, int depth)
{
    static const std::vector<std::string> names{"a",    "b",        "node_modules", ".Trash",
                                                "logs", "disk.dmg", "DerivedData",  "Caches"};
    std::vector<FileNode> children;
    for (const std::string& name : names) {
        const FileURL child = url.appendingPathComponent(name);
        if (random() % 3 == 0 && depth > 0)
            children.push_back(randomTree(random, child, depth - 1));
        else if (random() % 2 == 0)
            children.push_back(FileNodeBuilder::make(
                child, static_cast<std::int64_t>(random() % 4) * 4096, NodeKind::file));
    }
    return directory(url, std::move(children));
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
        sum.places.push_back(
            {node.url(), node.name(), node.allocatedSize(), node.hogKind(), node.risk()});
    };
    visit(root);
    std::vector<HogSum> sums;
    for (auto& [kind, sum] : byKind) {
        sum.placeCount = sum.places.size();
        std::ranges::stable_sort(sum.places, std::ranges::greater(),
                                 &LargeFileEntry::allocatedSize);
        sum.places.resize(std::min(limit, sum.places.size()));
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
    for (int i = 0; i < 300; ++i) {
        const FileNode tree = randomTree(random, FileURL("/home/u"), 4);
        for (const std::size_t limit : {0U, 1U, 3U, 1000U}) {
            const auto sums = HogSummary::of(tree, limit);
            EXPECT_EQ(sums, plainSums(tree, limit));
            kinds = std::max(kinds, sums.size());
        }
    }
    EXPECT_GE(kinds, 3U);

    // Of a very deep tree.
    FileNode chain = FileNodeBuilder::make(FileURL("/x/node_modules"), 10, NodeKind::file);
    for (int i = 0; i < 100'000; ++i)
        chain = FileNode(FileURL("/x"), "x", 10, NodeKind::directory, HogKind::none, Risk::unknown,
                         {std::move(chain)}, {});
    const auto sums = HogSummary::of(chain, 5);
    ASSERT_EQ(sums.size(), 1U);
    EXPECT_EQ(sums[0].allocatedSize, 10);
}

TEST(HogSummary, OnlySafeKindsMayGoAtOnce)
{
    std::vector<HogSum> sums;
    std::int64_t expected = 0;
    for (const HogKind kind : allHogKinds) {
        sums.push_back({kind, 1 << static_cast<int>(kind), 1, {}});
        if (risk(kind) == Risk::safe)
            expected += sums.back().allocatedSize;
    }
    EXPECT_EQ(HogSummary::safeBytes(sums), expected);
    EXPECT_GT(expected, 0);
}

} // namespace
