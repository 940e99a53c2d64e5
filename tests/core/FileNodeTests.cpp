#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/FileNodeBuilder.h"
#include "BrisalonCore/HogSummary.h"
#include "BrisalonCore/LargeFiles.h"

#include <gtest/gtest.h>

using namespace brisalon;

namespace {

FileNode file(const std::string& path, std::int64_t size)
{
    return FileNodeBuilder::make(FileURL(path), size, NodeKind::file);
}

FileNode folder(const std::string& path, std::vector<FileNode> children)
{
    std::int64_t size = 0;
    for (const FileNode& child : children)
        size += child.allocatedSize();
    return FileNodeBuilder::make(FileURL(path), size, NodeKind::directory, std::move(children));
}

/// Folders "d" in one another, so many, and a file "x.dmg" in the innermost.
FileNode chain(int depth, std::int64_t size)
{
    std::vector<FileURL> urls{FileURL("/")};
    for (int i = 0; i < depth; ++i)
        urls.push_back(urls.back().appendingPathComponent("d"));
    FileNode node =
        FileNodeBuilder::make(urls.back().appendingPathComponent("x.dmg"), size, NodeKind::file);
    for (; !urls.empty(); urls.pop_back())
        node = FileNode(urls.back(), "d", size, NodeKind::directory, HogKind::none, Risk::unknown,
                        {node}, {});
    return node;
}

TEST(FileNode, BuilderDerivesAndInitialiserStores)
{
    EXPECT_EQ(folder("/", {}).name(), "/");
    EXPECT_EQ(file("/a/b\n\xFE", 1).name(), "b\n\xFE");
    EXPECT_EQ(file("/u/Docker.raw", 1).risk(), Risk::caution);
    const FileURL url("/u/Library/Caches/.small-files-aggregate");
    const FileURLList sources{FileURL("/u/Library/Caches/x")};
    const auto small = NodeKind::smallFilesAggregate(37);
    EXPECT_EQ(FileNodeBuilder::make(url, 5, small, {}, sources),
              FileNode(url, "37 small files", 5, small, HogKind::caches, Risk::safe, {}, sources));

    for (const NodeKind kind : {NodeKind(NodeKind::directory), NodeKind(NodeKind::package), small})
        for (const std::size_t count : {0U, 1U})
            EXPECT_EQ(
                FileNodeBuilder::make(url, 9, kind, std::vector(count, file("/x", 1))).canZoom(),
                kind == NodeKind::directory && count == 1);
}

TEST(FileNode, LooksUpByFullPath)
{
    const FileNode root =
        folder("/r", {folder("/r/a", {file("/r/a/x", 3)}), file("/r/b", 2), file("/r/b", 1)});
    EXPECT_EQ(root.child("/r/a/x"), nullptr);
    EXPECT_EQ(root.child("/r/b"), &root.children()[1]) << "the first of two";
    const std::vector<std::string> down{"/r/a", "/r/a/x"}, astray{"/r/a", "/r/b"};
    EXPECT_EQ(root.node({}), &root);
    EXPECT_EQ(root.node(down), &root.children()[0].children()[0]);
    EXPECT_EQ(root.node(astray), nullptr);
}

TEST(FileNode, EqualityComparesEveryValueAtEveryDepth)
{
    const auto nodes = [] {
        using enum HogKind;
        const FileURL url("/n");
        const FileURLList x{FileURL("/n/x")};
        const auto one = NodeKind::smallFilesAggregate(1);
        const auto deep = [](std::int64_t size, std::int64_t deepSize) {
            return folder("/n", {FileNode(FileURL("/n/b"), "b", size, NodeKind::directory, none,
                                          Risk::unknown, {file("/n/b/y", deepSize)}, {})});
        };
        return std::vector<FileNode>{
            {url, "n", 1, one, none, Risk::unknown, {}, x},
            {url, "m", 1, one, none, Risk::unknown, {}, x},
            {url, "n", 2, one, none, Risk::unknown, {}, x},
            {url, "n", 1, NodeKind::package, none, Risk::unknown, {}, x},
            {url, "n", 1, NodeKind::smallFilesAggregate(2), none, Risk::unknown, {}, x},
            {url, "n", 1, one, logs, Risk::unknown, {}, x},
            {url, "n", 1, one, none, Risk::safe, {}, x},
            {url, "n", 1, one, none, Risk::unknown, {}, {FileURL("/n/y")}},
            {url, "n", 1, one, none, Risk::unknown, {}, {}},
            {url, "n", 1, one, none, Risk::unknown, {file("/n/x", 1)}, x},
            deep(7, 7),
            deep(7, 8),
            deep(8, 8),
        };
    };
    const auto left = nodes();
    const auto right = nodes();
    for (std::size_t i = 0; i < left.size(); ++i)
        for (std::size_t j = 0; j < right.size(); ++j)
            EXPECT_EQ(left[i] == right[j], i == j) << i << ' ' << j;
}

TEST(FileNode, CopiesOutliveTheirTree)
{
    FileNode kept = folder("/r", {folder("/r/a", {file("/r/a/x", 3)})}).children()[0];
    EXPECT_EQ(kept, folder("/r/a", {file("/r/a/x", 3)}));
    kept = kept.children()[0]; // assigning a part of itself
    EXPECT_EQ(FileNode(std::move(kept)), file("/r/a/x", 3));
}

TEST(FileNode, DeepTreesNeedNoStack)
{
    constexpr int depth = 100'000;
    const FileNode deep = chain(depth, 5);
    EXPECT_EQ(deep, chain(depth, 5));
    EXPECT_NE(deep, chain(depth - 1, 5));
    EXPECT_NE(deep, chain(depth, 6));
    const auto files = LargeFiles::topFiles(deep, 3);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].url.path().size(), 2u * depth + 6);
    EXPECT_TRUE(LargeFiles::find(files[0].id(), deep));
    const auto sums = HogSummary::of(deep, 5);
    ASSERT_EQ(sums.size(), 1U);
    EXPECT_EQ(sums[0].allocatedSize, 5);
}

} // namespace
