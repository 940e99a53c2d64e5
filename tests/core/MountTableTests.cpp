#include "BrisalonCore/MountTable.h"

#include "Words.h"

#include <gtest/gtest.h>

#include <sys/sysmacros.h>

using namespace brisalon;
using tests::expectThat;

namespace {

using Texts = std::vector<std::string>;

TEST(MountTable, EveryFieldWhateverItsBytes)
{
    // Without optional fields and with three of them; with and without a source; the
    // last line without its end.
    const MountTable table(
        "21 1 8:1 / / rw,noatime - ext4 /dev/sda1 rw,errors=remount-ro\n"
        "22 21 0:300 /sub\\040volume /a\\040b\\134\\012\\011\\043\xff rw shared:3 master:1 x:y "
        "- fuse.a\\040b  rw,lowerdir=/x\\054y:/z,subvolid=5,subvolid=6,empty=\n"
        "23 21 0:5 / /\\9\\04 - - proc - rw");
    const auto mounts = table.mounts();
    ASSERT_EQ(mounts.size(), 3U);
    const auto fields = [](const Mount& mount) {
        return std::tuple(mount.id, mount.parent, mount.device, mount.root, mount.point, mount.type,
                          mount.source);
    };
    EXPECT_EQ(fields(mounts[0]), std::tuple(21U, 1U, makedev(8, 1), "/", "/", "ext4", "/dev/sda1"));
    EXPECT_EQ(fields(mounts[1]), std::tuple(22U, 21U, makedev(0, 300), "/sub volume",
                                            "/a b\\\n\t#\xff", "fuse.a b", ""));
    EXPECT_EQ(fields(mounts[2]), std::tuple(23U, 21U, makedev(0, 5), "/", "/\\9\\04", "proc", "-"));
    EXPECT_EQ(mounts[0].options, (Texts{"rw", "noatime"}));
    EXPECT_EQ(mounts[0].superOption("errors"), "remount-ro");
    EXPECT_EQ(mounts[1].superOptions,
              (Texts{"rw", "lowerdir=/x,y:/z", "subvolid=5", "subvolid=6", "empty="}));
    EXPECT_EQ(mounts[1].superOption("subvolid"), "5");
    EXPECT_EQ(mounts[1].superOption("empty"), "");
    EXPECT_EQ(mounts[1].superOption("rw"), "");
    EXPECT_EQ(mounts[1].superOption("sub"), std::nullopt);
}

TEST(MountTable, LinesOfAnotherFormAreLeftOutAndACircleEnds)
{
    for (const char* text : {"", "\n\n", "1 2\n", "x 1 8:1 / /m rw - proc proc rw\n",
                             "2 1 81 / /m rw - proc proc rw\n", "2 1 8:x / /m rw - proc proc rw\n",
                             "2 1 8:1 / /m rw shared:1", "2 1 8:1 / m rw - proc "})
        EXPECT_TRUE(MountTable(text).mounts().empty()) << text;
    EXPECT_EQ(MountTable("").at("/a"), nullptr);
    EXPECT_EQ(MountTable("").place("/a"), std::nullopt);
    EXPECT_NE(MountTable("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                         "2 1 8:2 / / rw - ext4 /dev/sda1 rw\n"
                         "1 2 8:1 / / rw - ext4 /dev/sda1 rw\n")
                  .at("/a/b"),
              nullptr);
}

TEST(MountTable, OneStoredPlaceForEveryPathThatShowsIt)
{
    MountTable made("1 0 0:30 /@ / rw - btrfs /dev/sda2 rw\n"
                    "2 1 0:30 /@home /home rw - btrfs /dev/sda2 rw\n"
                    "3 2 0:30 /@home/a /home/a/again rw - btrfs /dev/sda2 rw\n"
                    "4 1 0:30 / /mnt rw - btrfs /dev/sda2 rw\n"
                    "5 1 8:2 / /disk rw - ext4 /dev/sdb1 rw\n"
                    "6 5 8:3 / /disk rw - ext4 /dev/sdc1 rw\n");
    const MountTable table = std::move(made);
    const StoredPlace home{makedev(0, 30), "/@home/a/x"};
    for (const char* path : {"/home/a/x", "/home/a/again/x", "/mnt/@home/a/x"})
        EXPECT_EQ(table.place(path), home) << path;
    EXPECT_EQ(table.place("/"), (StoredPlace{makedev(0, 30), "/@"}));
    EXPECT_EQ(table.place("/mnt"), (StoredPlace{makedev(0, 30), "/"}));
    EXPECT_EQ(table.place("/homes"), (StoredPlace{makedev(0, 30), "/@/homes"}));
    EXPECT_EQ(table.place("/disk/y"), (StoredPlace{makedev(8, 3), "/y"})) << "the last mounted";

    EXPECT_TRUE(home.isWithin(*table.place("/mnt/@home")));
    EXPECT_TRUE(home.isWithin(home));
    EXPECT_FALSE(home.isWithin(*table.place("/disk")));
    EXPECT_FALSE(table.place("/mnt/@home")->isWithin(home));
}

TEST(MountTable, WhatAnItemCarriesAlong)
{
    const MountTable table("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                           "2 1 8:1 /real /alias rw - ext4 /dev/sda1 rw\n"
                           "3 1 0:5 / /real/sub/here rw - tmpfs  rw\n"
                           "4 3 8:9 / /real/sub/here/in rw - ext4 /dev/sdb1 rw\n"
                           "5 1 0:6 / /top/held/m rw - tmpfs none rw\n"
                           "6 1 0:7 / /top rw - tmpfs none rw\n"
                           "9 8 0:8 / /lost/m rw - tmpfs none rw\n");
    expectThat([&](const std::string& path) { return table.carriesMount(path); },
               "/ /real /real/sub /real/sub/here/in /alias /alias/sub /alias/sub/here /lost "
               "!/real/sub/here/x !/alias/sub/here/in !/top/held !/al");
    EXPECT_EQ(table.mounts()[2].under, (StoredPlace{makedev(8, 1), "/real/sub/here"}));
    EXPECT_EQ(table.mounts()[0].under, std::nullopt);
}

} // namespace
