#include "BrisalonCore/VolumeStats.h"

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
    // A made-up copy of the system's folders of block devices.
    const TemporaryTree tree;
    const struct {
        const char* number;
        const char* folder;
        const char* rotational; ///< null for a partition
        const char* model;
    } devices[] = {
        {"8:0", "pci/ata1/block/sda", "1", "WDC WD10"},
        {"8:2", "pci/ata1/block/sda/sda2", nullptr, ""},
        {"8:16", "pci/ata2/block/sdb", "0", "WDC WD10"},
        {"8:32", "pci/ata3/block/sdc", "1", "QEMU HARDDISK"},
        {"8:48", "pci/ata4/block/sdd", "1", "VBOX HARDDISK"},
        {"254:0", "pci/virtio0/block/vda", "1", ""},
        {"7:0", "virtual/block/loop0", "1", ""},
        {"253:0", "virtual/block/dm-0", "1", ""},
        {"253:1", "virtual/block/dm-1", "0", ""},
        {"253:2", "virtual/block/dm-2", "1", ""},
    };
    for (const auto& [number, folder, rotational, model] : devices) {
        const std::string device = std::string("devices/") + folder;
        tree.link(std::string("block/") + number, "../" + device);
        tree.write(device + (rotational ? "/queue/rotational" : "/partition"),
                   std::string(rotational ? rotational : "2") + '\n');
        if (rotational)
            tree.write(device + "/device/model", model + std::string("\n"));
    }
    const auto madeOf = [&](const char* mapped, const char* part) {
        tree.link(std::string("devices/virtual/block/") + mapped + "/slaves/" +
                      std::string(part).substr(std::string(part).rfind('/') + 1),
                  std::string("../../../../") + part);
    };
    madeOf("dm-0", "pci/ata2/block/sdb");
    madeOf("dm-1", "pci/ata2/block/sdb");
    madeOf("dm-1", "pci/ata1/block/sda");
    madeOf("dm-2", "virtual/block/dm-2"); // of itself
    struct Row {
        unsigned major, minor;
        bool isRotating;
    };
    for (const Row& row : {Row{8, 0, true},
                           {8, 2, true},
                           {8, 16, false},
                           {8, 32, false},
                           {8, 48, false},
                           {254, 0, false},
                           {7, 0, false},
                           {253, 0, false},
                           {253, 1, true},
                           {253, 2, false},
                           {0, 35, false}})
        EXPECT_EQ(host::isRotatingDisk(row.major, row.minor, tree.at("block")), row.isRotating)
            << row.major << ':' << row.minor;
}

} // namespace
