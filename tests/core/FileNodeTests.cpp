#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/FileNodeBuilder.h"
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

FileNode chain(int depth, std::int64_t leafSize)
{
    FileURL url("/");
    std::vector<FileURL> urls{url};
    for (int i = 0; i < depth; ++i)
        urls.push_back(url = url.appendingPathComponent("d"));
    FileNode node = FileNodeBuilder::make(urls.back(), leafSize, NodeKind::file);
    for (auto above = urls.rbegin() + 1; above != urls.rend(); ++above)
        node = FileNode(*above, "d", leafSize, NodeKind::directory, HogKind::none, Risk::unknown,
                        {node}, {});
    return node;
}

TEST(FileNode, DisplayNames)
{
    const auto name = [](const char* path, NodeKind kind) {
        return FileNodeBuilder::displayName(FileURL(path), kind);
    };
    EXPECT_EQ(name("/", NodeKind::directory), "/");
    EXPECT_EQ(name("/a/b\n\xFE", NodeKind::file), "b\n\xFE");
    EXPECT_EQ(name("/", NodeKind::smallFilesAggregate(1)), "1 small files");
    EXPECT_EQ(name("/a", NodeKind::smallFilesAggregate(0)), "0 small files");
}

TEST(FileNode, BuilderDerivesAndInitialiserStores)
{
    const FileURL url("/u/Library/Caches/.small-files-aggregate");
    const FileNode made = FileNodeBuilder::make(url, 5, NodeKind::smallFilesAggregate(37), {},
                                                {FileURL("/u/Library/Caches/x")});
    EXPECT_EQ(made.hogKind(), HogKind::caches);
    EXPECT_EQ(made.risk(), Risk::safe);
    EXPECT_EQ(made.name(), "37 small files");
    EXPECT_EQ(file("/u/Docker.raw", 1).risk(), Risk::caution);
    EXPECT_EQ(made.aggregateSources(), FileURLList({FileURL("/u/Library/Caches/x")}));

    const FileNode odd(url, "anything", -1, NodeKind::smallFilesAggregate(-2), HogKind::docker,
                       Risk::safe, {file("/x", 1)}, {});
    EXPECT_EQ(odd.name(), "anything");
    EXPECT_EQ(odd.allocatedSize(), -1);
    EXPECT_EQ(odd.kind(), NodeKind::smallFilesAggregate(-2));
    EXPECT_EQ(odd.risk(), Risk::safe);
    EXPECT_EQ(odd.children().size(), 1u);
    EXPECT_FALSE(odd.canZoom());
}

TEST(FileNode, OnlyFoldersWithChildrenCanBeEntered)
{
    EXPECT_TRUE(folder("/a", {file("/a/x", 1)}).canZoom());
    EXPECT_FALSE(folder("/a", {}).canZoom());
    EXPECT_FALSE(FileNodeBuilder::make(FileURL("/a.app"), 9, NodeKind::package).canZoom());
    EXPECT_FALSE(FileNodeBuilder::make(FileURL("/a/.small-files-aggregate"), 9,
                                       NodeKind::smallFilesAggregate(2))
                     .canZoom());
}

TEST(FileNode, LooksUpByFullPath)
{
    const FileNode root =
        folder("/r", {folder("/r/a", {file("/r/a/x", 3)}), file("/r/b", 2), file("/r/b", 1)});
    EXPECT_EQ(root.child("b"), nullptr);
    EXPECT_EQ(root.child("/r/B"), nullptr);
    EXPECT_EQ(root.child("/r/a/x"), nullptr);
    ASSERT_NE(root.child("/r/b"), nullptr);
    EXPECT_EQ(root.child("/r/b")->allocatedSize(), 2) << "the first of two";

    EXPECT_EQ(root.node({}), &root);
    const std::string down[]{"/r/a", "/r/a/x"};
    ASSERT_NE(root.node(down), nullptr);
    EXPECT_EQ(root.node(down)->allocatedSize(), 3);
    const std::string astray[]{"/r/a", "/r/b"};
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

    const FileURL url("/n");
    const auto node = [&](const char* name, NodeKind kind, HogKind hog, Risk nodeRisk,
                          FileURLList sources) {
        return FileNode(url, name, 1, kind, hog, nodeRisk, {}, std::move(sources));
    };
    const FileNode plain = node("n", NodeKind::file, HogKind::none, Risk::unknown, {});
    EXPECT_EQ(plain, file("/n", 1)) << "however the node was built";
    EXPECT_NE(plain, node("m", NodeKind::file, HogKind::none, Risk::unknown, {}));
    EXPECT_NE(plain, node("n", NodeKind::package, HogKind::none, Risk::unknown, {}));
    EXPECT_NE(plain, node("n", NodeKind::file, HogKind::logs, Risk::unknown, {}));
    EXPECT_NE(plain, node("n", NodeKind::file, HogKind::none, Risk::safe, {}));
    EXPECT_NE(plain, node("n", NodeKind::file, HogKind::none, Risk::unknown, {FileURL("/n/x")}));
    EXPECT_NE(node("n", NodeKind::file, HogKind::none, Risk::unknown, {FileURL("/n/y")}),
              node("n", NodeKind::file, HogKind::none, Risk::unknown, {FileURL("/n/x")}));
    EXPECT_NE(node("n", NodeKind::smallFilesAggregate(1), HogKind::none, Risk::unknown, {}),
              node("n", NodeKind::smallFilesAggregate(2), HogKind::none, Risk::unknown, {}));
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
    EXPECT_NE(deep, chain(depth - 1, 5));
    EXPECT_NE(deep, chain(depth, 6));
    const auto largest = LargeFiles::topFiles(deep, 3);
    ASSERT_EQ(largest.size(), 1u);
    EXPECT_EQ(largest[0].url.path().size(), 2u * depth);
}

} // namespace
