#include "BrisalonCore/VolumeStats.h"

#include "host/Volume.h"
#include "host/linux/RotatingDisk.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include <sys/statvfs.h>

using namespace brisalon;
using tests::TemporaryTree;

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(VolumeStats, UsedPartAndFraction)
{
    EXPECT_EQ((VolumeStats{500, 200}.used()), 300);
    EXPECT_DOUBLE_EQ((VolumeStats{500, 200}.usedFraction()), 0.6);
    EXPECT_EQ((VolumeStats{0, 0}.usedFraction()), 0);
    EXPECT_EQ((VolumeStats{-1, -9}.usedFraction()), 0);
    EXPECT_EQ((VolumeStats{100, 300}.used()), 0);
    EXPECT_EQ((VolumeStats{100, 300}.usedFraction()), 0);
    EXPECT_EQ((VolumeStats{100, -50}.usedFraction()), 1);
    EXPECT_EQ((VolumeStats{most, least}.used()), most);
    EXPECT_EQ((VolumeStats{least, most}.used()), 0);
}

TEST(VolumeStats, PrefersTheFigureForImportantUsage)
{
    using C = VolumeStats::Capacities;
    const auto free = [](C capacities) { return VolumeStats::from(capacities)->free; };
    EXPECT_EQ(free({100, 0, 7}), 7);
    EXPECT_EQ(free({100, 5, 7}), 5);
    EXPECT_EQ(free({100, -5, 7}), 7);
    EXPECT_EQ(free({100, {}, 7}), 7);
    EXPECT_EQ(free({100, {}, -7}), -7);
    EXPECT_EQ(free({100, 5, {}}), 5);
    EXPECT_EQ(free({100, -5, {}}), 0);
    EXPECT_EQ(free({100, {}, {}}), 0);
    EXPECT_EQ(VolumeStats::from({{}, 5, 7}), std::nullopt);
}

TEST(VolumeStats, ReadsTheVolumeOfAnyItem)
{
    const TemporaryTree tree;
    tree.file("file", 1);
    tree.chain("", std::string(250, 'n'), 20, 0);
    std::string longPath = tree.path();
    for (int i = 0; i < 20; ++i)
        longPath += '/' + std::string(250, 'n');

    struct statvfs status;
    ASSERT_EQ(::statvfs(tree.path().c_str(), &status), 0);
    const auto total = static_cast<std::int64_t>(status.f_blocks * status.f_frsize);
    const auto blockSize = static_cast<double>(status.f_frsize);
    for (const std::string& path : {tree.path(), tree.at("file"), longPath, longPath + "/gone"}) {
        const auto stats = VolumeStats::read(FileURL(path));
        ASSERT_TRUE(stats) << path.substr(0, 100);
        EXPECT_EQ(stats->total, total);
        // What the administrator keeps for themselves is not free; others write meanwhile.
        const auto reserved = static_cast<double>(status.f_bfree - status.f_bavail) * blockSize;
        EXPECT_NEAR(static_cast<double>(stats->free),
                    static_cast<double>(status.f_bavail) * blockSize, reserved / 2 + (1 << 28));
    }
    EXPECT_EQ(VolumeStats::read(FileURL(tree.at("missing"))), std::nullopt);
    EXPECT_EQ(VolumeStats::read(FileURL()), std::nullopt);
}

/// A made-up copy of the system's folder of block devices.
class RotatingDiskTest : public testing::Test {
protected:
    void disk(const std::string& folder, const char* rotational, const char* model = "WDC WD10")
    {
        tree_.folder(folder + "/queue");
        tree_.folder(folder + "/device");
        write(folder + "/queue/rotational", rotational);
        write(folder + "/device/model", model);
    }
    void write(const std::string& file, const char* text)
    {
        std::ofstream(tree_.at(file)) << text << '\n';
    }
    void number(const char* number, const std::string& folder)
    {
        tree_.link(std::string("block/") + number, "../" + folder);
    }
    bool isRotating(unsigned major, unsigned minor)
    {
        return host::isRotatingDisk(major, minor, tree_.at("block"));
    }

    TemporaryTree tree_;
};

TEST_F(RotatingDiskTest, DisksAndTheirPartitions)
{
    disk("devices/pci/ata1/block/sda", "1");
    disk("devices/pci/ata2/block/sdb", "0");
    tree_.folder("devices/pci/ata1/block/sda/sda2");
    write("devices/pci/ata1/block/sda/sda2/partition", "2");
    number("8:0", "devices/pci/ata1/block/sda");
    number("8:2", "devices/pci/ata1/block/sda/sda2");
    number("8:16", "devices/pci/ata2/block/sdb");
    EXPECT_TRUE(isRotating(8, 0));
    EXPECT_TRUE(isRotating(8, 2));
    EXPECT_FALSE(isRotating(8, 16));
    EXPECT_FALSE(isRotating(0, 35)) << "no block device";
}

TEST_F(RotatingDiskTest, MappedDevicesAreJudgedByTheirParts)
{
    disk("devices/pci/ata1/block/sda", "1");
    disk("devices/pci/ata2/block/sdb", "0");
    disk("devices/virtual/block/dm-0", "1");
    disk("devices/virtual/block/dm-1", "0");
    disk("devices/virtual/block/dm-2", "1");
    for (const char* mapped : {"dm-0", "dm-1"})
        tree_.folder(std::string("devices/virtual/block/") + mapped + "/slaves");
    tree_.link("devices/virtual/block/dm-0/slaves/sdb", "../../../../pci/ata2/block/sdb");
    tree_.link("devices/virtual/block/dm-1/slaves/sdb", "../../../../pci/ata2/block/sdb");
    tree_.link("devices/virtual/block/dm-1/slaves/sda", "../../../../pci/ata1/block/sda");
    tree_.folder("devices/virtual/block/dm-2/slaves");
    tree_.link("devices/virtual/block/dm-2/slaves/dm-2", "../../dm-2");
    for (const char* minor : {"0", "1", "2"})
        number((std::string("253:") + minor).c_str(),
               std::string("devices/virtual/block/dm-") + minor);
    EXPECT_FALSE(isRotating(253, 0));
    EXPECT_TRUE(isRotating(253, 1));
    EXPECT_FALSE(isRotating(253, 2)) << "made of itself";
}

TEST_F(RotatingDiskTest, VirtualDisksNeverCount)
{
    disk("devices/pci/virtio0/block/vda", "1", "");
    disk("devices/pci/ata1/block/sda", "1", "QEMU HARDDISK");
    disk("devices/pci/ata2/block/sdb", "1", "VBOX HARDDISK");
    disk("devices/virtual/block/loop0", "1", "");
    number("254:0", "devices/pci/virtio0/block/vda");
    number("8:0", "devices/pci/ata1/block/sda");
    number("8:16", "devices/pci/ata2/block/sdb");
    number("7:0", "devices/virtual/block/loop0");
    EXPECT_FALSE(isRotating(254, 0));
    EXPECT_FALSE(isRotating(8, 0));
    EXPECT_FALSE(isRotating(8, 16));
    EXPECT_FALSE(isRotating(7, 0));
}

} // namespace
