#include "BrisalonCore/VolumeStats.h"

#include "BrisalonCore/ByteFormat.h"
#include "BrisalonCore/LocalVolume.h"
#include "BrisalonCore/MountTable.h"
#include "Words.h"
#include "host/Volume.h"
#include "host/linux/RotatingDisk.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
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

TEST(LocalVolume, EachDiskOnceAndNoneThatCouldHangIsAsked)
{
    const MountTable table("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                           "2 1 0:5 / /proc rw - proc proc rw\n"
                           "3 1 0:6 / /tmp rw - tmpfs tmpfs rw\n"
                           "4 1 0:7 / /mnt/server rw - nfs4 server:/ rw\n"
                           "5 4 8:2 / /mnt/server/disk rw - ext4 /dev/sdb2 rw\n"
                           "6 1 0:8 / /media/me/windows rw - fuseblk /dev/sdb3 rw\n"
                           "7 1 0:9 / /run/user/1/doc rw - fuse.portal portal rw\n"
                           "8 1 7:0 / /snap/core/1 ro - squashfs /dev/loop0 ro\n"
                           "9 1 0:10 / /var/lib/merged rw - overlay overlay rw\n"
                           // The same once more, a folder of one, and what something else hides.
                           "10 1 8:1 / /bind rw - ext4 /dev/sda1 rw\n"
                           "11 1 8:1 /home/me /bind2 rw - ext4 /dev/sda1 rw\n"
                           "12 1 8:4 / /hidden rw - ext4 /dev/sdc1 rw\n"
                           "13 12 0:11 / /hidden rw - tmpfs tmpfs rw\n"
                           // Two volumes of one disk, two of one name, and one that is gone.
                           "14 1 0:12 /@a /pool rw - btrfs /dev/sdd rw,subvol=/@a\n"
                           "15 1 0:12 /@b /media/b rw - btrfs /dev/sdd rw,subvol=/@b\n"
                           "16 1 0:12 /@b/folder /pool/folder rw - btrfs /dev/sdd rw,subvol=/@b\n"
                           "17 1 8:6 / /media/\\377\\040USB rw - vfat /dev/sde1 rw\n"
                           "18 1 8:7 / /mnt/b rw - xfs /dev/sdf1 rw\n"
                           "19 1 8:8 / /mnt/gone rw - ext4 /dev/sdg1 rw\n"
                           "20 1 0:13 / /mnt/sizeless rw - unheardof none rw\n");
    const VolumeStats stats{500, 200};
    std::string asked;
    const auto volumes = LocalVolume::among(table, [&](const FileURL& point) {
        asked += point.path() + '|';
        return point.path() == "/mnt/gone"       ? std::nullopt
               : point.path() == "/mnt/sizeless" ? std::optional(VolumeStats{})
                                                 : std::optional(stats);
    });
    const auto volume = [](const char* name, const char* point, std::optional<VolumeStats> size) {
        return LocalVolume{name, FileURL(point), size};
    };
    EXPECT_EQ(volumes, (std::vector{volume("/", "/", stats), volume("/media/b", "/media/b", stats),
                                    volume("windows", "/media/me/windows", std::nullopt),
                                    volume("\xff USB", "/media/\xff USB", stats),
                                    volume("/mnt/b", "/mnt/b", stats),
                                    volume("disk", "/mnt/server/disk", std::nullopt),
                                    volume("pool", "/pool", stats)}));
    EXPECT_EQ(asked, "/|/media/b|/media/\xff USB|/mnt/b|/mnt/gone|/mnt/sizeless|/pool|");
}

TEST(RotatingDisk, PartitionsAndMappedDevicesAreJudgedByWhatTheyArePartsOf)
{
    // A made-up copy of the system's folders of block devices.
    const TemporaryTree tree;
    tree.folder("devices");
    const std::string commands = "cd '" + tree.at("devices") + R"(' || exit 1
disk() {
    mkdir -p $1/queue $1/device $1/slaves
    echo $2 > $1/queue/rotational
    echo $3 > $1/device/model
}
disk ata1/sda 1 'WDC WD10'
mkdir ata1/sda/sda2 && echo 2 > ata1/sda/sda2/partition
disk ata2/sdb 0 'WDC WD10'
disk ata3/sdc 1 'QEMU HARDDISK'
disk virtio0/vda 1
for i in 0 1 2 3; do disk virtual/block/dm-$i 1; done
ln -s $PWD/ata2/sdb virtual/block/dm-1/slaves
ln -s $PWD/ata2/sdb $PWD/ata1/sda virtual/block/dm-2/slaves
ln -s $PWD/virtual/block/dm-3 virtual/block/dm-3/slaves)";
    ASSERT_EQ(std::system(commands.c_str()), 0);
    unsigned minor = 0;
    const auto isRotating = [&](const std::string& device) {
        tree.link("block/8:" + std::to_string(++minor), "../devices/" + device);
        return host::isRotatingDisk(8, minor, tree.at("block"));
    };
    tests::expectThat(isRotating, "ata1/sda ata1/sda/sda2 !ata2/sdb !ata3/sdc !virtio0/vda "
                                  "!virtual/block/dm-0 !virtual/block/dm-1 virtual/block/dm-2 "
                                  "!virtual/block/dm-3 !missing");
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
