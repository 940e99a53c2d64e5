#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "BrisalonCore/Descriptor.h"

#include "TrashProbe.h"
#include "support/LoopVolume.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

namespace fs = std::filesystem;
using Reason = TrashFailure::Reason;

/// A home on one file system, and a volume that is another.
class VolumeTrashTest : public ::testing::Test {
protected:
    TemporaryTree home;
    TemporaryTree volume{TemporaryTree::Storage::memory};
    const std::string user = std::to_string(::getuid());
    const std::string own = ".Trash-" + user;

    void SetUp() override
    {
        if (!volume.isInMemory())
            GTEST_SKIP() << "needs the right to mount";
        volume.file("items/folder/file", 5'000);
    }

    /// Each time as a new operation, which knows nothing of volumes yet.
    std::variant<FileURL, TrashFailure> put(const std::string& path) const
    {
        const FileURL url(path);
        return DesktopTrash(FileURL(home.at("Trash"))).put(TrashItem::record({&url, 1}).front());
    }

    /// The item went to that trash folder of the volume, and can be restored.
    void expectMoved(const std::string& item, const std::string& trash) const
    {
        const std::string path = volume.at(item);
        const auto inode = inodeOf(path);
        const auto result = put(path);
        const FileURL* const destination = std::get_if<FileURL>(&result);
        ASSERT_TRUE(destination);
        EXPECT_EQ(destination->deletingLastPathComponent().path(), volume.at(trash + "/files"));
        EXPECT_EQ(inodeOf(destination->path()), inode);
        EXPECT_FALSE(exists(path));
        const auto info = restoreInfo(*destination);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->path, item) << "from the volume's top";
        EXPECT_TRUE(isJustNow(info->date));
        struct stat status;
        ASSERT_EQ(::stat(volume.at(trash).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0700U);
    }

    /// The item stays for that reason, and nothing of a trash appears on the volume or at
    /// home.
    void expectLeft(const std::string& item, int reason) const
    {
        const auto before = namesIn(volume.path());
        const auto inode = inodeOf(volume.at(item));
        const auto result = put(volume.at(item));
        const TrashFailure* const failure = std::get_if<TrashFailure>(&result);
        ASSERT_TRUE(failure);
        EXPECT_EQ(*failure, (TrashFailure{Reason::noTrash, reason}));
        EXPECT_EQ(inodeOf(volume.at(item)), inode);
        EXPECT_EQ(namesIn(volume.path()), before);
        EXPECT_TRUE(namesIn(home.path()).empty());
    }

    void shareTrash(mode_t mode) const
    {
        volume.folder(".Trash");
        ASSERT_EQ(::chmod(volume.at(".Trash").c_str(), mode), 0);
    }

    void remount(unsigned long flags, const char* options) const
    {
        ASSERT_EQ(::mount(nullptr, volume.path().c_str(), nullptr, MS_REMOUNT | flags, options), 0);
    }
};

TEST_F(VolumeTrashTest, TheUsersOwnFolderAtTheTop)
{
    expectMoved("items/folder", own);
    const std::string odd = "items/a%\n\xff";
    volume.file(odd);
    expectMoved(odd, own);
    EXPECT_EQ(namesIn(volume.at(own + "/info")).size(), 2U);
    EXPECT_TRUE(namesIn(home.at("Trash/files")).empty());
}

TEST_F(VolumeTrashTest, TheSharedFolderWhenItIsSticky)
{
    shareTrash(01777);
    expectMoved("items/folder/file", ".Trash/" + user);
    EXPECT_FALSE(exists(volume.at(own)));
}

TEST_F(VolumeTrashTest, ASharedFolderThatIsNotSafeIsNotUsed)
{
    shareTrash(0777);
    expectMoved("items/folder/file", own);
    EXPECT_TRUE(namesIn(volume.at(".Trash")).empty());

    // A link to a safe one neither: whoever made it could make it lead elsewhere.
    volume.remove(".Trash");
    volume.folder("elsewhere");
    ASSERT_EQ(::chmod(volume.at("elsewhere").c_str(), 01777), 0);
    volume.link(".Trash", "elsewhere");
    expectMoved("items/folder", own);
    EXPECT_TRUE(namesIn(volume.at("elsewhere")).empty());

    // The user's part may be a link as well.
    volume.remove(".Trash");
    shareTrash(01777);
    volume.link(".Trash/" + user, "../elsewhere");
    expectMoved("items", own);
    EXPECT_TRUE(namesIn(volume.at("elsewhere")).empty());
}

TEST_F(VolumeTrashTest, NoUsableTrash)
{
    volume.folder("elsewhere");
    volume.link(own, "elsewhere");
    expectLeft("items/folder/file", ENOTDIR);
    EXPECT_TRUE(namesIn(volume.at("elsewhere")).empty());

    volume.remove(own);
    volume.file(own);
    expectLeft("items/folder", ENOTDIR);

    if (::geteuid() == 0) {
        volume.remove(own);
        volume.folder(own);
        ASSERT_EQ(::chown(volume.at(own).c_str(), 12345, 12345), 0);
        expectLeft("items", EPERM);
    }
}

TEST_F(VolumeTrashTest, WhatBelongsHomeGoesToNoOtherTrash)
{
    volume.file("home");
    const FileURL item(volume.at("items/folder/file"));
    const auto result =
        DesktopTrash(FileURL(volume.at("home/data/Trash"))).put(TrashItem::record({&item, 1}))[0];
    ASSERT_TRUE(std::holds_alternative<TrashFailure>(result));
    EXPECT_EQ(std::get<TrashFailure>(result), (TrashFailure{Reason::noTrash, ENOTDIR}));
    EXPECT_FALSE(exists(volume.at(own)));
    // Nor does a home trash appear that nothing has gone to.
    const DesktopTrash trash{FileURL(volume.at("new/data/Trash"))};
    const FileURL gone(volume.at("items/gone"));
    volume.file("items/gone");
    const auto asked = TrashItem::record({&gone, 1});
    volume.remove("items/gone");
    EXPECT_TRUE(std::holds_alternative<TrashFailure>(trash.put(asked)[0]));
    EXPECT_FALSE(exists(volume.at("new")));
}

TEST_F(VolumeTrashTest, AVolumeThatCannotBeWritten)
{
    remount(MS_RDONLY, nullptr);
    expectLeft("items/folder", EROFS);
    remount(0, nullptr);
    expectMoved("items/folder/file", own);
    remount(MS_RDONLY, nullptr);
    expectLeft("items/folder", EROFS);
    EXPECT_EQ(namesIn(volume.at(own + "/info")).size(), 1U);
}

TEST_F(VolumeTrashTest, AVolumeWithoutRoomForTheInformation)
{
    expectMoved("items/folder/file", own);
    // First no room for another file, then for what is in it.
    remount(0, "nr_inodes=100");
    volume.folder("filling");
    for (int i = 0; i < 100; ++i)
        writeText(volume.at("filling/" + std::to_string(i)), "");
    expectLeft("items/folder", ENOSPC);
    EXPECT_EQ(namesIn(volume.at(own + "/info")).size(), 1U);

    volume.remove("filling");
    remount(0, "size=64k");
    writeText(volume.at("filling"), std::string(100'000, 'x'));
    expectLeft("items/folder", ENOSPC);
    EXPECT_EQ(namesIn(volume.at(own + "/info")).size(), 1U) << "what was begun is taken back";
}

TEST_F(VolumeTrashTest, APartOfTheHomesOwnVolumeMountedElsewhere)
{
    // The same disk, and yet nothing can be renamed across.
    home.file("shown/items/file");
    volume.folder("view");
    ASSERT_EQ(
        ::mount(home.at("shown").c_str(), volume.at("view").c_str(), nullptr, MS_BIND, nullptr), 0);
    const auto result = put(volume.at("view/items/file"));
    ASSERT_TRUE(std::holds_alternative<FileURL>(result));
    EXPECT_EQ(std::get<FileURL>(result).path(), volume.at("view/" + own + "/files/file"));
    const auto info = restoreInfo(std::get<FileURL>(result));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->path, "items/file");
    ::umount(volume.at("view").c_str());
}

TEST_F(VolumeTrashTest, OneOperationOverTwoFileSystems)
{
    home.file("items/first");
    DesktopTrash trash{FileURL(home.at("Trash"))};
    const std::vector<FileURL> urls{FileURL(home.at("items/first")),
                                    FileURL(volume.at("items/folder/file")),
                                    FileURL(home.at("items"))};
    std::vector<std::string> places;
    for (const TrashItem& item : TrashItem::record(urls)) {
        const auto result = trash.put(item);
        ASSERT_TRUE(std::holds_alternative<FileURL>(result));
        places.push_back(std::get<FileURL>(result).path());
    }
    EXPECT_EQ(places, (std::vector<std::string>{home.at("Trash/files/first"),
                                                volume.at(own + "/files/file"),
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
        ::sync();
        for (const auto& result :
             DesktopTrash(FileURL(home.at("Trash"))).put(TrashItem::record(urls)))
            EXPECT_TRUE(std::holds_alternative<FileURL>(result));
        // As another program may have it, or the system every few seconds: the renames are
        // on the disk, but not what files hold.
        writeText(disk.at("other"), "");
        const Descriptor other = Descriptor::open(AT_FDCWD, disk.at("other").c_str(), O_RDONLY);
        ASSERT_EQ(::fsync(other.get()), 0);

        const LoopVolume found = LoopVolume::afterPowerFailure(disk);
        ASSERT_TRUE(found.isMounted());
        const std::string trash = found.at(".Trash-" + std::to_string(::getuid()));
        for (const FileURL& url : urls) {
            const std::string name(url.lastPathComponent());
            EXPECT_FALSE(exists(found.at(name)));
            EXPECT_EQ(contents(trash + "/files/" + name), "text");
            const auto info = restoreInfo(FileURL(trash + "/files/" + name));
            ASSERT_TRUE(info) << name;
            EXPECT_EQ(info->path, name);
        }
    }
}

TEST(LoopVolumeTrashTest, ADiskAsUsersPlugIn)
{
    const LoopVolume disk("ext4");
    if (!disk.isMounted())
        GTEST_SKIP() << "needs an ext4 image";
    const TemporaryTree home;
    fs::create_directories(disk.at("photos/holiday"));
    writeText(disk.at("photos/holiday/1.jpg"), "sea");
    writeText(disk.at("report"), "first");
    const std::vector<FileURL> urls{FileURL(disk.at("photos")), FileURL(disk.at("report"))};
    const std::vector<TrashItem> items = TrashItem::record(urls);
    // ext4 gives the number of the file that went to the next that comes.
    const auto number = inodeOf(disk.at("report"));
    waitForTheNextBirth(disk.at("photos"));
    fs::remove(disk.at("report"));
    writeText(disk.at("report"), "second");
    ASSERT_EQ(inodeOf(disk.at("report")), number);

    DesktopTrash trash{FileURL(home.at("Trash"))};
    const auto moved = trash.put(items[0]);
    ASSERT_TRUE(std::holds_alternative<FileURL>(moved));
    EXPECT_EQ(std::get<FileURL>(moved).path(),
              disk.at(".Trash-" + std::to_string(::getuid()) + "/files/photos"));
    EXPECT_EQ(contents(std::get<FileURL>(moved).path() + "/holiday/1.jpg"), "sea");
    const auto left = trash.put(items[1]);
    ASSERT_TRUE(std::holds_alternative<TrashFailure>(left));
    EXPECT_EQ(std::get<TrashFailure>(left).reason, Reason::changed);
    EXPECT_EQ(contents(disk.at("report")), "second");
}

} // namespace

} // namespace brisalon::tests
