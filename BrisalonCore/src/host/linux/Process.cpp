#include "host/Process.h"

#include "BrisalonCore/Descriptor.h"
#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <new>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisalon::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t keptBytes = std::size_t{16} << 20U;

/// One of the tool's output streams.
struct Stream {
    Descriptor ours;
    Descriptor theirs;
    std::string bytes;
    bool isCut = false;

    /// An error number, or 0.
    int open()
    {
        std::array<int, 2> ends;
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            return errno;
        ours = Descriptor(ends[0]);
        theirs = Descriptor(ends[1]);
        // In an application without standard streams the pipe may have got their
        // numbers, which are about to be replaced in the child.
        if (theirs.get() <= STDERR_FILENO) {
            theirs = theirs.duplicate(STDERR_FILENO + 1);
            if (!theirs.isValid())
                return errno;
        }
        return 0;
    }

    void readSome()
    {
        std::array<char, 65536> buffer;
        const ssize_t count = ::read(ours.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            return;
        if (count <= 0) {
            ours.close();
            return;
        }
        const std::size_t kept =
            std::min(static_cast<std::size_t>(count), keptBytes - bytes.size());
        bytes.append(buffer.data(), kept);
        isCut = isCut || kept < static_cast<std::size_t>(count);
    }

    std::string text()
    {
        // The cut may have left up to three bytes of a character.
        for (int dropped = 0; isCut && dropped < 3 && !detail::isUtf8(bytes); ++dropped)
            bytes.pop_back();
        return detail::isUtf8(bytes) ? std::move(bytes) : std::string();
    }
};

using Streams = std::array<Stream, 2>;

void require(int error)
{
    if (error != 0)
        throw std::bad_alloc(); // the only way in which they fail
}

/// How the child differs from this process when it starts.
class SpawnSettings {
public:
    SpawnSettings(int standardOutput, int standardError)
    {
        require(::posix_spawn_file_actions_init(&actions_));
        require(::posix_spawnattr_init(&attributes_));
        require(::posix_spawn_file_actions_adddup2(&actions_, standardOutput, STDOUT_FILENO));
        require(::posix_spawn_file_actions_adddup2(&actions_, standardError, STDERR_FILENO));
        require(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));

        sigset_t blocked;
        sigset_t reset;
        ::sigemptyset(&blocked);
        ::sigfillset(&reset);
        require(::posix_spawnattr_setsigmask(&attributes_, &blocked));
        require(::posix_spawnattr_setsigdefault(&attributes_, &reset));
        require(::posix_spawnattr_setpgroup(&attributes_, 0));
        require(::posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

/// An error number, or 0 with the child running. posix_spawn rather than fork: it
/// runs none of this process's code in the child, whatever the other threads hold
/// locked, and tells of a failing exec.
int start(const std::string& tool, const std::vector<std::string>& arguments, Streams& streams,
          pid_t& child)
{
    for (Stream& stream : streams)
        if (const int error = stream.open())
            return error;

    std::vector<char*> texts;
    const auto append = [&texts](const std::string& text) {
        texts.push_back(const_cast<char*>(text.c_str())); // which exec does not change
    };
    append(tool);
    std::ranges::for_each(arguments, append);
    texts.push_back(nullptr);

    const SpawnSettings settings(streams[0].theirs.get(), streams[1].theirs.get());
    const int error = ::posix_spawn(&child, tool.c_str(), settings.actions(), settings.attributes(),
                                    texts.data(), environ);
    // Open in the child alone, so that the streams end with it.
    for (Stream& stream : streams)
        stream.theirs.close();
    return error;
}

int millisecondsUntil(Deadline deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
}

/// Reads both streams side by side, so that neither can stall the tool, until both
/// have ended.
void drain(Streams& streams, Deadline deadline)
{
    while (
        std::ranges::any_of(streams, [](const Stream& stream) { return stream.ours.isValid(); })) {
        const int left = millisecondsUntil(deadline);
        std::array<pollfd, 2> waits;
        for (std::size_t i = 0; i < streams.size(); ++i)
            waits[i] = {.fd = streams[i].ours.get(), .events = POLLIN, .revents = 0};
        if (left == 0 || (::poll(waits.data(), waits.size(), left) < 0 && errno != EINTR))
            return;
        for (std::size_t i = 0; i < streams.size(); ++i)
            if (waits[i].revents != 0)
                streams[i].readSome();
    }
}

/// Whether the child has exited by then. It is not reaped: its number, and so that of
/// its group, stays its own.
bool exitsUntil(pid_t child, Deadline deadline)
{
    for (;;) {
        siginfo_t info{};
        const int result =
            ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
        // An application that discards its children's statuses leaves none to see.
        if (info.si_pid == child || (result != 0 && errno == ECHILD))
            return true;
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::int32_t reap(pid_t child)
{
    int status = 0;
    pid_t reaped;
    do
        reaped = ::waitpid(child, &status, 0);
    while (reaped < 0 && errno == EINTR);
    if (reaped != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

} // namespace

ProcessResult runProcess(const std::string& tool, const std::vector<std::string>& arguments,
                         Deadline deadline)
{
    const std::string noAnswer = tool + " did not answer in time.";
    ProcessResult result;
    if (Clock::now() >= deadline) {
        result.standardError = noAnswer;
        result.hasAnswered = false;
        return result;
    }
    Streams streams;
    pid_t child = -1;
    if (const int error = start(tool, arguments, streams, child)) {
        result.error = "Could not start " + tool + ": " +
                       std::error_code(error, std::generic_category()).message() + ".";
        return result;
    }

    drain(streams, deadline);
    result.hasAnswered = exitsUntil(child, deadline);
    const bool hasEnded =
        std::ranges::none_of(streams, [](const Stream& stream) { return stream.ours.isValid(); });
    if (!result.hasAnswered || !hasEnded)
        ::kill(-child, SIGKILL);
    if (result.hasAnswered || exitsUntil(child, Clock::now() + dyingTime))
        result.exitCode = reap(child);
    else
        std::thread(reap, child).detach();

    result.standardOutput = streams[0].text();
    result.standardError = streams[1].text();
    if (!result.hasAnswered) {
        if (!result.standardError.empty() && !result.standardError.ends_with('\n'))
            result.standardError += '\n';
        result.standardError += noAnswer;
    }
    return result;
}

} // namespace brisalon::host
