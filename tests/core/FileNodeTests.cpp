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
    const auto name = [](const char* path, NodeKind kind) {
        return FileNodeBuilder::displayName(FileURL(path), kind);
    };
    EXPECT_EQ(name("/", NodeKind::directory), "/");
    EXPECT_EQ(name("/a/b\n\xFE", NodeKind::file), "b\n\xFE");
    EXPECT_EQ(name("/", NodeKind::smallFilesAggregate(1)), "1 small files");

    const FileURL url("/u/Library/Caches/.small-files-aggregate");
    const FileURLList sources{FileURL("/u/Library/Caches/x")};
    const FileNode made =
        FileNodeBuilder::make(url, 5, NodeKind::smallFilesAggregate(37), {}, sources);
    EXPECT_EQ(made, FileNode(url, "37 small files", 5, NodeKind::smallFilesAggregate(37),
                             HogKind::caches, Risk::safe, {}, sources));
    EXPECT_EQ(file("/u/Docker.raw", 1).risk(), Risk::caution);

    const FileNode odd(url, "anything", -1, NodeKind::package, HogKind::docker, Risk::safe, {}, {});
    EXPECT_EQ(odd.name(), "anything");
    EXPECT_EQ(odd.allocatedSize(), -1);
    EXPECT_EQ(odd.kind(), NodeKind::package);
    EXPECT_EQ(odd.hogKind(), HogKind::docker);
    EXPECT_EQ(odd.risk(), Risk::safe);
}

TEST(FileNode, OnlyFoldersWithChildrenCanBeEntered)
{
    for (const NodeKind kind : {NodeKind(NodeKind::directory), NodeKind(NodeKind::package),
                                NodeKind::smallFilesAggregate(2)})
        for (const std::size_t count : {0U, 1U})
            EXPECT_EQ(
                FileNodeBuilder::make(FileURL("/a"), 9, kind, std::vector(count, file("/a/x", 1)))
                    .canZoom(),
                kind == NodeKind::directory && count == 1);
}

TEST(FileNode, LooksUpByFullPath)
{
    const FileNode root =
        folder("/r", {folder("/r/a", {file("/r/a/x", 3)}), file("/r/b", 2), file("/r/b", 1)});
    for (const char* path : {"b", "/r/B", "/r/a/x"})
        EXPECT_EQ(root.child(path), nullptr) << path;
    EXPECT_EQ(root.child("/r/b"), &root.children()[1]) << "the first of two";

    const std::string down[]{"/r/a", "/r/a/x"};
    const std::string astray[]{"/r/a", "/r/b"};
    EXPECT_EQ(root.node({}), &root);
    EXPECT_EQ(root.node(down), &root.children()[0].children()[0]);
    EXPECT_EQ(root.node(astray), nullptr);
}

TEST(FileNode, EqualityComparesEveryValueAtEveryDepth)
{
    const auto tree = [](std::int64_t deepSize) {
        return folder("/r", {folder("/r/a", {file("/r/a/x", 7)}),
                             FileNode(FileURL("/r/b"), "b", 7, NodeKind::directory, HogKind::none,
                                      Risk::unknown, {file("/r/b/y", deepSize)}, {})});
    };
    EXPECT_EQ(tree(7), tree(7));
    EXPECT_NE(tree(7), tree(8));

    using enum HogKind;
    struct Values {
        const char* name;
        NodeKind kind;
        HogKind hog;
        Risk risk;
        FileURLList sources;

        FileNode node() const { return {FileURL("/n"), name, 1, kind, hog, risk, {}, sources}; }
    };
    const FileURLList x{FileURL("/n/x")};
    const auto one = NodeKind::smallFilesAggregate(1);
    const auto two = NodeKind::smallFilesAggregate(2);
    const Values plain{"n", one, none, Risk::unknown, x};
    EXPECT_EQ(plain.node(), plain.node());
    for (const Values& other : {Values{"m", one, none, Risk::unknown, x},
                                {"n", NodeKind::package, none, Risk::unknown, x},
                                {"n", two, none, Risk::unknown, x},
                                {"n", one, logs, Risk::unknown, x},
                                {"n", one, none, Risk::safe, x},
                                {"n", one, none, Risk::unknown, {FileURL("/n/y")}},
                                {"n", one, none, Risk::unknown, {}}})
        EXPECT_NE(plain.node(), other.node());
}

TEST(FileNode, CopiesOutliveTheirTree)
{
    FileNode kept = file("/x", 0);
    {
        const FileNode root = folder("/r", {folder("/r/a", {file("/r/a/x", 3)})});
        kept = root.children()[0];
    }
    EXPECT_EQ(kept, folder("/r/a", {file("/r/a/x", 3)}));
    kept = kept.children()[0]; // assigning a part of itself
    EXPECT_EQ(kept, file("/r/a/x", 3));
    FileNode moved = std::move(kept);
    EXPECT_EQ(moved.id(), "/r/a/x");
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
