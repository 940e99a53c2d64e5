// walk_floor ROOT [THREADS]
//
// The least that any scan must do: read every folder, ask for the size of what is
// neither folder nor link. Keeps no tree and no names. The scanner's time is judged
// against this one's, so everything here is as direct as the kernel allows.
//
// Below "/" the folders dev, proc and sys are left out; other mounts are entered.

#include "Report.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

/// A folder that stays open until the last folder directly in it was opened.
class Folder {
public:
    explicit Folder(int handle) noexcept : handle_(handle) {}
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { ::close(handle_); }
    int handle() const noexcept { return handle_; }

private:
    int handle_;
};

struct Task {
    std::shared_ptr<const Folder> parent;
    std::string name;
};

/// Tasks that workers with plenty have given away for those that have none.
class Exchange {
public:
    explicit Exchange(unsigned workers) : workers_(workers) {}

    /// True while some worker waits: the moment to give.
    bool isWanted() const noexcept { return waiting_.load(std::memory_order_relaxed) > 0; }

    /// Gives the older half of `tasks`: the folders nearest the root, which
    /// promise the most work.
    void give(std::vector<Task>& tasks)
    {
        const auto half = tasks.begin() + static_cast<std::ptrdiff_t>(tasks.size() / 2);
        {
            const std::lock_guard lock(mutex_);
            given_.insert(given_.end(), std::make_move_iterator(tasks.begin()),
                          std::make_move_iterator(half));
        }
        tasks.erase(tasks.begin(), half);
        changed_.notify_all();
    }

    /// Waits for a task; false when all work is done.
    bool take(std::vector<Task>& tasks)
    {
        std::unique_lock lock(mutex_);
        ++waiting_;
        if (waiting_ == workers_ && given_.empty()) {
            done_ = true;
            changed_.notify_all();
        }
        changed_.wait(lock, [this] { return done_ || !given_.empty(); });
        if (given_.empty())
            return false;
        --waiting_;
        tasks.push_back(std::move(given_.back()));
        given_.pop_back();
        return true;
    }

private:
    const unsigned workers_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Task> given_;
    std::atomic<unsigned> waiting_{0};
    bool done_ = false;
};

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NOATIME;

int openFolder(int parent, const char* name)
{
    const int handle = ::openat(parent, name, openFlags);
    if (handle >= 0)
        return handle;
    // Not to touch the access time is allowed to the owner only.
    if (errno == EPERM)
        return ::openat(parent, name, openFlags & ~O_NOATIME);
    if (errno == EMFILE || errno == ENFILE) {
        std::fprintf(stderr, "walk_floor: too few open files are allowed for this tree\n");
        std::exit(1);
    }
    return -1;
}

class Worker {
public:
    explicit Worker(Exchange& exchange) : exchange_(exchange) {}

    /// Reads one open folder and closes it, leaving its folders as tasks.
    void read(int handle, bool isSlash = false)
    {
        const auto folder = std::make_shared<const Folder>(handle);
        for (;;) {
            const ssize_t size = ::getdents64(handle, buffer_.get(), bufferSize);
            if (size <= 0)
                return;
            for (ssize_t position = 0; position < size;) {
                const auto* entry = reinterpret_cast<const dirent64*>(buffer_.get() + position);
                position += entry->d_reclen;
                meet(folder, entry->d_name, entry->d_type, isSlash);
            }
        }
    }

    void run()
    {
        while (!tasks_.empty() || exchange_.take(tasks_)) {
            if (tasks_.size() > 1 && exchange_.isWanted())
                exchange_.give(tasks_);
            const Task task = std::move(tasks_.back());
            tasks_.pop_back();
            const int handle = openFolder(task.parent->handle(), task.name.c_str());
            if (handle >= 0)
                read(handle);
        }
    }

    std::int64_t items = 0;
    std::int64_t bytes = 0;

private:
    void meet(const std::shared_ptr<const Folder>& folder, const char* name, unsigned char type,
              bool isSlash)
    {
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            return;
        ++items;
        if (type == DT_LNK)
            return;
        if (type != DT_DIR) {
            struct stat status;
            if (::fstatat(folder->handle(), name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                return;
            if (type != DT_UNKNOWN || !S_ISDIR(status.st_mode)) {
                if (!S_ISLNK(status.st_mode))
                    bytes += std::int64_t{status.st_blocks} * 512;
                return;
            }
        }
        const bool isKernels =
            isSlash && (std::strcmp(name, "proc") == 0 || std::strcmp(name, "sys") == 0 ||
                        std::strcmp(name, "dev") == 0);
        if (!isKernels)
            tasks_.push_back({folder, name});
    }

    static constexpr std::size_t bufferSize = std::size_t{64} * 1024;

    Exchange& exchange_;
    std::vector<Task> tasks_;
    const std::unique_ptr<char[]> buffer_ = std::make_unique<char[]>(bufferSize);
};

void allowAllOpenFiles()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: walk_floor ROOT [THREADS]\n");
        return 2;
    }
    const int wanted =
        argc == 3 ? std::atoi(argv[2]) : static_cast<int>(std::thread::hardware_concurrency());
    const auto threadCount = static_cast<unsigned>(std::max(wanted, 1));
    allowAllOpenFiles();

    const bench::Stopwatch watch;
    const int root = ::open(argv[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0) {
        std::perror(argv[1]);
        return 1;
    }
    Exchange exchange(threadCount);
    std::vector<std::unique_ptr<Worker>> workers;
    for (unsigned i = 0; i < threadCount; ++i)
        workers.push_back(std::make_unique<Worker>(exchange));
    workers.front()->read(root, std::strcmp(argv[1], "/") == 0);
    {
        std::vector<std::jthread> threads;
        for (unsigned i = 1; i < threadCount; ++i)
            threads.emplace_back(&Worker::run, workers[i].get());
        workers.front()->run();
    }
    bench::Report report{.milliseconds = watch.milliseconds()};
    for (const auto& worker : workers) {
        report.items += worker->items;
        report.bytes += worker->bytes;
    }
    report.print();
}
