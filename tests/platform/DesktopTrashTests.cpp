#include "Brisalon/Platform/linux/DesktopTrash.h"

#include "TrashProbe.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <thread>

#include <fcntl.h>
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

    FileURL put(const TrashItem& item) const { return destinationOf(trash.put(item)); }
    std::vector<std::string> infoNames() const { return namesIn(tree.at("data/Trash/info")); }
    std::vector<std::string> fileNames() const { return namesIn(tree.at("data/Trash/files")); }
};

TEST_F(DesktopTrashTest, NamesOfAnyBytesCanBeRestored)
{
    std::vector<std::string> names;
    for (const char* name : {"plain.txt", "a b", "100%", "%41", "new\nline", "\n", "\xff\xfe",
                             "[Trash Info]\nPath=x", "caf\xc3\xa9", "half \xc3", "-rf", "...",
                             ".hidden", "x.trashinfo", "#?&=;:@+$,\"<>\\^`{|}\t\x01\x7f"})
        names.emplace_back(name);
    for (const std::string start : {"", ".", "x."})
        for (const char filling : {'a', '\xff'})
            names.push_back(start + std::string(255 - start.size(), filling));
    names.push_back(std::string(250, 'a') + ".html");
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string path = tree.at("items/" + name);
        tree.write("items/" + name, "text of " + name);
        const auto inode = inodeOf(path);

        const FileURL trashed = put(record(FileURL(path)));
        ASSERT_FALSE(exists(path));
        EXPECT_EQ(inodeOf(trashed.path()), inode) << "renamed, not copied";
        const auto info = restoreInfo(trashed);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->path, path);
        EXPECT_TRUE(isJustNow(info->date)) << info->date;

        ASSERT_EQ(::rename(trashed.path().c_str(), info->path.c_str()), 0);
        EXPECT_EQ(contents(path), "text of " + name);
    }
    EXPECT_EQ(infoNames().size(), names.size());
    struct stat status;
    ASSERT_EQ(::stat(tree.at("data/Trash").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST_F(DesktopTrashTest, ManyItemsOfOneNameAndWhatWasLeftWithoutInformation)
{
    constexpr std::size_t count = 300;
    tree.write("data/Trash/files/same.txt", "orphan");
    tree.write("data/Trash/info/same.2.txt.trashinfo", "alien");
    std::vector<FileURL> urls;
    for (std::size_t i = 0; i < count; ++i) {
        tree.write("items/" + std::to_string(i) + "/same.txt", std::to_string(i));
        urls.emplace_back(tree.at("items/" + std::to_string(i) + "/same.txt"));
    }
    const auto results = trash.put(TrashItem::record(urls));
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(std::holds_alternative<FileURL>(results[i]));
        const FileURL& trashed = std::get<FileURL>(results[i]);
        EXPECT_EQ(contents(trashed.path()), std::to_string(i));
        EXPECT_EQ(originOf(trashed), urls[i].path());
        EXPECT_TRUE(trashed.path().ends_with(".txt"));
    }
    EXPECT_EQ(contents(tree.at("data/Trash/files/same.txt")), "orphan");
    EXPECT_EQ(contents(tree.at("data/Trash/info/same.2.txt.trashinfo")), "alien");
    EXPECT_EQ(fileNames().size(), count + 1);
    EXPECT_EQ(infoNames().size(), count + 1);
}

TEST_F(DesktopTrashTest, WhatAnotherProgramPutsThereMeanwhileStays)
{
    bool isFirst = false; // the other program, in most rounds the very first
    for (int round = 0; round < 20 && !isFirst; ++round) {
        for (const char* top : {"items", "data"})
            tree.remove(top);
        // All get their places before the first moves, so there is time for it.
        std::vector<FileURL> urls;
        for (int i = 0; i < 200; ++i) {
            tree.write("items/" + std::to_string(i), "mine");
            urls.emplace_back(tree.at("items/" + std::to_string(i)));
        }
        const std::string place = tree.at("data/Trash/files/199");
        std::jthread other([&] {
            while (!exists(tree.at("data/Trash/info/199.trashinfo"))) {
            }
            isFirst = ::symlink("theirs", place.c_str()) == 0;
        });
        const FileURL mine = destinationOf(trash.put(TrashItem::record(urls)).back());
        other.join();
        EXPECT_EQ(contents(mine.path()), "mine");
        EXPECT_EQ(originOf(mine), urls.back().path());
        EXPECT_EQ(fs::is_symlink(place), isFirst) << "what was put there is still there";
    }
    EXPECT_TRUE(isFirst);
}

TEST_F(DesktopTrashTest, FoldersMoveWholeAndLinksMoveThemselves)
{
    tree.file("items/folder/deep/file", 10'000);
    tree.file("items/file");
    tree.file("outside/kept");
    tree.link("items/folder/link", tree.at("outside"));
    tree.link("items/to folder", tree.at("outside"));
    tree.link("items/dangling", "nowhere");
    tree.link("link", "items");

    const FileURL folder = put(item("items/folder"));
    EXPECT_TRUE(exists(folder.path() + "/deep/file"));
    EXPECT_TRUE(fs::is_symlink(folder.path() + "/link"));
    EXPECT_TRUE(fs::is_symlink(put(item("items/to folder")).path()));
    EXPECT_EQ(fs::read_symlink(put(item("items/dangling")).path()), "nowhere");
    EXPECT_EQ(originOf(put(item("link/file"))), tree.at("items/file")) << "where the link leads";
    EXPECT_TRUE(exists(tree.at("outside/kept")));
    EXPECT_TRUE(namesIn(tree.at("items")).empty());
}

TEST_F(DesktopTrashTest, PathsBeyondTheLongestOne)
{
    const FileURL url(tree.chain("deep", std::string(200, 'd'), 40));
    EXPECT_EQ(originOf(put(record(url))), url.path());
    EXPECT_FALSE(record(url).identity);
    EXPECT_TRUE(record(url.deletingLastPathComponent()).identity);
}

TEST_F(DesktopTrashTest, WhatIsNoLongerTheSameStays)
{
    /// What may happen between the question for "folder/item" and the answer.
    struct Change {
        const char* commands; ///< of the shell
        bool goes;
        std::vector<const char*> kept; ///< what must still be there afterwards
    };
    for (const Change& change : {
             Change{"rm folder/item", false, {}},
             {"rm folder/item; touch folder/item # which may get its number",
              false,
              {"folder/item"}},
             {"mv folder/item folder/x; ln -s x folder/item", false, {"folder/item", "folder/x"}},
             {"ln -sf ../other/item folder/item", false, {"folder/item", "other/item"}},
             {"rm folder/item; mkdir -p folder/item/in", false, {"folder/item/in"}},
             {"rm -r folder; ln -s other folder", false, {"other/item"}},
             {"mv folder moved; ln -s moved folder", false, {"moved/item"}},
             {"mv folder moved; mv other folder", false, {"folder/item", "moved/item"}},
             // What is the same goes however it has changed.
             {"echo more >folder/item; chmod 400 folder/item", true, {}},
         }) {
        SCOPED_TRACE(change.commands);
        tree.file("folder/item");
        tree.file("other/item");
        const TrashItem asked = item("folder/item");
        waitForTheNextBirth(tree.path());
        ASSERT_EQ(std::system(("cd " + tree.path() + "; " + change.commands).c_str()), 0);

        const auto result = trash.put(asked);
        if (change.goes)
            EXPECT_EQ(contents(std::get<FileURL>(result).path()), "more\n");
        else
            EXPECT_EQ(std::get<TrashFailure>(result).reason, Reason::changed);
        for (const char* path : change.kept)
            EXPECT_TRUE(exists(tree.at(path))) << path;
        EXPECT_EQ(fileNames().size(), change.goes ? 1U : 0U);
        EXPECT_EQ(infoNames().size(), fileNames().size());
        for (const char* top : {"folder", "other", "moved"})
            tree.remove(top);
    }
    EXPECT_EQ(std::get<TrashFailure>(trash.put(item("never there"))).reason, Reason::changed);
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

TEST_F(DesktopTrashTest, WhereTheHomeTrashIs)
{
    const std::string before = std::getenv("XDG_DATA_HOME");
    const std::string usual = std::getenv("HOME") + std::string("/.local/share/Trash");
    for (const auto& [data, expected] : {std::pair("/some/data", std::string("/some/data/Trash")),
                                         {"", usual},
                                         {"relative/data", usual}}) {
        ::setenv("XDG_DATA_HOME", data, 1);
        EXPECT_EQ(DesktopTrash::homeTrash().path(), expected);
    }
    ::setenv("XDG_DATA_HOME", before.c_str(), 1);
}

} // namespace

} // namespace brisalon::tests
