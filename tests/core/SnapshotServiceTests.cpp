#include "BrisalonCore/SnapshotService.h"

#include "Snapshots.h"
#include "support/Script.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brisalon;
using namespace brisalon::tests;
using namespace std::chrono_literals;

namespace {

const std::string token = "2024-01-15-123456";

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
    const std::string fallback = "Could not delete snapshot " + token + ".";
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
        {echo + R"(; printf '\303\050'; exit 1)", {}, fallback},
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

} // namespace
