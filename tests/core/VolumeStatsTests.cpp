#include "BrisalonCore/VolumeStats.h"

#include "BrisalonCore/ByteFormat.h"
#include "host/Volume.h"
#include "host/linux/RotatingDisk.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <limits>

#include <sys/statvfs.h>

using namespace brisalon;
using tests::TemporaryTree;

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(VolumeStats, UsedPartAndFraction)
{
    struct Row {
        VolumeStats stats;
        std::int64_t used;
        double fraction;
    };
    for (const auto& [stats, used, fraction] : {Row{{500, 200}, 300, 0.6},
                                                {{0, 0}, 0, 0},
                                                {{-1, -9}, 8, 0},
                                                {{100, 300}, 0, 0},
                                                {{100, -50}, 150, 1},
                                                {{most, least}, most, 1},
                                                {{least, most}, 0, 0}}) {
        EXPECT_EQ(stats.used(), used) << stats.total << ' ' << stats.free;
        EXPECT_DOUBLE_EQ(stats.usedFraction(), fraction) << stats.total << ' ' << stats.free;
    }
}

TEST(VolumeStats, PrefersTheFigureForImportantUsage)
{
    const std::pair<VolumeStats::Capacities, std::int64_t> rows[] = {
        {{100, 0, 7}, 7},    {{100, 5, 7}, 5},  {{100, -5, 7}, 7},  {{100, {}, 7}, 7},
        {{100, {}, -7}, -7}, {{100, 5, {}}, 5}, {{100, -5, {}}, 0}, {{100, {}, {}}, 0}};
    for (const auto& [capacities, free] : rows)
        EXPECT_EQ(VolumeStats::from(capacities)->free, free);
    EXPECT_EQ(VolumeStats::from({{}, 5, 7}), std::nullopt);
}

TEST(VolumeStats, ReadsTheVolumeOfAnyItem)
{
    const TemporaryTree tree;
    tree.file("file", 1);
    const std::string longPath = tree.chain("", std::string(250, 'n'), 20);
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

TEST(RotatingDisk, PartitionsAndMappedDevicesAreJudgedByWhatTheyArePartsOf)
{
    // A made-up copy of the system's folders of block devices: the disk's numbers, its
    // folder, what it says of itself, whose parts it is made of, and whether it rotates.
    struct Device {
        unsigned major, minor;
        const char* folder;
        const char* rotational; ///< null for a partition
        const char* model;
        std::vector<const char*> parts;
        bool isRotating;
    };
    const Device devices[] = {
        {8, 0, "pci/ata1/sda", "1\n", "WDC WD10\n", {}, true},
        {8, 2, "pci/ata1/sda/sda2", nullptr, "", {}, true},
        {8, 16, "pci/ata2/sdb", "0\n", "WDC WD10\n", {}, false},
        {8, 32, "pci/ata3/sdc", "1\n", "QEMU HARDDISK\n", {}, false},
        {8, 48, "pci/ata4/sdd", "1\n", "VBOX HARDDISK\n", {}, false},
        {254, 0, "pci/virtio0/vda", "1\n", "", {}, false},
        {7, 0, "virtual/block/loop0", "1\n", "", {}, false},
        {253, 0, "virtual/block/dm-0", "1\n", "", {"pci/ata2/sdb"}, false},
        {253, 1, "virtual/block/dm-1", "0\n", "", {"pci/ata2/sdb", "pci/ata1/sda"}, true},
        {253, 2, "virtual/block/dm-2", "1\n", "", {"virtual/block/dm-2"}, false},
    };
    const TemporaryTree tree;
    for (const Device& device : devices) {
        const std::string folder = std::string("devices/") + device.folder;
        tree.link("block/" + std::to_string(device.major) + ':' + std::to_string(device.minor),
                  tree.at(folder));
        tree.write(folder + (device.rotational ? "/queue/rotational" : "/partition"),
                   device.rotational ? device.rotational : "2\n");
        if (*device.model)
            tree.write(folder + "/device/model", device.model);
        for (const std::string part : device.parts)
            tree.link(folder + "/slaves/" + part.substr(part.rfind('/') + 1),
                      tree.at("devices/" + part));
    }
    for (const Device& device : devices)
        EXPECT_EQ(host::isRotatingDisk(device.major, device.minor, tree.at("block")),
                  device.isRotating)
            << device.folder;
    EXPECT_FALSE(host::isRotatingDisk(0, 35, tree.at("block"))) << "no block device";
}

TEST(ByteFormat, Samples)
{
    // Halves go to the even neighbour, as printf has it.
    using Sample = std::pair<std::int64_t, const char*>;
    const Sample samples[] = {
        {0, "0 B"},           {1023, "1023 B"},    {1024, "1.0 KB"},
        {10188, "9.9 KB"},    {10239, "10.0 KB"},  {10240, "10 KB"},
        {1048575, "1024 KB"}, {1048576, "1.0 MB"}, {1125899906842624, "1024 TB"},
        {most, "8388608 TB"}, {-5, "0 B"},         {least, "0 B"},
        {10752, "10 KB"},     {11776, "12 KB"}};
    for (const auto& [bytes, text] : samples)
        EXPECT_EQ(ByteFormat::string(bytes), text) << bytes;
}

} // namespace
