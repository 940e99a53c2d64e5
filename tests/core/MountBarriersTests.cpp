#include "host/MountBarriers.h"

#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/MountTable.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

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
          "fuse", "fuse.sshfs", "fuse.gvfsd-fuse", "fuse.portal", "overlay", "squashfs", "erofs"})
        EXPECT_TRUE(isCut("0:50", type)) << type;
    for (const char* type : {"tmpfs", "ramfs", "btrfs", "zfs"})
        EXPECT_FALSE(isCut("0:50", type)) << type;
    for (const char* type : {"ext4", "xfs", "vfat", "fuseblk", "iso9660", "squashfs"})
        EXPECT_FALSE(isCut("8:2", type, "/dev/sdb1")) << type;
    // A mounted image repeats the file that it is stored in.
    for (const char* type : {"squashfs", "iso9660", "ext4", "fuseblk"})
        EXPECT_TRUE(isCut("7:3", type, "/dev/loop3")) << type;
    EXPECT_TRUE(isCut("0:51", "btrfs", "/dev/loop3"));
    EXPECT_TRUE(isCut("259:0", "ext4", "/dev/loop3p1"));
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

TEST(MountBarriers, RemoteAndViewsAreEnteredBelowOneOfTheirKind)
{
    const std::string table = rootLine + line(2, 1, "0:5", "/", "/net", "nfs4") +
                              line(3, 2, "0:6", "/", "/net/home", "nfs4") +
                              line(4, 2, "0:7", "/", "/net/proc", "proc") +
                              line(5, 2, "0:8", "/", "/net/merged", "overlay");
    EXPECT_TRUE(isBarrier(barriersOf(table, "/"), {"net"}));
    const MountBarriers share = barriersOf(table, "/net");
    EXPECT_FALSE(isBarrier(share, {"home"}));
    EXPECT_TRUE(isBarrier(share, {"proc"}));
    EXPECT_TRUE(isBarrier(share, {"merged"}));

    const std::string container = line(1, 0, "0:50", "/", "/", "overlay") +
                                  line(2, 1, "0:51", "/", "/merged", "overlay") +
                                  line(3, 1, "0:52", "/", "/share", "cifs");
    EXPECT_FALSE(isBarrier(barriersOf(container, "/"), {"merged"}));
    EXPECT_TRUE(isBarrier(barriersOf(container, "/"), {"share"}));
}

TEST(MountBarriers, AFolderAboveShownAgainIsCut)
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
    EXPECT_FALSE(isBarrier(barriers, {"home", "a", "other"}));
    EXPECT_FALSE(isBarrier(barriers, {"home", "a", "self"}));
    EXPECT_FALSE(isBarrier(barriers, {"home", "a", "disk"}));
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

/// Runs `check` with the tree's folders mounted as it likes, seen by nobody else:
/// the thread has mounts of its own, which end with it. Why that is impossible
/// here, or nothing.
template <typename Check>
std::string withOwnMounts(Check&& check)
{
    std::string obstacle;
    std::thread thread([&] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            obstacle = std::strerror(errno);
        else
            check();
    });
    thread.join();
    return obstacle;
}

TEST(MountBarriers, OfTheRunningSystem)
{
    const tests::TemporaryTree tree;
    const std::string odd = "odd \n\t\\#\xff";
    for (const std::string& name :
         std::vector<std::string>{"memory", "proc", "again/below", "again/other", "stack",
                                  "hidden/proc", odd, "part", "Inner.app/above", "Outer.app"})
        tree.folder(name);
    const std::string obstacle = withOwnMounts([&] {
        const auto mounted = [&](const char* type, const std::string& name) {
            return ::mount("none", tree.at(name).c_str(), type, 0, nullptr) == 0;
        };
        const auto bound = [&](const std::string& from, const std::string& name) {
            return ::mount(from.c_str(), tree.at(name).c_str(), nullptr, MS_BIND, nullptr) == 0;
        };
        ASSERT_TRUE(mounted("tmpfs", "memory"));
        ASSERT_TRUE(mounted("proc", "proc"));
        ASSERT_TRUE(mounted("proc", odd));
        ASSERT_TRUE(bound(tree.path(), "again/below"));
        ASSERT_TRUE(bound(tree.at("part"), "again/other"));
        ASSERT_TRUE(mounted("proc", "stack"));
        ASSERT_TRUE(mounted("tmpfs", "stack"));
        ASSERT_TRUE(mounted("proc", "hidden/proc"));
        ASSERT_TRUE(mounted("tmpfs", "hidden"));
        ASSERT_TRUE(bound(tree.path(), "Inner.app/above"));
        ASSERT_TRUE(mounted("proc", "Outer.app"));

        const MountBarriers barriers(MountTable::current(), tree.path());
        EXPECT_TRUE(isBarrier(barriers, {"proc"}));
        EXPECT_TRUE(isBarrier(barriers, {odd}));
        EXPECT_TRUE(isBarrier(barriers, {"again", "below"}));
        EXPECT_FALSE(isBarrier(barriers, {"again", "other"}));
        EXPECT_FALSE(isBarrier(barriers, {"memory"}));
        EXPECT_FALSE(isBarrier(barriers, {"stack"}));
        EXPECT_FALSE(isBarrier(barriers, {"hidden", "proc"}));

        // To a scan they are empty folders.
        std::int64_t items = 0;
        const FileNode root = std::get<FileNode>(DiskScanner{0, 0}.scan(
            tree.url(), [&](const ScanProgress& report) { items = report.visitedCount; }));
        EXPECT_EQ(items, 11) << "9 folders and 2 inside \"again\"";
        const FileNode* outer = root.child(tree.at("Outer.app"));
        ASSERT_NE(outer, nullptr);
        EXPECT_EQ(outer->kind(), NodeKind::directory);
        EXPECT_FALSE(outer->canZoom());
        struct stat status;
        ASSERT_EQ(::stat(tree.at("Inner.app").c_str(), &status), 0);
        EXPECT_EQ(root.allocatedSize(), status.st_blocks * 512);
    });
    if (!obstacle.empty())
        GTEST_SKIP() << "needs the right to mount: " << obstacle;
}

} // namespace
