#include "host/MountBarriers.h"

#include "BrisalonCore/MountReport.h"
#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include "Words.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

using namespace brisalon;
using host::MountBarriers;
using tests::expectThat;

namespace {

/// Whether the place at that path from the scan's root is a barrier.
bool isBarrier(const MountBarriers& barriers, std::string_view path)
{
    MountBarriers::Place place = barriers.root();
    for (const std::string_view name : paths::components(path))
        place = place.child(name);
    return place.isBarrier();
}

/// Lines of the table of mounts from "ID PARENT DEVICE ROOT POINT TYPE SOURCE[ OPTIONS]".
std::string table(std::initializer_list<std::string_view> mounts)
{
    std::string text;
    for (const std::string_view mount : mounts) {
        std::size_t middle = 0;
        for (int field = 0; field < 5; ++field)
            middle = mount.find(' ', middle) + 1;
        text.append(mount.substr(0, middle)).append("rw,noatime shared:1 - ");
        text.append(mount.substr(middle)).append(" rw\n");
    }
    return text;
}

const char* const root = "1 0 8:1 / / ext4 /dev/sda1";

/// Whether a mount of that kind at /m is a barrier, "/" being the scan's root.
bool isCut(const std::string& device, const std::string& type, const std::string& source = "none")
{
    const std::string mount = "2 1 " + device + " / /m " + type + ' ' + source;
    return isBarrier({MountTable(table({root, mount})), "/"}, "m");
}

TEST(MountBarriers, ByNatureOfTheFileSystem)
{
    // Of unions and images that nobody knows the parts of, none is seen elsewhere.
    expectThat([](const std::string& type) { return isCut("0:50", type); },
               "proc sysfs cgroup2 devtmpfs autofs debugfs nfs nfs4 cifs 9p fuse fuse.sshfs "
               "fuse.gvfsd-fuse fuse.portal !tmpfs !ramfs !btrfs !zfs !overlay !squashfs !erofs");
    expectThat([](const std::string& type) { return isCut("8:2", type, "/dev/sdb1"); },
               "!ext4 !xfs !vfat !fuseblk !iso9660 !squashfs");
    // Parts that the scan meets, and such that it does not.
    EXPECT_TRUE(isCut("0:50", "erofs", "/image"));
    EXPECT_TRUE(isCut("0:50", "ecryptfs", "/home/.private"));
    EXPECT_FALSE(isCut("0:50", "ecryptfs", "/m/private"));
}

TEST(MountBarriers, ByWhatTheScanMeets)
{
    const std::string nested =
        table({root, "2 1 0:5 / /srv/a/b proc none", "3 1 0:6 / /srv2 proc none",
               "4 1 0:7 / /srv tmpfs none", "5 4 0:8 / /srv/c sysfs none"});
    const std::string remote =
        table({root, "2 1 0:5 / /net nfs4 none", "3 2 0:6 / /net/home nfs4 none",
               "4 2 0:7 / /net/proc proc none"});
    const std::string again = table({root, "2 1 8:1 / /mnt/all ext4 /dev/sda1",
                                     "3 1 8:1 /home/a /home/a/me ext4 /dev/sda1",
                                     "4 1 8:1 /home /home/a/above ext4 /dev/sda1",
                                     "5 1 8:1 /home/b /home/a/other ext4 /dev/sda1",
                                     "6 1 8:1 /home/a/in /home/a/self ext4 /dev/sda1",
                                     "7 1 8:2 / /home/a/disk ext4 /dev/sdb1"});
    std::string deep = "b";
    for (int i = 0; i < 300'000; ++i)
        deep += "/d";
    // The mounts, the scan's root, and places below it, of which those with a "!" are no
    // barriers.
    const std::array<std::string, 3> rows[] = {
        {"", "/", "!a"},
        {table({root}), "/", "!a"},
        // What is mounted on /srv hides what is in it.
        {nested, "/srv", "c !a/b !srv2"},
        {nested, "/sr", "!v !v/c"},
        {nested, "/srv/c", "!c"},
        {nested, "/", "srv/c srv2 !srv !srv/a !srv/a/b !home"},
        {table({root, "2 1 0:5 / /m autofs none", "3 2 8:2 / /m ext4 /dev/sdb1"}), "/", "!m"},
        {table({root, "3 1 8:2 / /m ext4 /dev/sdb1", "2 3 0:5 / /m proc none"}), "/", "m"},
        {table({root, "2 1 0:5 / /a/c proc none", "3 1 0:6 / /a-c proc none",
                "4 1 0:8 / /ab proc none"}),
         "/", "a/c a-c ab !a !c !b !a/a !ac"},
        {table({root, "2 1 0:5 / /a/" + deep + " proc none"}), "/a", deep + " !b !b/d"},
        // The first mount of all covered, as start-up leaves it.
        {table({"1 1 0:2 / / rootfs none", "2 1 8:1 / / ext4 /dev/sda1", "3 2 0:5 / /p proc none",
                "4 1 0:6 / /q proc none"}),
         "/", "p"},
        // In a changed root the mount of "/" is missing from the table.
        {table({"30 20 0:5 / /p proc none"}), "/", "p"},
        {remote, "/", "net"},
        {remote, "/net", "proc !home"},
        {again, "/", "mnt/all home/a/me home/a/above home/a/other home/a/self !home/a/disk"},
        {again, "/home/a", "self above !other"},
        {again, "/mnt", "all"},
        // Seen through a mount that itself shows only a part of its file system.
        {table({"1 0 0:30 /@ / btrfs /dev/sda2", "2 1 0:30 /@home /home btrfs /dev/sda2",
                "3 2 0:30 /@home/a /home/a/again btrfs /dev/sda2",
                "4 2 0:30 /@ /home/system btrfs /dev/sda2",
                "5 2 0:30 /@old /home/old btrfs /dev/sda2"}),
         "/", "home/a/again home/system !home/old !home"},
    };
    for (const auto& [mounts, scanned, places] : rows) {
        SCOPED_TRACE(mounts + scanned);
        const MountBarriers found(MountTable(mounts), scanned);
        expectThat([&](const std::string& place) { return isBarrier(found, place); }, places);
    }
}

TEST(MountBarriers, UnionsOfWhatTheScanMeets)
{
    const auto isUnionCut = [](const std::string& options, std::string_view scanned = "/") {
        const std::string mounts =
            table({root, "3 1 0:60 / /net nfs4 none", "4 1 0:61 / /v tmpfs none"}) +
            "2 1 0:50 / /a/m rw - overlay none " + options + '\n';
        return isBarrier({MountTable(mounts), scanned}, scanned == "/" ? "a/m" : "m");
    };
    expectThat([&](const std::string& options) { return isUnionCut(options); },
               "lowerdir=/a/x lowerdir=/l:/v/k,upperdir=/u lowerdir+=/l,lowerdir+=/v "
               "lowerdir=/l::/data lowerdir=/odd\\134:name !rw !lowerdir=relative "
               "!lowerdir=/net/x !lowerdir=/l:/net !lowerdir=/a/m/in !lowerdir=/a/m "
               "!lowerdir=/l,upperdir=/net/u !lowerdir=/l,datadir+=/net");
    EXPECT_TRUE(isUnionCut("lowerdir=/a/x", "/a"));
    EXPECT_FALSE(isUnionCut("lowerdir=/l", "/a"));
}

TEST(MountBarriers, ReportWhatIsNotEnteredAndWhatIsOfOtherVolumes)
{
    using enum MountReport::Reason;
    const std::string mounts =
        table({root, "2 1 0:5 / /proc proc none", "3 2 0:6 / /proc/fs nfsd none",
               "4 1 0:7 / /net nfs4 srv:/", "5 4 8:3 / /net/disk ext4 /dev/sdc1",
               "6 1 0:8 / /auto autofs none", "7 1 8:2 / /home ext4 /dev/sdb1",
               "8 7 8:1 /old /home/old ext4 /dev/sda1", "9 1 8:2 /a /srv ext4 /dev/sdb1",
               "10 1 0:9 / /image squashfs /image.sqfs"});
    MountReport report;
    MountBarriers(MountTable(mounts), "/", &report);
    EXPECT_EQ(report.omitted, (std::vector<MountReport::Place>{
                                  {"/net", "nfs4", mayHang},
                                  {"/auto", "autofs", onDemand},
                                  {"/home/old", "ext4", elsewhere, "/old"},
                                  {"/image", "squashfs", elsewhere, "/image.sqfs", true},
                                  {"/srv", "ext4", elsewhere, "/home/a"},
                                  {"/net/disk", "ext4", behind},
                                  {"/proc", "proc", kernel}}));
    EXPECT_EQ(report.crossings, (std::vector<MountReport::Crossing>{{"/home", false}}));
    const auto isWhole = [](const std::string& each, std::string_view scanned) {
        MountReport made;
        MountBarriers(MountTable(each), scanned, &made);
        return made.isWholeVolume;
    };
    expectThat([&](const std::string& scanned) { return isWhole(mounts, scanned); },
               "/ /home !/home/x !/srv");
    EXPECT_TRUE(isWhole(table({"1 0 0:30 /@ / btrfs /dev/sda2 rw,subvol=/@"}), "/"));
    EXPECT_FALSE(isWhole(table({"1 0 0:30 / / overlay none"}), "/") || isWhole("", "/"));
    // What is not met elsewhere may lie on the root's volume again.
    MountReport back;
    MountBarriers(MountTable(table({root, "7 1 8:2 / /a/disk ext4 /dev/sdb1",
                                    "8 7 8:1 /old /a/disk/old ext4 /dev/sda1"})),
                  "/a", &back);
    EXPECT_EQ(back.crossings,
              (std::vector<MountReport::Crossing>{{"/a/disk", false}, {"/a/disk/old", true}}));
    std::string many = table({root});
    for (int i = 2; i < 300; ++i)
        many += table({std::to_string(i) + " 1 0:5 / /n" + std::to_string(i) + " nfs none"});
    MountBarriers(MountTable(many), "/", &back);
    EXPECT_EQ(back.omitted.size(), MountReport::limit);
    EXPECT_EQ(back.omittedCount, 298U);
}

} // namespace
