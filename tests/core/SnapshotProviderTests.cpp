#include "BrisalonCore/SnapshotParser.h"
#include "BrisalonCore/SnapshotService.h"

#include "Snapshots.h"
#include "host/linux/BtrfsSnapshots.h"
#include "host/linux/SnapperSnapshots.h"
#include "support/LoopVolume.h"
#include "support/Script.h"
#include "volume/ManagedSnapshots.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

using namespace brisalon;
using namespace brisalon::tests;
using namespace std::chrono_literals;
using detail::ManagedSnapshots;

namespace {

const Deadline later = std::chrono::steady_clock::now() + 1h;

template <typename Manager>
std::shared_ptr<ManagedSnapshots> managed(const std::string& tool, const std::string& mountPoint)
{
    return std::make_shared<ManagedSnapshots>(std::make_shared<Manager>(tool, mountPoint));
}

std::string notDeleted(const std::string& token)
{
    return "Could not delete snapshot " + token + '.';
}

/// A tool that answers as snapper does: the configurations in a file "configs", the
/// snapshots in "list", and one line in "deleted" for each deletion.
class SnapperSnapshotsTest : public testing::Test {
protected:
    SnapperSnapshotsTest()
    {
        tree_.write("configs", "subvolume,config\n/home,home\n/,root\n/srv,srv\n");
    }
    std::string at(const char* name) const { return tree_.at(name); }
    Tokens listed() const { return tokens(snapper_->list(later).snapshots); }

    const TemporaryTree tree_;
    const std::string tool_ = script(tree_, "snapper", R"sh(cd "${0%/*}"
case "$*" in
    "--csvout list-configs --columns subvolume,config") cat configs ;;
    "-c root --csvout --iso list --disable-used-space --columns number,date") cat list ;;
    "-c root delete "*) echo "$*" >> deleted ;;
    *) echo "Unknown command: $*" >&2; exit 1 ;;
esac)sh");
    const std::shared_ptr<ManagedSnapshots> snapper_ = managed<host::SnapperSnapshots>(tool_, "/");
};

TEST_F(SnapperSnapshotsTest, ListsAndDeletesThoseOfTheMountPoint)
{
    // Lines of another form are no snapshots.
    const std::string list = "number,date\n0,\n1,2024-01-15 12:34:56\n1;2024-01-15 12:34:56\n2\n"
                             "3,\n,2024-01-15 12:34:56\n4,Mon 15 Jan 2024 12:34:56\n"
                             "5,2024-01-15 12:34:561\n6,2024-01-15T12:34:56\n"
                             "-7,2024-01-15 12:34:56\n99999999999999999999,2024-01-15 12:34:56\n"
                             "23,2024-01-16 00:00:00";
    tree_.write("list", list);
    EXPECT_EQ(snapper_->list(later),
              (SnapshotListResult{{{"2024-01-15-123456", "1,2024-01-15 12:34:56"},
                                   {"2024-01-16-000000", "23,2024-01-16 00:00:00"}},
                                  list,
                                  std::nullopt}));
    EXPECT_EQ(snapper_->remove("2024-01-16-000000", later), std::nullopt);
    EXPECT_EQ(snapper_->remove("2024-01-17-000000", later), notDeleted("2024-01-17-000000"));
    EXPECT_EQ(contents(at("deleted")), "-c root delete 23\n");

    // Its complaints reach the user.
    const auto home = managed<host::SnapperSnapshots>(tool_, "/home");
    const std::string complaint = "Unknown command: -c home --csvout --iso list "
                                  "--disable-used-space --columns number,date\n";
    EXPECT_EQ(home->list(later), (SnapshotListResult{{}, "", complaint}));
    EXPECT_EQ(home->remove("2024-01-15-123456", later), complaint);
}

TEST_F(SnapperSnapshotsTest, TheFirstThatIsThereStandsInForAnAbsentTool)
{
    tree_.write("list", "7,2024-01-15 12:34:56\n");
    const auto other = managed<host::SnapperSnapshots>(tool_, "/hom");
    const auto missing = managed<host::SnapperSnapshots>(at("missing"), "/");
    const SnapshotService absent(at("missing"), {other, missing, snapper_, other});
    EXPECT_EQ(tokens(absent.listLocalSnapshots().snapshots), Tokens{"2024-01-15-123456"});
    EXPECT_EQ(absent.deleteLocalSnapshot("2024-01-15-123456"), std::nullopt);
    EXPECT_EQ(contents(at("deleted")), "-c root delete 7\n");
    // Not for one that cannot be started, nor does anything stand in for all of them.
    for (const SnapshotService& refused : {SnapshotService(at("list"), {snapper_}),
                                           SnapshotService(at("missing"), {other, missing})}) {
        EXPECT_TRUE(refused.listLocalSnapshots().errorText->starts_with("Could not start"));
        EXPECT_TRUE(refused.deleteLocalSnapshot("")->starts_with("Could not start"));
    }

    // Nobody else is asked when the first is slow, and the whole listing is bounded.
    const std::string slow = script(tree_, "slow", "sleep 0.3; exec \"${0%/*}/snapper\" \"$@\"");
    // Long enough for its first answer, and for none.
    for (const auto limit : {400ms, 100ms}) {
        const auto begin = std::chrono::steady_clock::now();
        const SnapshotService service(
            at("missing"), {managed<host::SnapperSnapshots>(slow, "/"), snapper_}, {limit, 30s});
        EXPECT_EQ(service.listLocalSnapshots(),
                  (SnapshotListResult{{}, "", slow + " did not answer in time.", false}));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, limit + 1s);
    }
}

TEST_F(SnapperSnapshotsTest, SnapshotsOfOneSecondKeepTheirOwnTokens)
{
    const std::string time = ",2024-01-15 12:34:56\n";
    tree_.write("list", "7" + time + "8" + time + "9,2024-01-15 12:34:57\n" + "48" + time);
    EXPECT_EQ(listed(), (Tokens{"2024-01-15-123467", "2024-01-15-123468", "2024-01-15-123457",
                                "2024-01-15-123469"}));
    EXPECT_EQ(snapper_->remove("2024-01-15-123468", later), std::nullopt);
    EXPECT_EQ(snapper_->remove("2024-01-15-123456", later), notDeleted("2024-01-15-123456"));

    // Somebody else deletes one after it was shown: none of the others takes its place.
    tree_.write("list", "7" + time + "9,2024-01-15 12:34:57\n");
    for (const char* shown : {"2024-01-15-123468", "2024-01-15-123467"})
        EXPECT_EQ(snapper_->remove(shown, later), notDeleted(shown));
    EXPECT_EQ(listed(), (Tokens{"2024-01-15-123456", "2024-01-15-123457"}));

    std::string many;
    for (int i = 1; i <= 50; ++i)
        many += std::to_string(i) + time;
    tree_.write("list", many);
    const Tokens all = listed();
    EXPECT_EQ(all.size(), 40U);
    EXPECT_EQ(std::set(all.begin(), all.end()).size(), 40U);
    EXPECT_NE(snapper_->remove("", later), std::nullopt);
    EXPECT_EQ(contents(at("deleted")), "-c root delete 8\n");
}

class BtrfsSnapshotsTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!volume_.isMounted())
            GTEST_SKIP() << "needs a btrfs image";
        run("btrfs subvolume create plain");
    }

    /// Runs the shell's commands in the file system, each of which has to succeed.
    void run(const std::string& commands) const
    {
        EXPECT_EQ(
            std::system(
                ("cd " + volume_.path() + "; set -e; exec >../log 2>&1; " + commands).c_str()),
            0)
            << contents(volume_.at("../log"));
    }

    /// The snapshots that the service lists, as their paths and tokens.
    std::map<std::string, std::string> listed() const
    {
        const SnapshotListResult result = service_.listLocalSnapshots();
        EXPECT_EQ(result.errorText, std::nullopt);
        std::map<std::string, std::string> found;
        for (const auto& [dateToken, rawLine] : result.snapshots) {
            EXPECT_EQ(tokens(SnapshotParser::parse(dateToken)), Tokens{dateToken});
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

    const LoopVolume volume_{"btrfs"};
    const SnapshotService service_{
        volume_.at("missing"), {managed<host::BtrfsSnapshots>("/usr/bin/btrfs", volume_.path())}};
};

TEST_F(BtrfsSnapshotsTest, ListDeleteOneListAgain)
{
    ASSERT_EQ(listedPaths(), "");
    // "early" alone in its second, the others most likely in one.
    run("mkdir -p deep/er; btrfs subvolume snapshot -r plain early;"
        "sleep 1.1; btrfs subvolume snapshot plain deep/er/writable;"
        "btrfs subvolume snapshot . plain/whole; btrfs subvolume snapshot -r plain late");
    const auto before = listed();
    ASSERT_EQ(listedPaths(), "deep/er/writable early late plain/whole ");

    // What the file system's own tool says of the time.
    run("btrfs subvolume list -s . | sed -n 's/.*otime \\([^ ]*\\) \\([^ ]*\\) path early$/"
        "\\1-\\2/p' | tr -d : > ../early");
    EXPECT_EQ(before.at("early") + '\n', contents(volume_.at("../early")));

    EXPECT_EQ(service_.deleteLocalSnapshot(before.at("plain/whole")), std::nullopt);
    EXPECT_EQ(listedPaths(), "deep/er/writable early late ");
    EXPECT_FALSE(exists(volume_.at("plain/whole")));
    EXPECT_TRUE(exists(volume_.at("plain")));
}

TEST_F(BtrfsSnapshotsTest, NamesOfAnyBytesAndMoreThanOneAnswerOfTheKernelHolds)
{
    run("btrfs subvolume snapshot plain \"$(printf 'x\\nID 256 otime 2001-02-03 04:05:06 "
        "path y\\377')\"; btrfs subvolume snapshot plain $(printf %0255d 1);"
        "for i in $(seq 30); do btrfs subvolume snapshot plain $i; done");
    const auto snapshots = listed();
    EXPECT_EQ(snapshots.size(), 32U);
    EXPECT_TRUE(snapshots.contains(std::string(254, '0') + '1'));
    EXPECT_TRUE(snapshots.contains("x\uFFFDID 256 otime 2001-02-03 04:05:06 path y\uFFFD"));
}

TEST_F(BtrfsSnapshotsTest, WhatIsInUseIsNoSnapshotToPeople)
{
    run("btrfs subvolume snapshot plain shown; btrfs subvolume snapshot plain rolledback;"
        "mkdir -p ../second var/lib/machines var/lib/docker/btrfs/subvolumes;"
        "btrfs subvolume snapshot plain var/lib/machines/debian;"
        "btrfs subvolume snapshot plain var/lib/docker/btrfs/subvolumes/layer;"
        "mount -o subvol=rolledback \"$(losetup -nO NAME -j ../image)\" ../second");
    EXPECT_EQ(listedPaths(), "shown ");
    run("umount ../second");
    EXPECT_EQ(listedPaths(), "rolledback shown ");
    run("mount --bind rolledback ../second");
    EXPECT_EQ(listedPaths(), "shown ");
}

TEST(BtrfsSnapshots, AvailableOnlyOnSuchAFileSystemWithItsTool)
{
    const auto snapshots = managed<host::BtrfsSnapshots>("/bin/sh", "/proc");
    EXPECT_FALSE(snapshots->isAvailable(later));
    EXPECT_EQ(snapshots->list(later).errorText,
              "Could not list the snapshots of /proc: Inappropriate ioctl for device.");
}

} // namespace
