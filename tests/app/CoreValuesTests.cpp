#include "Brisalon/App/CoreValues.h"
#include "Brisalon/App/Selection.h"
#include "Brisalon/Platform/Workers.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QLocale>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <limits>

namespace brisalon::tests {

namespace {

FileNodeHold folderOf(const char* path, std::int64_t size)
{
    const FileURL url(path);
    return heldTree(FileNodeBuilder::make(
        url, size, NodeKind::directory,
        {FileNodeBuilder::make(url.appendingPathComponent("a"), size, NodeKind::file)}));
}

} // namespace

TEST(FileNodeValueTest, TellsTheSameNodeFromAnEqualOneOfAnotherTree)
{
    const FileNodeHold tree = folderOf("/x", 7);
    const FileNodeHold copy = heldTree(FileNode(*tree));
    const FileNodeHold equalTree = folderOf("/x", 7);
    const FileNodeHold otherTree = folderOf("/y", 8);
    const FileNodeValue one = tree;
    const FileNodeValue equal = equalTree;
    EXPECT_EQ(one, FileNodeValue(copy));
    EXPECT_FALSE(one == equal);
    EXPECT_TRUE(*one == *equal);
    EXPECT_TRUE(one.isSameItem(equal));
    EXPECT_FALSE(one.isSameItem(otherTree));
    EXPECT_FALSE(one == FileNodeValue());
    EXPECT_FALSE(one.isSameItem({}));
    EXPECT_EQ(FileNodeValue(), FileNodeValue());

    // What has no children is compared itself.
    EXPECT_EQ(one.at(one->children()[0]), equal.at(equal->children()[0]));
    EXPECT_FALSE(one.at(one->children()[0]) ==
                 FileNodeValue(otherTree).at(otherTree->children()[0]));
}

TEST(FileNodeValueTest, ShowsVeryLongPathsWithoutTheirMiddle)
{
    const auto shown = [](std::size_t length) {
        const std::string path = "/start/" + std::string(length - 11, 'x') + "/end";
        const auto file = heldTree(FileNodeBuilder::make(FileURL(path), 1, NodeKind::file));
        return FileNodeValue(file).path();
    };
    EXPECT_EQ(shown(4096).size(), 4096) << "as long as the system's longest: whole";
    const QString longer = shown(200'000);
    EXPECT_LT(longer.size(), 5'000);
    EXPECT_TRUE(longer.startsWith("/start/x"));
    EXPECT_TRUE(longer.contains(QChar(0x2026)));
    EXPECT_TRUE(longer.endsWith("x/end"));
}

TEST(FileNodeValueTest, LivesAsLongAsItsTreeIsHeld)
{
    FileNodeHold tree = folderOf("/x", 7);
    const FileNodeValue root = tree;
    const FileNodeValue child = root.at(root->children()[0]);
    const FileNode kept = *tree;
    tree = child.hold();
    EXPECT_EQ(root.name(), "x") << "one node holds the whole tree";
    tree = {};
    EXPECT_FALSE(root.isPresent());
    EXPECT_EQ(child, FileNodeValue());
    workers().waitForDone();
    EXPECT_EQ(kept.children().size(), 1u) << "what others hold stays";
}

TEST(ScanProgressValueTest, CountsAreGroupedAsTheUsersLocaleDoes)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(ScanProgressValue(ScanProgress{12'345, "/a", 0}).itemsText(), "12.345 items");
    QLocale::setDefault(before);
}

TEST(SelectionTest, ASumThatNoNumberHoldsIsTheLargestOne)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const QList<LargeFileEntry> listed{{FileURL("/a"), "a", most, HogKind::none, Risk::unknown},
                                       {FileURL("/b"), "b", 1, HogKind::none, Risk::unknown}};
    EXPECT_EQ(Selection({}, listed, {"/a", "/b"}).bytes(), most);
}

} // namespace brisalon::tests
