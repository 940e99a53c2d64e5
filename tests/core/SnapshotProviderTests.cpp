#include "BrisalonCore/SnapshotParser.h"
#include "BrisalonCore/SnapshotService.h"

#include "host/linux/BtrfsSnapshots.h"
#include "host/linux/SnapperSnapshots.h"
#include "support/Script.h"
#include "support/TemporaryTree.h"
#include "volume/ManagedSnapshots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include <sched.h>
#include <sys/mount.h>

using namespace brisalon;
using namespace std::chrono_literals;
using detail::ManagedSnapshots;
using tests::contents;
using tests::TemporaryTree;

namespace {

const Deadline later = std::chrono::steady_clock::now() + 1h;

template <typename Manager>
ManagedSnapshots managed(const std::string& tool, const std::string& mountPoint)
{
    return ManagedSnapshots(std::make_shared<Manager>(tool, mountPoint));
}

using Tokens = std::vector<std::string>;

Tokens tokens(const SnapshotListResult& result)
{
    Tokens found;
    for (const LocalSnapshot& snapshot : result.snapshots)
        found.push_back(snapshot.dateToken);
    return found;
}

/// A tool that answers as snapper does: the configurations in a file "configs", the
/// snapshots in "list", and one line in "deleted" for each deletion.
class SnapperSnapshotsTest : public testing::Test {
protected:
    SnapperSnapshotsTest() { write("configs", "subvolume,config\n/home,home\n/,root\n/srv,srv\n"); }
    void write(const char* name, const std::string& text) { std::ofstream(tree_.at(name)) << text; }
    std::string at(const char* name) const { return tree_.at(name); }

    const TemporaryTree tree_;
    const std::string tool_ = tests::script(tree_, "snapper", R"sh(cd "${0%/*}"
case "$*" in
    "--csvout list-configs --columns subvolume,config") cat configs ;;
    "-c root --csvout --iso list --disable-used-space --columns number,date") cat list ;;
    "-c root delete "*) echo "$*" >> deleted ;;
    *) echo "Unknown command: $*" >&2; exit 1 ;;
esac)sh");
    const ManagedSnapshots snapper_ = managed<host::SnapperSnapshots>(tool_, "/");
};

TEST_F(SnapperSnapshotsTest, ListsAndDeletesThoseOfTheMountPoint)
{
    const std::string list = "number,date\n0,\n1,2024-01-15 12:34:56\n23,2024-01-16 00:00:00\n";
    write("list", list);
    ASSERT_TRUE(snapper_.isAvailable(later));
    EXPECT_EQ(snapper_.list(later),
              (SnapshotListResult{{{"2024-01-15-123456", "1,2024-01-15 12:34:56"},
                                   {"2024-01-16-000000", "23,2024-01-16 00:00:00"}},
                                  list,
                                  std::nullopt}));
    EXPECT_EQ(snapper_.remove("2024-01-16-000000", later), std::nullopt);
    EXPECT_EQ(snapper_.remove("2024-01-17-000000", later),
              "Could not delete snapshot 2024-01-17-000000.");
    EXPECT_EQ(contents(at("deleted")), "-c root delete 23\n");
}

TEST_F(SnapperSnapshotsTest, LinesOfAnotherFormAreNoSnapshots)
{
    write("list", "1;2024-01-15 12:34:56\n2\n3,\n,2024-01-15 12:34:56\n4,Mon 15 Jan 2024 12:34:56\n"
                  "5,2024-01-15 12:34:561\n6,2024-01-15T12:34:56\n-7,2024-01-15 12:34:56\n"
                  "99999999999999999999999,2024-01-15 12:34:56\n8,2024-01-15 12:34:56");
    EXPECT_EQ(tokens(snapper_.list(later)), Tokens{"2024-01-15-123456"});
    EXPECT_EQ(snapper_.remove("2024-01-15-123456", later), std::nullopt);
    EXPECT_EQ(contents(at("deleted")), "-c root delete 8\n");
}

TEST_F(SnapperSnapshotsTest, AvailableOnlyWhereItIsSetUpForTheMountPoint)
{
    EXPECT_FALSE(managed<host::SnapperSnapshots>(tool_, "/hom").isAvailable(later));
    EXPECT_FALSE(managed<host::SnapperSnapshots>(at("missing"), "/").isAvailable(later));
    write("configs", "subvolume,config\n");
    EXPECT_FALSE(snapper_.isAvailable(later));
}

TEST_F(SnapperSnapshotsTest, TheWholeListingIsBoundedAndNobodyElseIsAsked)
{
    const std::string slow =
        tests::script(tree_, "slow", "sleep 0.3; exec \"${0%/*}/snapper\" \"$@\"");
    write("list", "7,2024-01-15 12:34:56\n");
    const auto refused = [](const std::string& tool) {
        return SnapshotListResult{{}, "", tool + " did not answer in time.", false};
    };
    for (const auto& [tool, limit] : {std::pair(slow, 400ms), {slow, 100ms}}) {
        const auto begin = std::chrono::steady_clock::now();
        const SnapshotService service(at("missing"),
                                      {std::make_shared<ManagedSnapshots>(
                                           std::make_shared<host::SnapperSnapshots>(tool, "/")),
                                       std::make_shared<ManagedSnapshots>(
                                           std::make_shared<host::SnapperSnapshots>(tool_, "/"))},
                                      {limit, 30s});
        EXPECT_EQ(service.listLocalSnapshots(), refused(tool));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, limit + 1s);
        EXPECT_EQ(service.deleteLocalSnapshot("2024-01-15-123456"), std::nullopt);
    }
    EXPECT_FALSE(managed<host::SnapperSnapshots>(at("missing"), "/").isAvailable(later));
}

TEST_F(SnapperSnapshotsTest, ItsComplaintsReachTheUser)
{
    const auto home = managed<host::SnapperSnapshots>(tool_, "/home");
    EXPECT_EQ(home.list(later),
              (SnapshotListResult{{},
                                  "",
                                  "Unknown command: -c home --csvout --iso list "
                                  "--disable-used-space --columns number,date\n"}));
    EXPECT_EQ(home.remove("2024-01-15-123456", later), home.list(later).errorText);
}

TEST_F(SnapperSnapshotsTest, SnapshotsOfOneSecondKeepTheirOwnTokens)
{
    const std::string time = ",2024-01-15 12:34:56\n";
    write("list", "7" + time + "8" + time + "9,2024-01-15 12:34:57\n" + "48" + time);
    EXPECT_EQ(tokens(snapper_.list(later)), (Tokens{"2024-01-15-123467", "2024-01-15-123468",
                                                    "2024-01-15-123457", "2024-01-15-123469"}));
    EXPECT_EQ(snapper_.remove("2024-01-15-123468", later), std::nullopt);
    EXPECT_EQ(snapper_.remove("2024-01-15-123456", later),
              "Could not delete snapshot 2024-01-15-123456.");

    // Somebody else deletes one after it was shown: none of the others takes its place.
    write("list", "7" + time + "9,2024-01-15 12:34:57\n");
    EXPECT_EQ(snapper_.remove("2024-01-15-123468", later),
              "Could not delete snapshot 2024-01-15-123468.");
    EXPECT_EQ(snapper_.remove("2024-01-15-123467", later),
              "Could not delete snapshot 2024-01-15-123467.");
    EXPECT_EQ(tokens(snapper_.list(later)), (Tokens{"2024-01-15-123456", "2024-01-15-123457"}));
    EXPECT_EQ(contents(at("deleted")), "-c root delete 8\n");

    std::string many;
    for (int i = 1; i <= 50; ++i)
        many += std::to_string(i) + time;
    write("list", many);
    const Tokens all = tokens(snapper_.list(later));
    EXPECT_EQ(all.size(), 40U);
    EXPECT_EQ(std::set(all.begin(), all.end()).size(), 40U);
    EXPECT_NE(snapper_.remove("", later), std::nullopt);
    EXPECT_EQ(contents(at("deleted")), "-c root delete 8\n");
}

/// A btrfs file system in a file of its own, mounted for one thread alone.
class BtrfsSnapshotsTest : public testing::Test {
protected:
    /// Runs the shell's commands in the mounted file system, "image" and "mount" being
    /// its file and its place; the first that fails, or nothing.
    std::string run(const std::string& commands) const
    {
        std::istringstream lines(commands);
        for (std::string line; std::getline(lines, line);)
            if (std::system(
                    ("cd '" + mount_ + "' && { " + line + "; } >>'" + tree_.at("log") + "' 2>&1")
                        .c_str()) != 0)
                return line + ": " + contents(tree_.at("log"));
        return {};
    }

    /// Skips the test where that is impossible.
    template <typename Check>
    void withFileSystem(Check&& check)
    {
        tree_.folder("mount");
        tree_.folder("second");
        std::string obstacle;
        std::thread thread([&] {
            if (::unshare(CLONE_NEWNS) != 0 ||
                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
                obstacle = std::string("own mounts: ") + std::strerror(errno);
            else
                obstacle = run("truncate -s 128M ../image\nmkfs.btrfs -q ../image\n"
                               "mount -o loop ../image '" +
                               mount_ + "'");
            if (!obstacle.empty())
                return;
            check();
            EXPECT_EQ(run("cd ..; umount second; umount mount"), "");
        });
        thread.join();
        if (!obstacle.empty())
            GTEST_SKIP() << "needs a btrfs image: " << obstacle;
    }

    /// The snapshots that the service lists, as their paths and tokens.
    std::map<std::string, std::string> listed() const
    {
        const SnapshotListResult result = service_.listLocalSnapshots();
        EXPECT_EQ(result.errorText, std::nullopt);
        std::map<std::string, std::string> found;
        std::set<std::string> unique;
        for (const auto& [dateToken, rawLine] : result.snapshots) {
            EXPECT_EQ(SnapshotParser::parse(dateToken),
                      (std::vector<LocalSnapshot>{{dateToken, dateToken}}));
            EXPECT_TRUE(unique.insert(dateToken).second) << dateToken;
            EXPECT_NE(result.rawOutput.find(rawLine + '\n'), std::string::npos);
            found[rawLine.substr(rawLine.find(" path /") + 7)] = dateToken;
        }
        return found;
    }
    std::string listedPaths() const
    {
        std::string paths;
        for (const auto& [path, token] : listed())
            paths += path + ' ';
        return paths;
    }

    const TemporaryTree tree_;
    const std::string mount_ = tree_.at("mount");
    const SnapshotService service_{
        tree_.at("missing"),
        {std::make_shared<ManagedSnapshots>(
            std::make_shared<host::BtrfsSnapshots>("/usr/bin/btrfs", mount_))}};
};

TEST_F(BtrfsSnapshotsTest, ListDeleteOneListAgain)
{
    withFileSystem([this] {
        ASSERT_EQ(listedPaths(), "");
        // "early" alone in its second, the others most likely in one.
        ASSERT_EQ(run("btrfs subvolume create plain\n"
                      "mkdir -p deep/er\n"
                      "echo data > plain/file\n"
                      "btrfs subvolume snapshot -r plain early\n"
                      "sleep 1.1\n"
                      "btrfs subvolume snapshot plain deep/er/writable\n"
                      "btrfs subvolume snapshot . plain/whole\n"
                      "btrfs subvolume snapshot -r plain late"),
                  "");
        const auto before = listed();
        ASSERT_EQ(listedPaths(), "deep/er/writable early late plain/whole ");

        // What the file system's own tool says of the time.
        ASSERT_EQ(run("btrfs subvolume list -s . > ../list"), "");
        const std::string list = contents(tree_.at("list"));
        const std::string rest = " path early\n";
        ASSERT_NE(list.find(rest), std::string::npos) << list;
        std::string time = list.substr(list.find(rest) - 19, 19);
        time[10] = '-';
        std::erase(time, ':');
        EXPECT_EQ(before.at("early"), time);

        EXPECT_EQ(service_.deleteLocalSnapshot(before.at("plain/whole")), std::nullopt);
        EXPECT_EQ(listedPaths(), "deep/er/writable early late ");
        EXPECT_FALSE(std::filesystem::exists(mount_ + "/plain/whole"));
        EXPECT_EQ(contents(mount_ + "/deep/er/writable/file"), "data\n");
        EXPECT_EQ(contents(mount_ + "/plain/file"), "data\n");

        EXPECT_EQ(service_.deleteLocalSnapshot(before.at("plain/whole")),
                  "Could not delete snapshot " + before.at("plain/whole") + ".");
        EXPECT_EQ(listedPaths(), "deep/er/writable early late ");
    });
}

TEST_F(BtrfsSnapshotsTest, NamesOfAnyBytes)
{
    withFileSystem([this] {
        ASSERT_EQ(run("btrfs subvolume create plain\n"
                      "btrfs subvolume snapshot plain \"$(printf 'x\\nID 256 otime 2001-02-03 "
                      "04:05:06 path y\\377')\"\n"
                      "btrfs subvolume snapshot plain $(printf %0255d 1)"),
                  "");
        const auto snapshots = listed();
        ASSERT_EQ(snapshots.size(), 2U);
        const auto odd = snapshots.find("x\uFFFDID 256 otime 2001-02-03 04:05:06 path y\uFFFD");
        ASSERT_NE(odd, snapshots.end());
        EXPECT_EQ(service_.deleteLocalSnapshot(odd->second), std::nullopt);
        EXPECT_EQ(listedPaths(), std::string(254, '0') + "1 ");
        EXPECT_TRUE(std::filesystem::exists(mount_ + "/plain"));
    });
}

TEST_F(BtrfsSnapshotsTest, MoreThanOneAnswerOfTheKernelHolds)
{
    withFileSystem([this] {
        ASSERT_EQ(run("btrfs subvolume create plain\n"
                      "for i in $(seq 30); do btrfs subvolume snapshot plain $i || exit; done"),
                  "");
        EXPECT_EQ(listed().size(), 30U);
    });
}

TEST_F(BtrfsSnapshotsTest, WhatIsInUseIsNoSnapshotToPeople)
{
    withFileSystem([this] {
        ASSERT_EQ(run("btrfs subvolume create plain\n"
                      "btrfs subvolume snapshot plain shown\n"
                      "btrfs subvolume snapshot plain rolledback\n"
                      "mkdir -p var/lib/machines var/lib/docker/btrfs/subvolumes\n"
                      "btrfs subvolume snapshot plain var/lib/machines/debian\n"
                      "btrfs subvolume snapshot plain var/lib/docker/btrfs/subvolumes/layer\n"
                      "mount -o subvol=rolledback \"$(losetup -nO NAME -j ../image)\" ../second"),
                  "");
        EXPECT_EQ(listedPaths(), "shown ");
        ASSERT_EQ(run("umount ../second"), "");
        EXPECT_EQ(listedPaths(), "rolledback shown ");
        ASSERT_EQ(run("mount --bind rolledback ../second"), "");
        EXPECT_EQ(listedPaths(), "shown ");
    });
}

TEST_F(BtrfsSnapshotsTest, TheToolsRefusalReachesTheUser)
{
    withFileSystem([this] {
        ASSERT_EQ(run("btrfs subvolume create plain\n"
                      "btrfs subvolume snapshot plain chosen\n"
                      "btrfs subvolume set-default chosen"),
                  "");
        const auto text = service_.deleteLocalSnapshot(listed().at("chosen"));
        ASSERT_TRUE(text);
        EXPECT_NE(text->find("default subvolume"), std::string::npos) << *text;
        EXPECT_EQ(listedPaths(), "chosen ");
    });
}

TEST(BtrfsSnapshots, AvailableOnlyOnSuchAFileSystemWithItsTool)
{
    EXPECT_FALSE(managed<host::BtrfsSnapshots>("/bin/sh", "/proc").isAvailable(later));
    const SnapshotListResult result = managed<host::BtrfsSnapshots>("/bin/sh", "/proc").list(later);
    EXPECT_EQ(result.errorText,
              "Could not list the snapshots of /proc: Inappropriate ioctl for device.");
}

} // namespace
