#include "support/TemporaryTree.h"

#include "support/Files.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>
#include <vector>

#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisalon::tests {

namespace {

void require(bool condition, const char* what)
{
    if (condition)
        return;
    std::perror(what);
    std::abort();
}

} // namespace

TemporaryTree::TemporaryTree(Storage storage)
{
    std::string pattern =
        (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "brisalon-XXXXXX");
    require(::mkdtemp(pattern.data()) != nullptr, "mkdtemp");
    path_ = pattern;
    // The mount is seen by this process alone, so it cannot outlive it.
    if (storage == Storage::memory && ::unshare(CLONE_NEWNS) == 0 &&
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0)
        isMounted_ = ::mount("tmpfs", path_.c_str(), "tmpfs", 0, nullptr) == 0;
}

TemporaryTree::~TemporaryTree()
{
    if (isMounted_)
        ::umount2(path_.c_str(), MNT_DETACH);
    remove("");
}

std::string TemporaryTree::at(std::string_view relative) const
{
    return relative.empty() ? path_ : path_ + '/' + std::string(relative);
}

void TemporaryTree::folder(std::string_view relative) const
{
    std::filesystem::create_directories(at(relative));
}

void TemporaryTree::file(std::string_view relative, std::int64_t bytes) const
{
    const std::string path = at(relative);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    const int handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(handle >= 0, "open");
    require(bytes == 0 || ::posix_fallocate(handle, 0, bytes) == 0, "posix_fallocate");
    ::close(handle);
}

void TemporaryTree::write(std::string_view relative, const std::string& text) const
{
    file(relative);
    writeText(at(relative), text);
}

void TemporaryTree::link(std::string_view relative, const std::string& target) const
{
    const std::string path = at(relative);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    require(::symlink(target.c_str(), path.c_str()) == 0, "symlink");
}

std::string TemporaryTree::chain(std::string_view top, const std::string& name, int levels,
                                 int siblingEvery) const
{
    std::string path = at(top);
    std::filesystem::create_directories(path);
    int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY);
    require(folder >= 0, "open");
    for (int level = 0; level < levels; ++level) {
        require(::mkdirat(folder, name.c_str(), 0700) == 0, "mkdirat");
        // Memory lists what was made last first, so the sibling waits until a walk returns.
        if (siblingEvery > 0 && level % siblingEvery == 0)
            require(::mkdirat(folder, "sibling", 0700) == 0, "mkdirat");
        const int next = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
        require(next >= 0, "openat");
        ::close(folder);
        folder = next;
        path.append("/").append(name);
    }
    ::close(folder);
    return path;
}

void TemporaryTree::fillAtRandom(unsigned seed, int items, const std::string& top) const
{
    std::mt19937 random(seed);
    const auto upTo = [&](unsigned most) { return random() % (most + 1); };
    std::vector<std::string> folders{top};
    const std::string stems[]{
        "a",       "Library", "Caches", "node_modules",        "\xFF\xFE",    "new\nline",
        " space ", "x.app",   ".cache", std::string(240, 'n'), "\u212Aelvin", "Z.PhotosLibrary"};
    for (int i = 0; i < items; ++i) {
        const std::string path = folders[upTo(static_cast<unsigned>(folders.size()) - 1)] + '/' +
                                 stems[upTo(std::size(stems) - 1)] + std::to_string(seed) + "." +
                                 std::to_string(i) + (upTo(9) == 0 ? ".bundle" : "");
        if (const auto choice = upTo(9); choice == 3)
            link(path, upTo(1) ? path_ : "nowhere");
        else if (choice == 4)
            require(::mkfifo(at(path).c_str(), 0600) == 0, "mkfifo");
        else if (choice > 4)
            file(path, static_cast<std::int64_t>(upTo(3) ? upTo(3) : upTo(600)) * 1024);
        else if (path.size() < 2000)
            folder(folders.emplace_back(path));
    }
}

void TemporaryTree::remove(std::string_view relative) const
{
    std::string path = at(relative);
    std::string words[] = {
        "/bin/sh", "-c",
        "PATH=/bin; rm -rf -- \"$1\" || { chmod -R u+rwx -- \"$1\"; rm -rf -- \"$1\"; }", "sh"};
    char* const command[] = {words[0].data(), words[1].data(), words[2].data(),
                             words[3].data(), path.data(),     nullptr};
    pid_t child = 0;
    int status = -1;
    require(::posix_spawn(&child, command[0], nullptr, nullptr, command, environ) == 0 &&
                ::waitpid(child, &status, 0) == child && status == 0,
            "rm");
}

} // namespace brisalon::tests
