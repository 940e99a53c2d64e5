#include "Brisalon/Platform/linux/DesktopTerminal.h"

#include "Brisalon/Platform/linux/ReachedFolder.h"

#include <QByteArray>
#include <QFile>
#include <QStandardPaths>
#include <QString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <thread>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisalon {

namespace {

/// What starts a terminal, by name or path, the desktop's own choice first. None needs an
/// argument to open in its working directory.
std::vector<QString> terminals()
{
    return {
        "xdg-terminal-exec",                    // the desktops' common way to the user's choice
        "x-terminal-emulator",                  // Debian's choice for the whole system
        QFile::decodeName(qgetenv("TERMINAL")), // what users of other desktops set
        // Those that desktops bring along.
        "gnome-terminal",
        "kgx",
        "konsole",
        "xfce4-terminal",
        "mate-terminal",
        "lxterminal",
        "foot",
        "xterm",
    };
}

/// Nothing when the program cannot be started.
std::optional<pid_t> start(const QByteArray& program, const Descriptor& folder)
{
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    // In a session of its own, so that what ends this program leaves the terminal alone.
    ::posix_spawnattr_setflags(&attributes,
                               POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t child = -1;
    int error = ::posix_spawn_file_actions_addfchdir_np(&actions, folder.get());
    if (error == 0)
        error = ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    if (error == 0) {
        QByteArray name = program;
        const std::array<char*, 2> arguments{name.data(), nullptr};
        error = ::posix_spawn(&child, program.constData(), &actions, &attributes, arguments.data(),
                              environ);
    }
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return error == 0 ? std::optional(child) : std::nullopt;
}

/// How the child has ended; nothing while it runs, or when the program discards its
/// children's statuses.
std::optional<int> status(pid_t child, int options)
{
    int status = 0;
    pid_t ended;
    do
        ended = ::waitpid(child, &status, options);
    while (ended < 0 && errno == EINTR);
    return ended == child ? std::optional(status) : std::nullopt;
}

/// Whether it did not fail. A terminal may also hand over to one that runs, and end.
bool stays(pid_t child, std::chrono::milliseconds patience, const std::stop_token& stop)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end && !stop.stop_requested()) {
        if (const auto ended = status(child, WNOHANG))
            return *ended == 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    // Else it would stay in the system's table of processes when it has ended.
    std::thread([child] { status(child, 0); }).detach();
    return true;
}

} // namespace

bool startTerminal(const FileURL& folder, std::chrono::milliseconds patience,
                   const std::stop_token& stop)
{
    const auto place = ReachedFolder::at(folder.path());
    if (!place)
        return false;
    const std::vector<QString> names = terminals();
    return std::ranges::any_of(names, [&](const QString& name) {
        // Found here, since a search after the change of folder would look into that too.
        const QString program = QStandardPaths::findExecutable(name);
        if (program.isEmpty() || stop.stop_requested())
            return false;
        const auto child = start(QFile::encodeName(program), place->folder);
        return child && stays(*child, patience, stop);
    });
}

} // namespace brisalon
