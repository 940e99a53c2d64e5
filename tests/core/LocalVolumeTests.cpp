#include "BrisalonCore/LocalVolume.h"

#include "BrisalonCore/MountTable.h"

#include <gtest/gtest.h>

using namespace brisalon;

namespace {

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

} // namespace
