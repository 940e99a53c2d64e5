#include "BrisalonCore/SnapshotService.h"

#include "support/Script.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brisalon;
using namespace std::chrono_literals;
using tests::contents;

namespace {

const std::string token = "2024-01-15-123456";
const std::string otherToken = "2023-12-31-000000";

class SnapshotServiceTest : public testing::Test {
protected:
    /// A service whose tool is that shell script.
    SnapshotService running(std::string_view body, std::chrono::milliseconds listing = 30s,
                            std::chrono::milliseconds deletion = 30s)
    {
        return {tests::script(tree_, "tool", body), {}, {listing, deletion}};
    }
    std::string at(std::string_view name) const { return tree_.at(name); }

    const tests::TemporaryTree tree_;
};

using Tokens = std::vector<std::string>;

Tokens tokens(const SnapshotListResult& result)
{
    Tokens found;
    for (const LocalSnapshot& snapshot : result.snapshots)
        found.push_back(snapshot.dateToken);
    return found;
}

TEST_F(SnapshotServiceTest, ListsWhatTheToolPrints)
{
    const auto result = running("printf '[%s]' \"$0\" \"$@\" > " + at("arguments") +
                                "\necho Heading; echo ' a." + token + "'; echo " + otherToken)
                            .listLocalSnapshots();
    EXPECT_EQ(result, (SnapshotListResult{{{token, "a." + token}, {otherToken, otherToken}},
                                          "Heading\n a." + token + '\n' + otherToken + '\n',
                                          std::nullopt}));
    EXPECT_EQ(contents(at("arguments")), '[' + at("tool") + "][listlocalsnapshots][/]");
}

TEST_F(SnapshotServiceTest, AListingThatFailsStillYieldsItsSnapshots)
{
    auto result =
        running("echo " + token + "; echo ' no rights ' >&2; exit 3").listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
    EXPECT_EQ(result.errorText, " no rights \n");

    result = running("echo " + token + "; exit 3").listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
    EXPECT_EQ(result.errorText, std::nullopt);

    EXPECT_EQ(running("kill -KILL $$").listLocalSnapshots(), SnapshotListResult());
    EXPECT_EQ(running("exit 0").listLocalSnapshots(), SnapshotListResult());
}

TEST_F(SnapshotServiceTest, DeletionOutcomes)
{
    const std::string fallback = "Could not delete snapshot " + token + ".";
    const std::pair<const char*, std::optional<std::string>> outcomes[] = {
        {"echo noise; echo more >&2; exit 0", std::nullopt},
        {"exit 1", fallback},
        {"printf X; exit 1", "X"},
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
    const auto service = running("printf '[%s]' \"$@\" > " + at("arguments"));
    for (const std::string& odd :
         {std::string(token), std::string("$(touch " + at("x") + "); `id` * 'a' \"b\" \\ \n\xFF"),
          std::string()}) {
        EXPECT_EQ(service.deleteLocalSnapshot(odd), std::nullopt);
        EXPECT_EQ(contents(at("arguments")), "[deletelocalsnapshots][" + odd + ']');
    }
    EXPECT_FALSE(std::filesystem::exists(at("x")));
}

TEST_F(SnapshotServiceTest, LargeOutputsOnBothStreams)
{
    // First one stream whole, then the other: reading them in turn would stall the
    // tool whichever came first.
    const auto fill = [](const std::string& character, const std::string& stream) {
        return "head -c 3000000 /dev/zero | tr '\\0' " + character + stream + "\n";
    };
    for (const auto& body :
         {fill("e", " >&2") + fill("o", ""), fill("o", "") + fill("e", " >&2")}) {
        const auto result = running(body + "echo; echo " + token).listLocalSnapshots();
        EXPECT_EQ(tokens(result), Tokens{token});
        EXPECT_TRUE(result.rawOutput == std::string(3000000, 'o') + '\n' + token + '\n');
        EXPECT_TRUE(result.errorText == std::string(3000000, 'e'));
    }
}

TEST_F(SnapshotServiceTest, OutputThatIsNotUtf8CountsAsNone)
{
    auto result =
        running("echo " + token + R"(; printf '\303\050'; echo bad >&2)").listLocalSnapshots();
    EXPECT_EQ(result, (SnapshotListResult{{}, "", "bad\n"}));
    result = running("echo " + token + R"(; printf '\303' >&2)").listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
    EXPECT_EQ(result.errorText, std::nullopt);
}

TEST_F(SnapshotServiceTest, AToolThatCannotBeStarted)
{
    tests::script(tree_, "plain", "exit 0");
    std::filesystem::permissions(at("plain"), std::filesystem::perms::owner_read);
    tree_.folder("folder");
    tree_.link("dangling", "nowhere");
    tree_.file("text", 10);
    std::filesystem::permissions(at("text"), std::filesystem::perms::owner_all);
    const std::pair<const char*, const char*> tools[] = {
        {"missing", "No such file or directory"}, {"dangling", "No such file or directory"},
        {"plain/tool", "Not a directory"},        {"plain", "Permission denied"},
        {"folder", "Permission denied"},          {"text", "Exec format error"},
    };
    for (const auto& [name, reason] : tools) {
        const std::string text = "Could not start " + at(name) + ": " + reason + ".";
        const SnapshotService service(at(name));
        EXPECT_EQ(service.listLocalSnapshots(), (SnapshotListResult{{}, "", text}));
        EXPECT_EQ(service.deleteLocalSnapshot(token), text);
    }
}

/// Whether the process runs: it may be dead but not yet reaped by whoever got it.
bool isAlive(const std::string& process)
{
    const std::string status = contents("/proc/" + process + "/stat");
    const auto name = status.rfind(')');
    return name != std::string::npos && status.at(name + 2) != 'Z';
}

bool dies(const std::string& process)
{
    for (int i = 0; i < 500 && isAlive(process); ++i)
        std::this_thread::sleep_for(10ms);
    return !isAlive(process);
}

TEST_F(SnapshotServiceTest, AHangingToolIsStoppedWithAllThatItStarted)
{
    const std::string stopped = at("tool") + " did not answer in time.";
    const std::string note = "echo $$ > " + at("pid") + "; ";
    const auto begin = std::chrono::steady_clock::now();
    for (const char* body : {
             "trap '' TERM INT HUP; while :; do sleep 300; done",
             "exec sleep 300 >&- 2>&-",
             "kill -STOP $$",
             "while :; do :; done",
         }) {
        const auto service = running(note + body, 100ms, 100ms);
        EXPECT_EQ(service.listLocalSnapshots(), (SnapshotListResult{{}, "", stopped, false}))
            << body;
        EXPECT_FALSE(isAlive(contents(at("pid")).substr(0, contents(at("pid")).find('\n'))));
        EXPECT_EQ(service.deleteLocalSnapshot(token), stopped) << body;
    }

    // What it said before is kept.
    const auto result =
        running("echo " + token + "; printf slow >&2; sleep 300", 200ms).listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
    EXPECT_EQ(result.errorText, "slow\n" + stopped);

    running("sleep 300 & printf $! > " + at("child") + "; wait", 200ms).listLocalSnapshots();
    EXPECT_TRUE(dies(contents(at("child"))));

    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
}

TEST_F(SnapshotServiceTest, WhatAToolLeavesBehindDoesNotSpoilItsResult)
{
    const auto service =
        running("sleep 300 & printf $! > " + at("child") + "; echo " + token, 300ms, 300ms);
    const auto result = service.listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
    EXPECT_EQ(result.errorText, std::nullopt);
    EXPECT_TRUE(dies(contents(at("child"))));
    EXPECT_EQ(service.deleteLocalSnapshot(token), std::nullopt);

    // Without the output open it is not waited for.
    const auto begin = std::chrono::steady_clock::now();
    running("sleep 5 >&- 2>&- &").listLocalSnapshots();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 4s);
}

TEST_F(SnapshotServiceTest, EndlessOutputIsCutOff)
{
    auto result = running("exec cat /dev/zero", 300ms).listLocalSnapshots();
    EXPECT_LE(result.rawOutput.size(), std::size_t{16} << 20U);
    EXPECT_EQ(result.errorText, at("tool") + " did not answer in time.");

    result = running("head -c 20000000 /dev/zero; echo end >&2").listLocalSnapshots();
    EXPECT_EQ(result.rawOutput.size(), std::size_t{16} << 20U);
    EXPECT_EQ(result.errorText, "end\n");

    // Even where the cut is in the middle of a character.
    result = running("printf " + token + "; yes \u00E9 | tr -d '\\n' | head -c 20000000")
                 .listLocalSnapshots();
    EXPECT_EQ(tokens(result), Tokens{token});
}

int openDescriptors()
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

TEST_F(SnapshotServiceTest, LeavesNeitherDescriptorsNorProcessesBehind)
{
    const int before = openDescriptors();
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
    std::ofstream(at("typed")) << "typed";
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
        const auto result = service.listLocalSnapshots();
        ::_exit(tokens(result) == Tokens{token} && result.errorText == "error\n" ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(SnapshotServiceTest, ManyThreadsAtOnce)
{
    const auto service = running("echo \"$2\"; exit 1");
    std::vector<std::thread> threads;
    std::vector<std::string> wrong(8);
    for (std::size_t thread = 0; thread < wrong.size(); ++thread)
        threads.emplace_back([&service, &text = wrong[thread], thread] {
            for (int i = 0; i < 20; ++i) {
                const std::string name = std::to_string(thread) + '.' + std::to_string(i);
                const auto result = service.deleteLocalSnapshot(name);
                if (result != name + '\n')
                    text += name + ": " + result.value_or("none") + '\n';
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& text : wrong)
        EXPECT_EQ(text, "");
}

/// Stands for whatever manages snapshots on the machine.
class FixedProvider : public SnapshotProvider {
public:
    explicit FixedProvider(bool isThere, std::string dateToken = {})
        : isThere_(isThere), token_(std::move(dateToken))
    {
    }
    bool isAvailable(Deadline /*deadline*/) const override { return isThere_; }
    SnapshotListResult list(Deadline /*deadline*/) const override
    {
        return {{{token_, "line"}}, "raw", "grumble"};
    }
    std::optional<std::string> remove(std::string_view dateToken,
                                      Deadline /*deadline*/) const override
    {
        return "removing " + std::string(dateToken);
    }

private:
    bool isThere_;
    std::string token_;
};

TEST_F(SnapshotServiceTest, AProviderStandsInForAnAbsentToolOnly)
{
    const auto absent = std::make_shared<FixedProvider>(false);
    const auto first = std::make_shared<FixedProvider>(true, token);
    const auto second = std::make_shared<FixedProvider>(true, otherToken);
    const SnapshotService without(at("missing"), {absent});
    EXPECT_EQ(without.listLocalSnapshots().errorText,
              "Could not start " + at("missing") + ": No such file or directory.");

    const SnapshotService with(at("missing"), {absent, first, second});
    EXPECT_EQ(with.listLocalSnapshots(), (SnapshotListResult{{{token, "line"}}, "raw", "grumble"}));
    EXPECT_EQ(with.deleteLocalSnapshot(token), "removing " + std::string(token));

    tree_.file("plain");
    const SnapshotService broken(at("plain"), {first});
    EXPECT_EQ(broken.listLocalSnapshots().errorText,
              "Could not start " + at("plain") + ": Permission denied.");
    EXPECT_EQ(broken.deleteLocalSnapshot(token),
              "Could not start " + at("plain") + ": Permission denied.");
}

} // namespace
