#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace brisalon::tests {

namespace {

FileNodeValue folderOf(const char* path, std::int64_t size)
{
    const FileURL url(path);
    return FileNodeBuilder::make(
        url, size, NodeKind::directory,
        {FileNodeBuilder::make(url.appendingPathComponent("a"), size, NodeKind::file)});
}

} // namespace

TEST(FileNodeValueTest, TellsTheSameNodeFromAnEqualOneOfAnotherTree)
{
    const FileNodeValue one = folderOf("/x", 7);
    const FileNodeValue sameNode = FileNodeValue(FileNode(*one));
    const FileNodeValue equal = folderOf("/x", 7);
    EXPECT_EQ(one, sameNode);
    EXPECT_FALSE(one == equal);
    EXPECT_TRUE(*one == *equal);
    EXPECT_TRUE(one.isSameItem(equal));
    EXPECT_FALSE(one.isSameItem(folderOf("/y", 7)));
    EXPECT_FALSE(one == FileNodeValue());
    EXPECT_FALSE(one.isSameItem({}));
    EXPECT_EQ(FileNodeValue(), FileNodeValue());

    // What has no children is compared itself.
    EXPECT_EQ(FileNodeValue(one->children()[0]), FileNodeValue(equal->children()[0]));
    EXPECT_FALSE(FileNodeValue(one->children()[0]) ==
                 FileNodeValue(folderOf("/x", 8)->children()[0]));
}

TEST(FileNodeValueTest, ShowsVeryLongPathsWithoutTheirMiddle)
{
    const auto shown = [](std::size_t length) {
        const std::string path = "/start/" + std::string(length - 11, 'x') + "/end";
        return FileNodeValue(FileNodeBuilder::make(FileURL(path), 1, NodeKind::file)).path();
    };
    EXPECT_EQ(shown(4096).size(), 4096) << "as long as the system's longest: whole";
    const QString longer = shown(200'000);
    EXPECT_LT(longer.size(), 5'000);
    EXPECT_TRUE(longer.startsWith("/start/x"));
    EXPECT_TRUE(longer.contains(QChar(0x2026)));
    EXPECT_TRUE(longer.endsWith("x/end"));
}

TEST(FileNodeValueTest, KeepsTheBytesOfANameAndShowsWhatIsText)
{
    const FileNodeValue node =
        FileNodeBuilder::make(FileURL("/tmp/\xff\xfe.log"), 2048, NodeKind::file);
    EXPECT_EQ(node.id(), QByteArray("/tmp/\xff\xfe.log"));
    EXPECT_EQ(node.name(), QString("\ufffd\ufffd.log"));
    EXPECT_EQ(node.sizeText(), "2.0 KB");
    EXPECT_EQ(node.kindTitle(), "File");
}

TEST(ScanProgressValueTest, CountsAreGroupedAsTheUsersLocaleDoes)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const ScanProgressValue progress(ScanProgress{12'345, "/a\xff", 5 * 1024 * 1024});
    EXPECT_EQ(progress.itemsText(), "12,345 items");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(progress.itemsText(), "12.345 items");
    QLocale::setDefault(before);
    EXPECT_EQ(progress.bytesText(), "5.0 MB");
    EXPECT_EQ(progress.currentPath(), QString("/a\ufffd"));
}

TEST(VolumeStatsValueTest, PercentAreRoundedDown)
{
    EXPECT_EQ(VolumeStatsValue(VolumeStats{1000, 101}).usedPercent(), 89);
    EXPECT_EQ(VolumeStatsValue(VolumeStats{1000, 0}).usedPercent(), 100);
    EXPECT_EQ(VolumeStatsValue(VolumeStats{0, 0}).usedPercent(), 0);
    EXPECT_EQ(VolumeStatsValue(VolumeStats{10, 20}).usedText(), "0 B used");
}

} // namespace brisalon::tests
