#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "TrashProbe.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <thread>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

namespace fs = std::filesystem;
using Reason = TrashFailure::Reason;

/// A home trash in a folder of its own, and items beside it on the same volume.
class DesktopTrashTest : public ::testing::Test {
protected:
    TemporaryTree tree;
    DesktopTrash trash{FileURL(tree.at("data/Trash"))};

    static TrashItem record(const FileURL& url) { return TrashItem::record({&url, 1}).front(); }
    TrashItem item(const std::string& relative) const { return record(FileURL(tree.at(relative))); }

    /// Where the item went; empty, with a failure, when it did not go.
    FileURL put(const TrashItem& item)
    {
        const auto result = trash.put(item);
        const FileURL* const destination = std::get_if<FileURL>(&result);
        EXPECT_TRUE(destination) << item.url.path();
        return destination ? *destination : FileURL();
    }
    TrashFailure refuse(const TrashItem& item)
    {
        const auto result = trash.put(item);
        const TrashFailure* const failure = std::get_if<TrashFailure>(&result);
        EXPECT_TRUE(failure) << item.url.path();
        return failure ? *failure : TrashFailure{};
    }
    std::vector<std::string> infoNames() const { return namesIn(tree.at("data/Trash/info")); }
    std::vector<std::string> fileNames() const { return namesIn(tree.at("data/Trash/files")); }
};

TEST_F(DesktopTrashTest, NamesOfAnyBytesCanBeRestored)
{
    const std::vector<std::string> names{
        "plain.txt",
        "a b",
        "100%",
        "%41",
        "new\nline",
        "\n",
        "[Trash Info]\nPath=x",
        "\xff\xfe",
        "caf\xc3\xa9",
        "half \xc3",
        "-rf",
        "...",
        ".hidden",
        "x.trashinfo",
        "#?&=;:@+$,\"<>\\^`{|}\t\x01\x7f",
        std::string(255, 'a'),
        std::string(255, '\xff'),
        std::string(250, 'a') + ".html",
        "." + std::string(254, 'b'),
        "x." + std::string(253, 'c'),
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string path = tree.at("items/" + name);
        tree.folder("items");
        writeText(path, "text of " + name);
        const auto inode = inodeOf(path);

        const FileURL trashed = put(record(FileURL(path)));
        ASSERT_FALSE(exists(path));
        EXPECT_EQ(inodeOf(trashed.path()), inode) << "renamed, not copied";
        const auto info = restoreInfo(trashed);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->path, path);
        EXPECT_TRUE(isJustNow(info->date)) << info->date;

        ASSERT_EQ(::rename(trashed.path().c_str(), info->path.c_str()), 0);
        EXPECT_EQ(readText(path), "text of " + name);
    }
    EXPECT_EQ(infoNames().size(), names.size());
    struct stat status;
    ASSERT_EQ(::stat(tree.at("data/Trash").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST_F(DesktopTrashTest, AThousandItemsOfOneNameAndWhatWasLeftWithoutInformation)
{
    tree.file("data/Trash/files/same.txt");
    tree.file("data/Trash/info/same.2.txt.trashinfo");
    const auto orphan = inodeOf(tree.at("data/Trash/files/same.txt"));
    const auto alien = inodeOf(tree.at("data/Trash/info/same.2.txt.trashinfo"));

    std::vector<FileURL> urls;
    for (int i = 0; i < 1000; ++i) {
        tree.folder("items/" + std::to_string(i));
        urls.emplace_back(tree.at("items/" + std::to_string(i) + "/same.txt"));
        writeText(urls.back().path(), std::to_string(i));
    }
    const auto results = trash.put(TrashItem::record(urls));
    std::set<std::string> places;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        ASSERT_TRUE(std::holds_alternative<FileURL>(results[i]));
        const FileURL& trashed = std::get<FileURL>(results[i]);
        EXPECT_EQ(readText(trashed.path()), std::to_string(i));
        const auto info = restoreInfo(trashed);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->path, urls[i].path());
        EXPECT_TRUE(trashed.path().ends_with(".txt"));
        places.insert(trashed.path());
    }
    EXPECT_EQ(places.size(), 1000U);
    EXPECT_EQ(inodeOf(tree.at("data/Trash/files/same.txt")), orphan);
    EXPECT_EQ(inodeOf(tree.at("data/Trash/info/same.2.txt.trashinfo")), alien);
    EXPECT_EQ(fileNames().size(), 1001U);
    EXPECT_EQ(infoNames().size(), 1001U);
}

TEST_F(DesktopTrashTest, FoldersMoveWholeAndLinksMoveThemselves)
{
    tree.file("items/folder/deep/file", 10'000);
    tree.file("outside/kept");
    tree.link("items/folder/link", tree.at("outside"));
    tree.link("items/to folder", tree.at("outside"));
    tree.link("items/dangling", "nowhere");

    const FileURL folder = put(item("items/folder"));
    EXPECT_TRUE(exists(folder.path() + "/deep/file"));
    EXPECT_TRUE(fs::is_symlink(folder.path() + "/link"));
    EXPECT_TRUE(fs::is_symlink(put(item("items/to folder")).path()));
    EXPECT_EQ(fs::read_symlink(put(item("items/dangling")).path()), "nowhere");
    EXPECT_TRUE(exists(tree.at("outside/kept")));
    EXPECT_TRUE(namesIn(tree.at("items")).empty());
}

TEST_F(DesktopTrashTest, APathThroughALinkIsRestoredToWhereItLeads)
{
    tree.file("real/file");
    tree.link("link", "real");
    const auto info = restoreInfo(put(item("link/file")));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->path, tree.at("real/file"));
}

TEST_F(DesktopTrashTest, PathsBeyondTheLongestOne)
{
    const std::string name(200, 'd');
    tree.folder("deep");
    tree.chain("deep", name, 40, 0);
    FileURL url(tree.at("deep"));
    for (int level = 0; level < 40; ++level)
        url = url.appendingPathComponent(name);
    const auto info = restoreInfo(put(record(url)));
    ASSERT_TRUE(info);
    EXPECT_EQ(info->path, url.path());
    EXPECT_FALSE(record(url).identity);
    EXPECT_TRUE(record(url.deletingLastPathComponent()).identity);
}

/// What may happen between the question and the answer, and what it leaves.
struct Change {
    const char* name;
    std::function<void(const TemporaryTree&)> make;
    /// What must still be there afterwards.
    std::vector<const char*> kept;
};

TEST_F(DesktopTrashTest, WhatIsNoLongerTheSameStays)
{
    const std::vector<Change> changes{
        {"gone", [](const TemporaryTree& t) { t.remove("folder/item"); }, {}},
        {"another file of its name, which may get the old one's number",
         [](const TemporaryTree& t) {
             waitForTheNextBirth(t.path());
             t.remove("folder/item");
             t.file("folder/item");
         },
         {"folder/item"}},
        {"a link to the item",
         [](const TemporaryTree& t) {
             fs::rename(t.at("folder/item"), t.at("folder/moved"));
             t.link("folder/item", "moved");
         },
         {"folder/item", "folder/moved"}},
        {"a link to something else",
         [](const TemporaryTree& t) {
             t.remove("folder/item");
             t.link("folder/item", t.at("other/item"));
         },
         {"folder/item", "other/item"}},
        {"a folder",
         [](const TemporaryTree& t) {
             t.remove("folder/item");
             t.folder("folder/item/inside");
         },
         {"folder/item/inside"}},
        {"a link to another folder in place of the folder above",
         [](const TemporaryTree& t) {
             t.remove("folder");
             t.link("folder", "other");
         },
         {"other/item"}},
        {"a link to the folder above in its place",
         [](const TemporaryTree& t) {
             fs::rename(t.at("folder"), t.at("moved"));
             t.link("folder", "moved");
         },
         {"moved/item"}},
        {"another folder in place of the one above",
         [](const TemporaryTree& t) {
             fs::rename(t.at("folder"), t.at("moved"));
             fs::rename(t.at("other"), t.at("folder"));
         },
         {"folder/item", "moved/item"}},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(change.name);
        tree.file("folder/item");
        tree.file("other/item");
        const TrashItem asked = item("folder/item");
        change.make(tree);

        EXPECT_EQ(refuse(asked).reason, Reason::changed);
        for (const char* path : change.kept)
            EXPECT_TRUE(exists(tree.at(path))) << path;
        EXPECT_TRUE(fileNames().empty());
        EXPECT_TRUE(infoNames().empty());
        for (const char* top : {"folder", "other", "moved"})
            tree.remove(top);
    }
    EXPECT_EQ(refuse(item("never there")).reason, Reason::changed);
}

TEST_F(DesktopTrashTest, WhatIsSwappedAtTheLastMomentGoesBack)
{
    // Where nothing has to wait for a disk, as far as that is allowed.
    const TemporaryTree memory(TemporaryTree::Storage::memory);
    const DesktopTrash quickTrash(FileURL(memory.at("Trash")));
    memory.file("items/wanted");
    memory.file("items/other");
    const std::string wanted = memory.at("items/wanted");
    const std::string other = memory.at("items/other");
    const TrashItem asked = record(FileURL(wanted));
    const auto inode = inodeOf(wanted);
    std::jthread swapping([&](const std::stop_token& stop) {
        while (!stop.stop_requested())
            ::renameat2(AT_FDCWD, wanted.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
    });
    int movedCount = 0;
    constexpr int rounds = 2000;
    for (int round = 0; round < rounds; ++round) {
        const auto result = quickTrash.put(asked);
        if (const FileURL* const destination = std::get_if<FileURL>(&result)) {
            ++movedCount;
            ASSERT_EQ(inodeOf(destination->path()), inode);
            ASSERT_EQ(::rename(destination->path().c_str(), wanted.c_str()), 0);
            fs::remove(memory.at("Trash/info/wanted.trashinfo"));
        }
        ASSERT_TRUE(namesIn(memory.at("Trash/files")).empty());
        ASSERT_TRUE(namesIn(memory.at("Trash/info")).empty());
        ASSERT_EQ(namesIn(memory.at("items")).size(), 2U);
    }
    EXPECT_GT(movedCount, 0);
    EXPECT_LT(movedCount, rounds);
}

TEST_F(DesktopTrashTest, AMoveThatWasKilledIsPutRightByTheNext)
{
    constexpr std::size_t count = 1000;
    std::vector<FileURL> urls;
    for (std::size_t i = 0; i < count; ++i) {
        tree.file("items/" + std::to_string(i));
        urls.emplace_back(tree.at("items/" + std::to_string(i)));
    }
    // What other programs have begun is theirs.
    tree.file("data/Trash/info/theirs.trashinfo");
    const std::vector<TrashItem> items = TrashItem::record(urls);
    for (const char* reached : {"data/Trash/info", "data/Trash/files"}) {
        const std::size_t before = namesIn(tree.at(reached)).size();
        const pid_t child = ::fork();
        if (child == 0) {
            trash.put(items);
            ::_exit(0);
        }
        while (namesIn(tree.at(reached)).size() <= before) {
        }
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << reached;
        EXPECT_GT(infoNames().size(), fileNames().size() + 1) << reached;

        tree.file("next");
        put(item("next"));
        EXPECT_EQ(infoNames().size(), fileNames().size() + 1) << reached;
        for (const std::string& name : fileNames())
            EXPECT_TRUE(restoreInfo(FileURL(tree.at("data/Trash/files/" + name)))) << name;
        EXPECT_EQ(namesIn(tree.at("data/Trash")).size(), 2U) << reached;
    }
}

TEST_F(DesktopTrashTest, WhatIsTheSameGoesHoweverItHasChanged)
{
    tree.file("folder/item");
    tree.folder("grown");
    const TrashItem file = item("folder/item");
    const TrashItem folder = item("grown");
    writeText(tree.at("folder/item"), "more");
    ::chmod(tree.at("folder/item").c_str(), 0400);
    tree.file("grown/since then");
    EXPECT_EQ(readText(put(file).path()), "more");
    EXPECT_TRUE(exists(put(folder).path() + "/since then"));
}

TEST_F(DesktopTrashTest, TheTrashItselfStays)
{
    tree.file("items/first");
    const FileURL trashed = put(item("items/first"));
    for (const char* path : {"data", "data/Trash", "data/Trash/files", "data/Trash/info",
                             "data/Trash/files/first", "data/Trash/info/first.trashinfo"})
        EXPECT_EQ(refuse(item(path)).reason, Reason::refused) << path;
    EXPECT_TRUE(restoreInfo(trashed));
    EXPECT_EQ(infoNames().size(), 1U);
}

TEST_F(DesktopTrashTest, WhatTheSystemDoesNotLetGoStays)
{
    tree.file("items/locked/file");
    // Permissions do not hold the administrator; a lock of the file system does.
    const std::string folder = tree.at("items/locked");
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    int flags = 0;
    const bool isAdministrator = ::geteuid() == 0;
    const auto setLocked = [&](bool isLocked) {
        flags = isLocked ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        return isAdministrator ? ::ioctl(handle, FS_IOC_SETFLAGS, &flags)
                               : ::fchmod(handle, isLocked ? 0500 : 0700);
    };
    if ((isAdministrator && ::ioctl(handle, FS_IOC_GETFLAGS, &flags) != 0) || setLocked(true) != 0)
        GTEST_SKIP() << "needs a lockable folder";
    const TrashFailure failure = refuse(item("items/locked/file"));
    EXPECT_EQ(setLocked(false), 0);
    ::close(handle);

    EXPECT_EQ(failure, (TrashFailure{Reason::refused, isAdministrator ? EPERM : EACCES}));
    EXPECT_TRUE(exists(tree.at("items/locked/file")));
    EXPECT_TRUE(infoNames().empty());
    put(item("items/locked/file"));
}

TEST_F(DesktopTrashTest, WhereTheHomeTrashIs)
{
    const std::string before = std::getenv("XDG_DATA_HOME");
    ::setenv("XDG_DATA_HOME", "/some/data", 1);
    EXPECT_EQ(DesktopTrash::homeTrash().path(), "/some/data/Trash");
    const std::string home = std::getenv("HOME");
    for (const char* useless : {"", "relative/data"}) {
        ::setenv("XDG_DATA_HOME", useless, 1);
        EXPECT_EQ(DesktopTrash::homeTrash().path(), home + "/.local/share/Trash");
    }
    ::setenv("XDG_DATA_HOME", before.c_str(), 1);
}

} // namespace

} // namespace brisalon::tests
