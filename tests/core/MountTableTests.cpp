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
    for (const char* path : {"/real/x", "/alias/x"})
        EXPECT_EQ(table.place(path), (StoredPlace{makedev(8, 1), "/real/x"}));
    EXPECT_EQ(table.mounts()[2].under, (StoredPlace{makedev(8, 1), "/real/sub/here"}));
    EXPECT_EQ(table.mounts()[0].under, std::nullopt);
}

} // namespace
