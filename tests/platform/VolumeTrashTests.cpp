#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "BrisalonCore/Descriptor.h"

#include "TrashProbe.h"
#include "support/LoopVolume.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

using Reason = TrashFailure::Reason;

const std::string own = ".Trash-" + std::to_string(::getuid());

/// A home on one file system, and a volume that is another.
class VolumeTrashTest : public ::testing::Test {
protected:
    TemporaryTree home;
    TemporaryTree volume{TemporaryTree::Storage::memory};
    const DesktopTrash trash{FileURL(home.at("Trash"))};

    void SetUp() override
    {
        if (!volume.isInMemory())
            GTEST_SKIP() << "needs the right to mount";
        volume.file("items/folder/file", 5'000);
    }
};

TEST_F(VolumeTrashTest, TheSharedFolderWhereItIsSafeElseTheUsersOwnElseNone)
{
    const std::string shared = ".Trash/" + std::to_string(::getuid());
    struct Row {
        const char* commands; ///< for the shell, in the volume; "$own" is the user's own folder
        std::string trash;    ///< where the item goes, if anywhere
        int reason;           ///< why it stays
    };
    for (const Row& row : {
             Row{"", own, 0},
             {"mkdir .Trash; chmod 1777 .Trash", shared, 0},
             {"mkdir .Trash; chmod 777 .Trash", own, 0},
             // A link to a safe one neither: whoever made it could make it lead elsewhere.
             {"mkdir else; chmod 1777 else; ln -s else .Trash", own, 0},
             {"mkdir else .Trash; chmod 1777 .Trash; ln -s ../else .Trash/${own#.Trash-}", own, 0},
             {"mkdir else; ln -s else $own", "", ENOTDIR},
             {"touch $own", "", ENOTDIR},
             {"mkdir $own; chown 12345 $own", "", EPERM},
             {"mount -o remount,ro $PWD", "", EROFS},
             {"mkdir -p $own/files $own/info; mount -o remount,ro $PWD", "", EROFS},
             // First no room for another file, then for what is in it.
             {"mkdir -p $own/files $own/info; mount -o remount,nr_inodes=100 $PWD; mkdir full;"
              "for i in $(seq 100); do touch full/$i || break; done",
              "", ENOSPC},
             {"mkdir -p $own/files $own/info; mount -o remount,size=64k $PWD;"
              "head -c 100000 /dev/zero >full || true",
              "", ENOSPC},
         }) {
        SCOPED_TRACE(row.commands);
        const TemporaryTree disk(TemporaryTree::Storage::memory);
        const FileURL item(disk.at("items/a%\n\xff"));
        disk.file("items/a%\n\xff");
        const std::string commands =
            "cd " + disk.path() + "; exec 2>/dev/null; umask 077; own=" + own + "; " + row.commands;
        ASSERT_EQ(std::system(commands.c_str()), 0);
        const auto before = namesIn(disk.path());
        const auto inode = inodeOf(item.path());
        const auto result = putNow(trash, item);
        EXPECT_TRUE(namesIn(disk.at("else")).empty());
        EXPECT_TRUE(namesIn(home.path()).empty());
        if (row.trash.empty()) {
            EXPECT_EQ(std::get<TrashFailure>(result), (TrashFailure{Reason::noTrash, row.reason}));
            EXPECT_EQ(inodeOf(item.path()), inode);
            EXPECT_EQ(namesIn(disk.path()), before);
            EXPECT_TRUE(namesIn(disk.at(own + "/info")).empty()) << "what was begun is taken back";
            continue;
        }
        const FileURL destination = destinationOf(result);
        EXPECT_EQ(destination.deletingLastPathComponent().path(), disk.at(row.trash + "/files"));
        EXPECT_EQ(inodeOf(destination.path()), inode);
        EXPECT_FALSE(exists(item.path()));
        EXPECT_EQ(originOf(destination), "items/a%\n\xff") << "from the volume's top";
        struct stat status;
        ASSERT_EQ(::stat(disk.at(row.trash).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0700U);
    }
}

TEST_F(VolumeTrashTest, WhatBelongsHomeGoesToNoOtherTrash)
{
    volume.file("home");
    EXPECT_EQ(std::get<TrashFailure>(putNow(DesktopTrash(FileURL(volume.at("home/data/Trash"))),
                                            FileURL(volume.at("items/folder/file")))),
              (TrashFailure{Reason::noTrash, ENOTDIR}));
    EXPECT_FALSE(exists(volume.at(own)));
    // Nor does a home trash appear that nothing has gone to.
    const FileURL gone(volume.at("items/folder/file"));
    const auto asked = TrashItem::record({&gone, 1});
    volume.remove("items");
    const DesktopTrash other(FileURL(volume.at("new/data/Trash")));
    EXPECT_TRUE(std::holds_alternative<TrashFailure>(other.put(asked)[0]));
    EXPECT_FALSE(exists(volume.at("new")));
}

TEST_F(VolumeTrashTest, OneOperationOverTwoFileSystems)
{
    home.file("items/first");
    const std::vector<FileURL> urls{FileURL(home.at("items/first")),
                                    FileURL(volume.at("items/folder/file")),
                                    FileURL(home.at("items"))};
    std::vector<std::string> places;
    for (const auto& result : trash.put(TrashItem::record(urls)))
        places.push_back(destinationOf(result).path());
    EXPECT_EQ(places, (std::vector{home.at("Trash/files/first"), volume.at(own + "/files/file"),
                                   home.at("Trash/files/items")}));
}

TEST(LoopVolumeTrashTest, APowerFailureLeavesNothingWithoutItsOrigin)
{
    const LoopVolume disk("ext4");
    if (!disk.isMounted())
        GTEST_SKIP() << "needs an ext4 image";
    const TemporaryTree home;
    // As few as are flushed one by one, and as many as are flushed together.
    for (const std::size_t count : {3U, 50U}) {
        std::vector<FileURL> urls;
        for (std::size_t i = 0; i < count; ++i) {
            urls.emplace_back(disk.at(std::to_string(count) + " items " + std::to_string(i)));
            writeText(urls.back().path(), "text");
        }
        // That disk alone: the machine may have others that take their time.
        const Descriptor volume = Descriptor::open(AT_FDCWD, disk.at("").c_str(), O_RDONLY);
        ASSERT_EQ(::syncfs(volume.get()), 0);
        for (const auto& result :
             DesktopTrash(FileURL(home.at("Trash"))).put(TrashItem::record(urls)))
            destinationOf(result);
        // As another program may have it, or the system every few seconds: the renames are
        // on the disk, but not what files hold.
        writeText(disk.at("other"), "");
        const Descriptor other = Descriptor::open(AT_FDCWD, disk.at("other").c_str(), O_RDONLY);
        ASSERT_EQ(::fsync(other.get()), 0);

        const LoopVolume found = LoopVolume::afterPowerFailure(disk);
        ASSERT_TRUE(found.isMounted());
        for (const FileURL& url : urls) {
            const std::string name(url.lastPathComponent());
            const std::string trashed = found.at(own + "/files/" + name);
            EXPECT_FALSE(exists(found.at(name)));
            EXPECT_EQ(contents(trashed), "text");
            EXPECT_EQ(originOf(FileURL(trashed)), name);
        }
    }
}

TEST(LoopVolumeTrashTest, AFileThatGotTheNumberOfAnotherIsNotTheOther)
{
    const LoopVolume disk("ext4"); // where it goes to the next that comes
    if (!disk.isMounted())
        GTEST_SKIP() << "needs an ext4 image";
    const FileURL report(disk.at("report"));
    writeText(report.path(), "first");
    const auto asked = TrashItem::record({&report, 1});
    const auto number = inodeOf(report.path());
    waitForTheNextBirth(disk.path());
    std::filesystem::remove(report.path());
    writeText(report.path(), "second");
    ASSERT_EQ(inodeOf(report.path()), number);
    const auto results = DesktopTrash(FileURL(disk.at("Trash"))).put(asked);
    EXPECT_EQ(std::get<TrashFailure>(results[0]).reason, Reason::changed);
}

} // namespace

} // namespace brisalon::tests
