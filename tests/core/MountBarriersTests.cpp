#include "host/MountBarriers.h"

#include "BrisalonCore/MountTable.h"

#include <gtest/gtest.h>

#include <string>

using namespace brisalon;
using host::MountBarriers;

namespace {

MountBarriers barriersOf(std::string_view table, std::string_view root)
{
    return {MountTable(table), root};
}

bool isBarrier(const MountBarriers& barriers, std::initializer_list<std::string_view> names)
{
    const MountBarriers::Place* place = barriers.root();
    for (const std::string_view name : names)
        place = place ? place->child(name) : nullptr;
    return place && place->isBarrier();
}

/// One line of the table of mounts.
std::string line(int id, int parent, const std::string& device, const std::string& root,
                 const std::string& point, const std::string& type,
                 const std::string& source = "none", const std::string& optional = "")
{
    return std::to_string(id) + ' ' + std::to_string(parent) + ' ' + device + ' ' + root + ' ' +
           point + " rw,noatime " + optional + "- " + type + ' ' + source + " rw\n";
}

const std::string rootLine = line(1, 0, "8:1", "/", "/", "ext4", "/dev/sda1", "shared:1 ");

/// Whether a mount of that kind at /m is a barrier, "/" being the scan's root.
bool isCut(const std::string& device, const std::string& type, const std::string& source = "none")
{
    return isBarrier(barriersOf(rootLine + line(2, 1, device, "/", "/m", type, source), "/"),
                     {"m"});
}

TEST(MountBarriers, ByNatureOfTheFileSystem)
{
    for (const char* type :
         {"proc", "sysfs", "cgroup2", "devtmpfs", "autofs", "debugfs", "nfs", "nfs4", "cifs", "9p",
          "fuse", "fuse.sshfs", "fuse.gvfsd-fuse", "fuse.portal"})
        EXPECT_TRUE(isCut("0:50", type)) << type;
    // Of unions and images that nobody knows the parts of, none is seen elsewhere.
    for (const char* type : {"tmpfs", "ramfs", "btrfs", "zfs", "overlay", "squashfs", "erofs"})
        EXPECT_FALSE(isCut("0:50", type)) << type;
    for (const char* type : {"ext4", "xfs", "vfat", "fuseblk", "iso9660", "squashfs"})
        EXPECT_FALSE(isCut("8:2", type, "/dev/sdb1")) << type;
    // Parts that the scan meets, and such that it does not.
    for (const char* source : {"/image", "none"})
        EXPECT_EQ(isCut("0:50", "erofs", source), *source == '/') << source;
    for (const char* source : {"/home/.private", "/m/private"})
        EXPECT_EQ(isCut("0:50", "ecryptfs", source), *(source + 1) == 'h') << source;
}

TEST(MountBarriers, NoneWithoutATable)
{
    EXPECT_EQ(barriersOf("", "/").root(), nullptr);
    EXPECT_EQ(barriersOf(rootLine, "/").root(), nullptr);
}

TEST(MountBarriers, PlacesBelowTheRootOnly)
{
    const std::string table = rootLine + line(2, 1, "0:5", "/", "/srv/a/b", "proc") +
                              line(3, 1, "0:6", "/", "/srv2", "proc") +
                              line(4, 1, "0:7", "/", "/srv", "tmpfs") +
                              line(5, 4, "0:8", "/", "/srv/c", "sysfs");
    const MountBarriers srv = barriersOf(table, "/srv");
    EXPECT_TRUE(isBarrier(srv, {"c"}));
    EXPECT_FALSE(isBarrier(srv, {"a", "b"})) << "hidden by what is mounted on /srv";
    EXPECT_FALSE(isBarrier(srv, {"srv2"}));
    EXPECT_EQ(barriersOf(table, "/srv/c").root(), nullptr) << "the root's own mount is walked";
    EXPECT_EQ(barriersOf(table, "/sr").root(), nullptr);

    const MountBarriers whole = barriersOf(table, "/");
    ASSERT_NE(whole.root()->child("srv"), nullptr);
    EXPECT_FALSE(whole.root()->child("srv")->isBarrier());
    EXPECT_EQ(whole.root()->child("srv")->child("a"), nullptr);
    EXPECT_TRUE(isBarrier(whole, {"srv", "c"}));
    EXPECT_TRUE(isBarrier(whole, {"srv2"}));
    EXPECT_EQ(whole.root()->child("home"), nullptr);
}

TEST(MountBarriers, OfMountsOnOneAnotherTheLastCounts)
{
    // A triggered automount: the disk stands on the trigger.
    const std::string triggered = rootLine + line(2, 1, "0:5", "/", "/m", "autofs") +
                                  line(3, 2, "8:2", "/", "/m", "ext4", "/dev/sdb1");
    EXPECT_EQ(barriersOf(triggered, "/").root(), nullptr);
    const std::string covered = rootLine + line(3, 1, "8:2", "/", "/m", "ext4", "/dev/sdb1") +
                                line(2, 3, "0:5", "/", "/m", "proc");
    EXPECT_TRUE(isBarrier(barriersOf(covered, "/"), {"m"}));
    // The first mount of all covered by a later one, as start-up leaves it.
    const std::string started =
        line(1, 1, "0:2", "/", "/", "rootfs") + line(2, 1, "8:1", "/", "/", "ext4", "/dev/sda1") +
        line(3, 2, "0:5", "/", "/p", "proc") + line(4, 1, "0:6", "/", "/q", "proc");
    EXPECT_TRUE(isBarrier(barriersOf(started, "/"), {"p"}));
    // In a changed root the mount of "/" is missing from the table.
    EXPECT_TRUE(isBarrier(barriersOf(line(30, 20, "0:5", "/", "/p", "proc"), "/"), {"p"}));
}

TEST(MountBarriers, UnionsOfWhatTheScanMeets)
{
    const auto isUnionCut = [](const std::string& options, std::string_view root = "/") {
        const std::string table = rootLine + "2 1 0:50 / /a/m rw - overlay none " + options + '\n' +
                                  line(3, 1, "0:60", "/", "/net", "nfs4") +
                                  line(4, 1, "0:61", "/", "/v", "tmpfs");
        return isBarrier(barriersOf(table, root),
                         root == "/" ? std::initializer_list<std::string_view>{"a", "m"}
                                     : std::initializer_list<std::string_view>{"m"});
    };
    for (const char* seen :
         {"lowerdir=/a/x", "lowerdir=/l:/v/k,upperdir=/u", "lowerdir+=/l,lowerdir+=/v",
          "lowerdir=/l::/data", "lowerdir=/odd\\134:name"})
        EXPECT_TRUE(isUnionCut(seen)) << seen;
    for (const char* unseen :
         {"rw", "lowerdir=relative", "lowerdir=/net/x", "lowerdir=/l:/net", "lowerdir=/a/m/in",
          "lowerdir=/a/m", "lowerdir=/l,upperdir=/net/u", "lowerdir=/l,datadir+=/net"})
        EXPECT_FALSE(isUnionCut(unseen)) << unseen;
    EXPECT_TRUE(isUnionCut("lowerdir=/a/x", "/a"));
    EXPECT_FALSE(isUnionCut("lowerdir=/l", "/a"));
}

TEST(MountBarriers, RemoteOnesAreEnteredBelowOneOfTheirKind)
{
    const std::string table = rootLine + line(2, 1, "0:5", "/", "/net", "nfs4") +
                              line(3, 2, "0:6", "/", "/net/home", "nfs4") +
                              line(4, 2, "0:7", "/", "/net/proc", "proc");
    EXPECT_TRUE(isBarrier(barriersOf(table, "/"), {"net"}));
    const MountBarriers share = barriersOf(table, "/net");
    EXPECT_FALSE(isBarrier(share, {"home"}));
    EXPECT_TRUE(isBarrier(share, {"proc"}));
}

TEST(MountBarriers, WhatIsShownAgainIsCut)
{
    const std::string table = rootLine + line(2, 1, "8:1", "/", "/mnt/all", "ext4", "/dev/sda1") +
                              line(3, 1, "8:1", "/home/a", "/home/a/me", "ext4", "/dev/sda1") +
                              line(4, 1, "8:1", "/home", "/home/a/above", "ext4", "/dev/sda1") +
                              line(5, 1, "8:1", "/home/b", "/home/a/other", "ext4", "/dev/sda1") +
                              line(6, 1, "8:1", "/home/a/in", "/home/a/self", "ext4", "/dev/sda1") +
                              line(7, 1, "8:2", "/", "/home/a/disk", "ext4", "/dev/sdb1");
    const MountBarriers barriers = barriersOf(table, "/");
    EXPECT_TRUE(isBarrier(barriers, {"mnt", "all"}));
    EXPECT_TRUE(isBarrier(barriers, {"home", "a", "me"}));
    EXPECT_TRUE(isBarrier(barriers, {"home", "a", "above"}));
    EXPECT_TRUE(isBarrier(barriers, {"home", "a", "other"}));
    EXPECT_TRUE(isBarrier(barriers, {"home", "a", "self"}));
    EXPECT_FALSE(isBarrier(barriers, {"home", "a", "disk"}));
    EXPECT_FALSE(isBarrier(barriersOf(table, "/home/a"), {"other"})) << "out of sight";
    EXPECT_TRUE(isBarrier(barriersOf(table, "/home/a"), {"self"}));
    // Also when the folder lies above the scan's root.
    EXPECT_TRUE(isBarrier(barriersOf(table, "/mnt"), {"all"}));
    EXPECT_TRUE(isBarrier(barriersOf(table, "/home/a"), {"above"}));

    // Seen through a mount that itself shows only a part of its file system.
    const std::string parts =
        line(1, 0, "0:30", "/@", "/", "btrfs", "/dev/sda2") +
        line(2, 1, "0:30", "/@home", "/home", "btrfs", "/dev/sda2") +
        line(3, 2, "0:30", "/@home/a", "/home/a/again", "btrfs", "/dev/sda2") +
        line(4, 2, "0:30", "/@", "/home/system", "btrfs", "/dev/sda2") +
        line(5, 2, "0:30", "/@old", "/home/old", "btrfs", "/dev/sda2");
    const MountBarriers subvolumes = barriersOf(parts, "/");
    EXPECT_TRUE(isBarrier(subvolumes, {"home", "a", "again"}));
    EXPECT_TRUE(isBarrier(subvolumes, {"home", "system"}));
    EXPECT_FALSE(isBarrier(subvolumes, {"home", "old"}));
    EXPECT_FALSE(isBarrier(subvolumes, {"home"}));
}

} // namespace
