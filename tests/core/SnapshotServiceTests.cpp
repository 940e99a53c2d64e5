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
const std::string otherToken = "2023-12-31-000000";

class SnapshotServiceTest : public testing::Test {
protected:
    /// A service whose tool is that shell script.
    SnapshotService running(std::string_view body, std::chrono::milliseconds limit = 30s)
    {
        return {script(tree_, "tool", body), {}, {limit, limit}};
    }
    std::string at(std::string_view name) const { return tree_.at(name); }

    const TemporaryTree tree_;
};

TEST_F(SnapshotServiceTest, ListsWhatTheToolPrintsWhateverItEndsWith)
{
    const std::vector<LocalSnapshot> one{{token, token}};
    const std::string echo = "echo " + token;
    const std::pair<std::string, SnapshotListResult> rows[] = {
        {"echo Heading; echo ' a." + token + "'; echo " + otherToken,
         {{{token, "a." + token}, {otherToken, otherToken}},
          "Heading\n a." + token + '\n' + otherToken + '\n',
          std::nullopt}},
        {echo + "; echo ' no rights ' >&2; exit 3", {one, token + '\n', " no rights \n"}},
        {echo + "; exit 3", {one, token + '\n', std::nullopt}},
        {"kill -KILL $$", {}},
        {"exit 0", {}},
        // What is not UTF-8 counts as nothing.
        {echo + R"(; printf '\303\050'; echo bad >&2)", {{}, "", "bad\n"}},
        {echo + R"(; printf '\303' >&2)", {one, token + '\n', std::nullopt}},
    };
    for (const auto& [body, expected] : rows)
        EXPECT_EQ(running(body).listLocalSnapshots(), expected) << body;
}

TEST_F(SnapshotServiceTest, DeletionOutcomes)
{
    const std::string fallback = "Could not delete snapshot " + token + ".";
    const std::pair<const char*, std::optional<std::string>> outcomes[] = {
        {"echo noise; echo more >&2; exit 0", std::nullopt},
        {"exit 1", fallback},
        {"echo ' X '; exit 1", " X \n"},
        {"echo X; echo Y >&2; exit 255", "Y\n"},
        {"kill -TERM $$", fallback},
        {"echo cut short; kill -SEGV $$", "cut short\n"},
        {R"(printf '\377'; exit 1)", fallback},
        {R"(printf '\377' >&2; printf X; exit 1)", "X"},
    };
    for (const auto& [body, text] : outcomes)
        EXPECT_EQ(running(body).deleteLocalSnapshot(token), text) << body;
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
    tree_.file("plain");
    tree_.folder("folder");
    tree_.link("dangling", "nowhere");
    tree_.file("text", 10);
    std::filesystem::permissions(at("text"), std::filesystem::perms::owner_all);
    for (const auto& [name, reason] : {std::pair("dangling", "No such file or directory"),
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
    for (const char* body : {
             "trap '' TERM INT HUP; while :; do sleep 300; done",
             "exec sleep 300 >&- 2>&-",
             "kill -STOP $$",
             "while :; do :; done",
             "sleep 300 & wait",
         }) {
        const auto service = running("printf $$ > " + at("pid") + "; " + body, 100ms);
        EXPECT_EQ(service.listLocalSnapshots(), (SnapshotListResult{{}, "", stopped, false}))
            << body;
        EXPECT_EQ(::kill(std::stoi(contents(at("pid"))), 0), -1) << body;
        EXPECT_EQ(service.deleteLocalSnapshot(token), stopped) << body;
    }

    // What it said before is kept.
    const auto result = running("echo " + token + "; printf slow >&2; sleep 300 & printf $! > " +
                                    at("child") + "; wait",
                                200ms)
                            .listLocalSnapshots();
    EXPECT_EQ(tokens(result.snapshots), Tokens{token});
    EXPECT_EQ(result.errorText, "slow\n" + stopped);
    EXPECT_TRUE(dies(contents(at("child"))));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(SnapshotServiceTest, WhatAToolLeavesBehindDoesNotSpoilItsResult)
{
    const auto service =
        running("sleep 300 & printf $! > " + at("child") + "; echo " + token, 300ms);
    EXPECT_EQ(service.listLocalSnapshots(),
              (SnapshotListResult{{{token, token}}, token + '\n', std::nullopt}));
    EXPECT_TRUE(dies(contents(at("child"))));
    EXPECT_EQ(service.deleteLocalSnapshot(token), std::nullopt);

    // Without the output open it is not waited for.
    const auto begin = std::chrono::steady_clock::now();
    running("sleep 5 >&- 2>&- &").listLocalSnapshots();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}

TEST_F(SnapshotServiceTest, OutputsOfAnySize)
{
    constexpr std::size_t most = std::size_t{16} << 20U;
    auto result = running("exec cat /dev/zero", 300ms).listLocalSnapshots();
    EXPECT_LE(result.rawOutput.size(), most);
    EXPECT_EQ(result.errorText, at("tool") + " did not answer in time.");

    // Reading the streams in turn would stall the tool whichever came first.
    const std::string complaint = "head -c 2000000 /dev/zero | tr '\\0' e >&2; ";
    result = running(complaint + "head -c 20000000 /dev/zero; " + complaint).listLocalSnapshots();
    EXPECT_EQ(result.rawOutput.size(), most);
    EXPECT_TRUE(result.errorText == std::string(4'000'000, 'e'));

    // Even where the cut is in the middle of a character.
    result = running("printf " + token + "; yes \u00E9 | tr -d '\\n' | head -c 20000000")
                 .listLocalSnapshots();
    EXPECT_EQ(tokens(result.snapshots), Tokens{token});
}

TEST_F(SnapshotServiceTest, LeavesNeitherDescriptorsNorProcessesBehind)
{
    const auto before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        running("echo a; echo b >&2").listLocalSnapshots();
        SnapshotService(at("missing")).listLocalSnapshots();
    }
    running("sleep 300", 50ms).listLocalSnapshots();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(SnapshotServiceTest, TheToolGetsStandardInputButNoOtherDescriptor)
{
    tree_.write("typed", "typed");
    const int standardInput = ::dup(0);
    const int typed = ::open(at("typed").c_str(), O_RDONLY);
    ::dup2(typed, 0);
    ::dup2(typed, 77); // on purpose not closed on exec
    ::close(typed);
    const auto result = running("cat; ls /proc/$$/fd/77 2> /dev/null").listLocalSnapshots();
    ::close(77);
    ::dup2(standardInput, 0);
    ::close(standardInput);
    EXPECT_EQ(result.rawOutput, "typed");
}

TEST_F(SnapshotServiceTest, SignalsHaveTheirUsualEffectOnTheTool)
{
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
    for (const char* body : {"kill -TERM $$; echo survived", "kill -PIPE $$; echo survived"})
        EXPECT_EQ(running(body).listLocalSnapshots().rawOutput, "") << body;
    std::signal(SIGPIPE, pipeHandler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(SnapshotServiceTest, WorksWithoutStandardStreams)
{
    // In a process of its own, which has nothing to print on.
    const auto service = running("echo " + token + "; echo error >&2");
    const pid_t child = ::fork();
    if (child == 0) {
        for (const int stream : {0, 1, 2})
            ::close(stream);
        ::_exit(service.listLocalSnapshots() ==
                        SnapshotListResult{{{token, token}}, token + '\n', "error\n"}
                    ? 0
                    : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

/// Stands for whatever manages snapshots on the machine, if anything does.
struct FixedProvider : SnapshotProvider {
    explicit FixedProvider(std::string given) : token(std::move(given)) {}
    bool isAvailable(Deadline /*deadline*/) const override { return !token.empty(); }
    SnapshotListResult list(Deadline /*deadline*/) const override
    {
        return {{{token, "line"}}, "raw", "grumble"};
    }
    std::optional<std::string> remove(std::string_view dateToken,
                                      Deadline /*deadline*/) const override
    {
        return "removing " + std::string(dateToken);
    }
    std::string token;
};

TEST_F(SnapshotServiceTest, AProviderStandsInForAnAbsentToolOnly)
{
    const auto provider = [](const std::string& given) {
        return std::make_shared<FixedProvider>(given);
    };
    const SnapshotService without(at("missing"), {provider("")});
    EXPECT_EQ(without.listLocalSnapshots().errorText,
              "Could not start " + at("missing") + ": No such file or directory.");

    const SnapshotService with(at("missing"),
                               {provider(""), provider(token), provider(otherToken)});
    EXPECT_EQ(with.listLocalSnapshots(), (SnapshotListResult{{{token, "line"}}, "raw", "grumble"}));
    EXPECT_EQ(with.deleteLocalSnapshot(token), "removing " + token);

    tree_.file("plain");
    const SnapshotService broken(at("plain"), {provider(token)});
    const std::string refusal = "Could not start " + at("plain") + ": Permission denied.";
    EXPECT_EQ(broken.listLocalSnapshots().errorText, refusal);
    EXPECT_EQ(broken.deleteLocalSnapshot(token), refusal);
}

} // namespace
