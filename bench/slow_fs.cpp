// slow_fs MOUNT_POINT ITEMS MICROSECONDS
//
// A file system that takes that long for every request, as a server far away does: it
// answers as many at once as it is asked. It holds ITEMS made-up items, every hundredth
// of them a folder with 99 files of 4 KB each; of the folders each holds up to ten
// others. What it has answered may be remembered for a second.
//
// Runs until it is unmounted (`umount MOUNT_POINT`).

#define FUSE_USE_VERSION 312
#include <fuse_lowlevel.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>

namespace {

constexpr fuse_ino_t groupSize = 100; ///< a folder and its files
constexpr fuse_ino_t foldersInFolder = 10;
constexpr double memory = 1; ///< seconds

fuse_ino_t lastItem = 0;
std::chrono::microseconds delay{};

// Items are numbered from 1, the top, on. Every hundredth, the top being the first, is
// a folder; its files are the 99 that follow.
bool isFolder(fuse_ino_t item)
{
    return item % groupSize == 1;
}

fuse_ino_t folderOfRank(fuse_ino_t rank)
{
    return rank * groupSize + 1;
}

/// The item of that place in the folder, folders first; 0 beyond the last.
fuse_ino_t itemIn(fuse_ino_t folder, fuse_ino_t place)
{
    const fuse_ino_t rank = folder / groupSize;
    const fuse_ino_t item = place < foldersInFolder
                                ? folderOfRank(rank * foldersInFolder + 1 + place)
                                : folder + 1 + (place - foldersInFolder);
    return item <= lastItem && place < foldersInFolder + groupSize - 1 ? item : 0;
}

struct stat statusOf(fuse_ino_t item)
{
    struct stat status{};
    status.st_ino = item;
    status.st_mode = isFolder(item) ? S_IFDIR | 0755 : S_IFREG | 0644;
    status.st_nlink = 1;
    status.st_size = 4096;
    status.st_blocks = isFolder(item) ? 0 : 8;
    return status;
}

void wait()
{
    std::this_thread::sleep_for(delay);
}

void lookUp(fuse_req_t request, fuse_ino_t, const char* name)
{
    wait();
    // A name is the item's number.
    const fuse_ino_t item = std::strtoull(name, nullptr, 10);
    if (item <= 1 || item > lastItem) {
        fuse_reply_err(request, ENOENT);
        return;
    }
    fuse_entry_param entry{};
    entry.ino = item;
    entry.attr = statusOf(item);
    entry.attr_timeout = memory;
    entry.entry_timeout = memory;
    fuse_reply_entry(request, &entry);
}

void readAttributes(fuse_req_t request, fuse_ino_t item, fuse_file_info*)
{
    wait();
    const struct stat status = statusOf(item);
    fuse_reply_attr(request, &status, memory);
}

void openFolder(fuse_req_t request, fuse_ino_t, fuse_file_info* file)
{
    wait();
    fuse_reply_open(request, file);
}

void readFolder(fuse_req_t request, fuse_ino_t folder, std::size_t size, off_t offset,
                fuse_file_info*)
{
    wait();
    std::string answer(size, '\0');
    std::size_t filled = 0;
    for (auto place = static_cast<fuse_ino_t>(offset); place < foldersInFolder + groupSize;
         ++place) {
        const fuse_ino_t item = itemIn(folder, place);
        if (item == 0)
            continue;
        const struct stat status = statusOf(item);
        const std::size_t length =
            fuse_add_direntry(request, &answer[filled], size - filled, std::to_string(item).c_str(),
                              &status, static_cast<off_t>(place + 1));
        if (length > size - filled)
            break;
        filled += length;
        if (filled == size)
            break;
    }
    fuse_reply_buf(request, answer.data(), filled);
}

void closeFolder(fuse_req_t request, fuse_ino_t, fuse_file_info*)
{
    wait();
    fuse_reply_err(request, 0);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: slow_fs MOUNT_POINT ITEMS MICROSECONDS\n");
        return 2;
    }
    lastItem = std::strtoull(argv[2], nullptr, 10) + 1; // the top is none of them
    delay = std::chrono::microseconds(std::strtoull(argv[3], nullptr, 10));

    fuse_lowlevel_ops operations{};
    operations.lookup = lookUp;
    operations.getattr = readAttributes;
    operations.opendir = openFolder;
    operations.readdir = readFolder;
    operations.releasedir = closeFolder;

    std::string program = argv[0];
    char* arguments[] = {program.data(), nullptr};
    fuse_args noOptions = FUSE_ARGS_INIT(1, arguments);
    fuse_session* const session =
        fuse_session_new(&noOptions, &operations, sizeof operations, nullptr);
    if (!session || fuse_session_mount(session, argv[1]) != 0)
        return 1;
    fuse_loop_config* const settings = fuse_loop_cfg_create();
    fuse_loop_cfg_set_max_threads(settings, 64);
    fuse_loop_cfg_set_idle_threads(settings, 64);
    const int result = fuse_session_loop_mt(session, settings);
    fuse_loop_cfg_destroy(settings);
    fuse_session_unmount(session);
    fuse_session_destroy(session);
    return result == 0 ? 0 : 1;
}
