#include "BrisalonCore/SnapshotService.h"

#include "host/linux/BtrfsSnapshots.h"
#include "host/linux/SnapperSnapshots.h"
#include "support/LoopVolume.h"
#include "support/Script.h"
#include "volume/ManagedSnapshots.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <map>
#include <set>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brisalon;
using namespace brisalon::tests;
using namespace std::chrono_literals;
using detail::ManagedSnapshots;

namespace {

const std::string token = "2024-01-15-123456";

using Tokens = std::vector<std::string>;

Tokens tokens(const std::vector<LocalSnapshot>& snapshots)
{
    Tokens found;
    for (const LocalSnapshot& snapshot : snapshots)
        found.push_back(snapshot.dateToken);
    return found;
}

std::string notDeleted(const std::string& dateToken)
{
    return "Could not delete snapshot " + dateToken + '.';
}

/// Whatever the tool did, neither descriptors nor processes of it are left.
class SnapshotServiceTest : public testing::Test {
protected:
    void TearDown() override
    {
        EXPECT_EQ(openDescriptors(), descriptors_);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    /// A service whose tool is that shell script.
    SnapshotService running(std::string_view body, std::chrono::milliseconds limit = 30s)
    {
        return {script(tree_, "tool", body), {}, {limit, limit}};
    }
    std::string at(std::string_view name) const { return tree_.at(name); }

    const TemporaryTree tree_;
    const std::size_t descriptors_ = openDescriptors();
};

TEST_F(SnapshotServiceTest, ToldIsWhatTheToolPrintsWhateverItEndsWith)
{
    const std::vector<LocalSnapshot> one{{token, token}};
    const std::string line = token + '\n';
    const std::string echo = "echo " + token;
    struct Row {
        std::string body;
        SnapshotListResult listed;
        std::optional<std::string> deletion;
    };
    const Row rows[] = {
        {"echo Heading; " + echo + "; echo ' a.2023-12-31-000000'; echo more >&2",
         {{{token, token}, {"2023-12-31-000000", "a.2023-12-31-000000"}},
          "Heading\n" + line + " a.2023-12-31-000000\n",
          "more\n"},
         std::nullopt},
        {echo + "; echo ' no rights ' >&2; exit 255",
         {one, line, " no rights \n"},
         " no rights \n"},
        {echo + "; kill -SEGV $$", {one, line, std::nullopt}, line},
        // What is not UTF-8 counts as nothing.
        {echo + R"(; printf '\303\050'; exit 1)", {}, notDeleted(token)},
        {echo + R"(; printf '\303' >&2; exit 1)", {one, line, std::nullopt}, line},
    };
    for (const auto& [body, listed, deletion] : rows) {
        EXPECT_EQ(running(body).listLocalSnapshots(), listed) << body;
        EXPECT_EQ(running(body).deleteLocalSnapshot(token), deletion) << body;
    }
}

TEST_F(SnapshotServiceTest, ArgumentsReachTheToolAsTheyAre)
{
    const auto service = running("printf '[%s]' \"$0\" \"$@\" > " + at("arguments"));
    service.listLocalSnapshots();
    EXPECT_EQ(contents(at("arguments")), '[' + at("tool") + "][listlocalsnapshots][/]");
    for (const std::string& odd :
         {"$(touch " + at("x") + "); `id` * 'a' \"b\" \\ \n\xFF", std::string()}) {
        EXPECT_EQ(service.deleteLocalSnapshot(odd), std::nullopt);
        EXPECT_TRUE(contents(at("arguments")).ends_with("][deletelocalsnapshots][" + odd + ']'));
    }
    EXPECT_FALSE(exists(at("x")));
}

TEST_F(SnapshotServiceTest, AToolThatCannotBeStarted)
{
    tree_.folder("folder");
    tree_.file("plain");
    tree_.file("text", 10);
    std::filesystem::permissions(at("text"), std::filesystem::perms::owner_all);
    for (const auto& [name, reason] : {std::pair("missing", "No such file or directory"),
                                       {"plain/tool", "Not a directory"},
                                       {"plain", "Permission denied"},
                                       {"folder", "Permission denied"},
                                       {"text", "Exec format error"}}) {
        const std::string text = "Could not start " + at(name) + ": " + reason + ".";
        const SnapshotService service(at(name));
        EXPECT_EQ(service.listLocalSnapshots(), (SnapshotListResult{{}, "", text}));
        EXPECT_EQ(service.deleteLocalSnapshot(token), text);
    }
}

/// Whether the process soon does not run: it may be dead but not yet reaped by whoever
/// got it.
bool dies(const std::string& process)
{
    const auto isAlive = [&] {
        const std::string status = contents("/proc/" + process + "/stat");
        const auto name = status.rfind(')');
        return name != std::string::npos && status.at(name + 2) != 'Z';
    };
    for (int i = 0; i < 500 && isAlive(); ++i)
        std::this_thread::sleep_for(10ms);
    return !isAlive();
}

TEST_F(SnapshotServiceTest, AHangingToolIsStoppedWithAllThatItStarted)
{
    const std::string stopped = at("tool") + " did not answer in time.";
    const auto begin = std::chrono::steady_clock::now();
    for (const char* body : {"trap '' TERM INT HUP; while :; do sleep 300; done",
                             "exec sleep 300 >&- 2>&-", "kill -STOP $$", "exec cat /dev/zero"}) {
        const auto service = running(body, 100ms);
        const auto result = service.listLocalSnapshots();
        EXPECT_TRUE(result.errorText == stopped && !result.hasAnswered) << body;
        EXPECT_EQ(service.deleteLocalSnapshot(token), stopped) << body;
    }

    const std::string child = "; sleep 300 & printf $! > " + at("child") + "; ";
    // What it said before is kept.
    const auto slow = running("echo " + token + "; printf slow >&2" + child + "wait", 200ms);
    EXPECT_EQ(slow.listLocalSnapshots(),
              (SnapshotListResult{{{token, token}}, token + '\n', "slow\n" + stopped, false}));
    EXPECT_TRUE(dies(contents(at("child"))));
    // One that leaves something behind has answered all the same.
    const auto leaving = running(child.substr(2) + "echo " + token, 300ms);
    EXPECT_EQ(leaving.listLocalSnapshots(),
              (SnapshotListResult{{{token, token}}, token + '\n', std::nullopt}));
    EXPECT_TRUE(dies(contents(at("child"))));
    EXPECT_EQ(leaving.deleteLocalSnapshot(token), std::nullopt);
    // What is left without the output open is not waited for.
    running("sleep 25 >&- 2>&- &").listLocalSnapshots();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(SnapshotServiceTest, OutputsOfAnySize)
{
    constexpr std::size_t most = std::size_t{16} << 20U;
    // Reading the streams in turn would stall the tool whichever came first.
    const std::string complaint = "head -c 2000000 /dev/zero | tr '\\0' e >&2; ";
    auto result =
        running(complaint + "head -c 20000000 /dev/zero; " + complaint).listLocalSnapshots();
    EXPECT_EQ(result.rawOutput.size(), most);
    EXPECT_TRUE(result.errorText == std::string(4'000'000, 'e'));

    // Even where the cut is in the middle of a character.
    result = running("printf " + token + "; yes \u00E9 | tr -d '\\n' | head -c 20000000")
                 .listLocalSnapshots();
    EXPECT_EQ(tokens(result.snapshots), Tokens{token});
}

TEST_F(SnapshotServiceTest, TheToolGetsStandardStreamsAndNothingElseOfTheProgram)
{
    tree_.write("typed", "typed\n");
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(0);
        ::open(at("typed").c_str(), O_RDONLY);
        ::dup2(0, 77); // on purpose not closed on exec
        sigset_t all;
        ::sigfillset(&all);
        ::sigprocmask(SIG_BLOCK, &all, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
        std::string printed;
        // The shell itself lets all signals through once it has started something.
        for (const char* body : {"read line; echo $line; [ -e /proc/$$/fd/77 ] && echo open;"
                                 "kill -TERM $$; echo survived",
                                 "kill -PIPE $$; echo survived"})
            printed += running(body).listLocalSnapshots().rawOutput;
        // There need not be any that the tool's could be made of.
        for (const int stream : {0, 1, 2})
            ::close(stream);
        const auto mute = running("echo " + token + "; echo error >&2").listLocalSnapshots();
        ::_exit((printed == "typed\n" ? 0 : 1) +
                (mute == SnapshotListResult{{{token, token}}, token + '\n', "error\n"} ? 0 : 2));
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

const Deadline later = std::chrono::steady_clock::now() + 1h;

template <typename Manager>
std::shared_ptr<ManagedSnapshots> managed(const std::string& tool, const std::string& mountPoint)
{
    return std::make_shared<ManagedSnapshots>(std::make_shared<Manager>(tool, mountPoint));
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

TEST(BtrfsSnapshots, AreListedAndDeletedButWhatIsInUse)
{
    const LoopVolume volume("btrfs");
    if (!volume.isMounted())
        GTEST_SKIP() << "needs a btrfs image";
    /// The shell's commands in the file system, each of which has to succeed.
    const auto run = [&](const std::string& commands) {
        EXPECT_EQ(std::system(("cd " + volume.path() + "; set -e; exec >../log 2>&1; " +
                               "snapshot='btrfs subvolume snapshot'; " + commands)
                                  .c_str()),
                  0)
            << contents(volume.at("../log"));
    };
    const SnapshotService service(volume.at("missing"),
                                  {managed<host::BtrfsSnapshots>("/usr/bin/btrfs", volume.path())});
    /// By their paths.
    std::map<std::string, std::string> shown;
    const auto list = [&] {
        const SnapshotListResult result = service.listLocalSnapshots();
        EXPECT_EQ(result.errorText, std::nullopt);
        shown.clear();
        for (const auto& [dateToken, rawLine] : result.snapshots) {
            EXPECT_NE(result.rawOutput.find(rawLine + '\n'), std::string::npos);
            shown[rawLine.substr(rawLine.find(" path /") + 7)] = dateToken;
        }
    };

    // "early" alone in its second; then more than one answer of the kernel holds.
    run("btrfs subvolume create plain; $snapshot -r plain early; sleep 1.1; mkdir -p deep/er;"
        "$snapshot plain deep/er/writable; $snapshot . plain/whole; $snapshot -r plain late;"
        "$snapshot plain \"$(printf 'x\\nID 256 otime 2001-02-03 04:05:06 path y\\377')\";"
        "$snapshot plain $(printf %0255d 1); for i in $(seq 30); do $snapshot plain $i; done;"
        "mkdir -p ../second var/lib/machines var/lib/docker/btrfs/subvolumes;"
        "$snapshot plain var/lib/machines/x; $snapshot plain var/lib/docker/btrfs/subvolumes/x;"
        "mount -o subvol=late \"$(losetup -nO NAME -j ../image)\" ../second");
    list();
    EXPECT_EQ(shown.size(), 35U);
    for (const char* path : {"early", "deep/er/writable", "plain/whole",
                             "x\uFFFDID 256 otime 2001-02-03 04:05:06 path y\uFFFD"})
        EXPECT_TRUE(shown.contains(path)) << path;
    EXPECT_TRUE(shown.contains(std::string(254, '0') + '1'));
    EXPECT_FALSE(shown.contains("late"));
    // What the file system's own tool says of the time.
    run("btrfs subvolume list -s . | sed -n 's/.*otime \\([^ ]*\\) \\([^ ]*\\) path early$/"
        "\\1-\\2/p' | tr -d : > ../early");
    EXPECT_EQ(shown["early"] + '\n', contents(volume.at("../early")));

    run("umount ../second");
    EXPECT_EQ(service.deleteLocalSnapshot(shown["plain/whole"]), std::nullopt);
    EXPECT_TRUE(exists(volume.at("plain")) && !exists(volume.at("plain/whole")));
    list();
    EXPECT_EQ(shown.size(), 35U);
    EXPECT_TRUE(shown.contains("late") && !shown.contains("plain/whole"));
    run("mount --bind late ../second");
    list();
    EXPECT_FALSE(shown.contains("late"));
}

TEST(BtrfsSnapshots, AvailableOnlyOnSuchAFileSystemWithItsTool)
{
    const auto snapshots = managed<host::BtrfsSnapshots>("/bin/sh", "/proc");
    EXPECT_FALSE(snapshots->isAvailable(later));
    EXPECT_EQ(snapshots->list(later).errorText,
              "Could not list the snapshots of /proc: Inappropriate ioctl for device.");
}

} // namespace
