// measure [--keys KEYS] COMMAND [ARGUMENT…]
//
// Runs a command to its end with its output thrown away and prints
// `ms=… peak_rss_kb=…`: the wall time and the most memory of the whole process.
// With --keys the command gets a terminal of its own, on which KEYS have already
// been typed: so a program that ends with a full-screen list can be told to quit.

#include "Report.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void become(char** command)
{
    ::execvp(command[0], command);
    std::perror(command[0]);
    ::_exit(127);
}

pid_t startSilently(char** command)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_RDWR);
        ::dup2(nowhere, STDIN_FILENO);
        ::dup2(nowhere, STDOUT_FILENO);
        become(command);
    }
    return child;
}

/// Returns when the command has closed its terminal.
pid_t runOnTerminal(char** command, const char* keys)
{
    winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        ::setenv("TERM", "xterm", 1);
        become(command);
    }
    if (child > 0) {
        const std::size_t length = std::strlen(keys);
        if (::write(terminal, keys, length) != static_cast<ssize_t>(length))
            std::perror("measure");
        std::array<char, 4096> output;
        while (::read(terminal, output.data(), output.size()) > 0) {
        }
        ::close(terminal);
    }
    return child;
}

} // namespace

int main(int argc, char** argv)
{
    const bool hasKeys = argc > 3 && std::strcmp(argv[1], "--keys") == 0;
    if (argc < 2) {
        std::fprintf(stderr, "usage: measure [--keys KEYS] COMMAND [ARGUMENT...]\n");
        return 2;
    }
    const bench::Stopwatch watch;
    const pid_t child = hasKeys ? runOnTerminal(argv + 3, argv[2]) : startSilently(argv + 1);
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child) {
        std::perror("measure");
        return 1;
    }
    const double milliseconds = watch.milliseconds();
    if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) {
        std::fprintf(stderr, "measure: the command failed\n");
        return 1;
    }
    std::printf("ms=%.1f peak_rss_kb=%ld\n", milliseconds, usage.ru_maxrss);
}
