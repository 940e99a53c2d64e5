#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <exception>
#include <system_error>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brisalon;
using namespace brisalon::tests;

namespace {

/// How many processors this process seems to have; 0 for as many as it has.
int pretendedProcessors = 0;

/// What goes wrong with the system's functions that others stand in for below.
struct Faults {
    /// Opening the item of that name, or at that path, fails with that error (or, with
    /// 0, opens a folder instead).
    std::string unopenable;
    int error = 0;
    bool areFoldersListedTwice = false;
    bool isEverySecondMeasureInterrupted = false;
    std::atomic<int> openings = 0;
} faults;

} // namespace

/// These take the place of the system's functions of those names in this program.
extern "C" int faultyOpenat(int folder, const char* path, int flags, ...) asm("openat");
extern "C" int faultyOpenat(int folder, const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    ++faults.openings;
    if (!faults.unopenable.empty() && path == faults.unopenable) {
        errno = faults.error;
        if (errno != 0)
            return -1;
        path = "/";
    }
    return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

extern "C" ssize_t faultyGetdents64(int folder, void* buffer, std::size_t size) asm("getdents64");
extern "C" ssize_t faultyGetdents64(int folder, void* buffer, std::size_t size)
{
    thread_local int seenToEnd = -1;
    auto count = ::syscall(SYS_getdents64, folder, buffer, size);
    if (count == 0 && faults.areFoldersListedTwice && seenToEnd != folder) {
        seenToEnd = folder;
        ::lseek(folder, 0, SEEK_SET);
        return ::syscall(SYS_getdents64, folder, buffer, size);
    }
    if (count == 0)
        seenToEnd = -1;
    return count;
}

extern "C" int faultyFstatat(int folder, const char* name, struct stat* status,
                             int flags) asm("fstatat");
extern "C" int faultyFstatat(int folder, const char* name, struct stat* status, int flags)
{
    static std::atomic<unsigned> calls = 0;
    if (faults.isEverySecondMeasureInterrupted && ++calls % 2 == 1) {
        errno = EINTR;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_newfstatat, folder, name, status, flags));
}

/// Takes the place of the system's function of that name in this program.
extern "C" int sched_getaffinity(pid_t process, std::size_t size, cpu_set_t* processors) noexcept
{
    // The system fills no more than it knows of.
    CPU_ZERO_S(size, processors);
    if (pretendedProcessors == 0)
        return ::syscall(SYS_sched_getaffinity, process, size, processors) < 0 ? -1 : 0;
    for (int i = 0; i < pretendedProcessors; ++i)
        CPU_SET_S(static_cast<std::size_t>(i), size, processors);
    return 0;
}

namespace {

constexpr std::int64_t kib = 1024;

void ignore(const ScanProgress&) {}

FileNode scanned(const FileURL& root, const DiskScanner::ProgressCallback& progress = ignore)
{
    return std::get<FileNode>(DiskScanner{256 * kib, 400}.scan(root, progress));
}

std::size_t countFolders(const FileNode& root)
{
    std::size_t count = 0;
    std::vector<const FileNode*> pending{&root};
    while (!pending.empty()) {
        const FileNode* node = pending.back();
        pending.pop_back();
        ++count;
        for (const FileNode& child : node->children())
            if (child.kind() == NodeKind::directory)
                pending.push_back(&child);
    }
    return count - 1;
}

int openDescriptors()
{
    int count = 0;
    DIR* entries = ::opendir("/proc/self/fd");
    while (::readdir(entries))
        ++count;
    ::closedir(entries);
    return count;
}

/// Lowers this process's limit of open files while it lives.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit)
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        rlimit lowered = before_;
        lowered.rlim_cur = limit;
        ::setrlimit(RLIMIT_NOFILE, &lowered);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

TEST(DiskScannerHostile, FoldersOfAnyDepthWithFewDescriptors)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    // A disk takes minutes to make and remove the deeper one.
    const int depth = tree.isInMemory() ? 40'000 : 3'000;
    constexpr int siblingEvery = 3;
    tree.chain("", "d", depth, siblingEvery);
    const int before = openDescriptors();
    const DescriptorLimit limit(64);
    const FileNode root = scanned(tree.url());
    EXPECT_EQ(countFolders(root),
              static_cast<std::size_t>(depth + (depth + siblingEvery - 1) / siblingEvery));
    EXPECT_EQ(root, scanned(tree.url()));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(DiskScannerHostile, WideAndDeepWithFewDescriptors)
{
    // Many folders wait at once at every level, so the folders kept open change
    // hands all the time.
    TemporaryTree tree(TemporaryTree::Storage::memory);
    for (int i = 0; i < 6; ++i) {
        const std::string top = "t" + std::to_string(i);
        tree.folder(top);
        tree.chain(top, "deeper", 300, 1);
    }
    const DescriptorLimit limit(48);
    EXPECT_EQ(countFolders(scanned(tree.url())), 6u * (1 + 600));
}

TEST(DiskScannerHostile, ManyWorkersWithFewDescriptors)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    for (int i = 0; i < 400; ++i)
        tree.folder(std::to_string(i) + "/a/b");
    const DescriptorLimit limit(32);
    pretendedProcessors = 64;
    // A worker that waits for its turn to report has its folder open.
    const ScanResult result =
        DiskScanner{0, 1}.scan(tree.url(), [](const ScanProgress&) { ::sched_yield(); });
    pretendedProcessors = 0;
    EXPECT_EQ(countFolders(std::get<FileNode>(result)), 3u * 400);
}

TEST(DiskScannerHostile, ScansAtOnceLoseNothingForWantOfDescriptors)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    for (int i = 0; i < 200; ++i)
        tree.folder(std::to_string(i) + "/a/b");
    tree.chain("", "deep", 100, 1);
    const FileNode expected = scanned(tree.url());
    pretendedProcessors = 8;
    struct Row {
        int limit;
        int scans;
        bool isEnough;
    };
    // First with plenty: sanitizers need a descriptor when they meet a type for the first
    // time.
    for (const Row& row : {Row{256, 6, true},
                           {4, 1, false},
                           {8, 1, true},
                           {12, 1, true},
                           {16, 6, true},
                           {24, 4, true},
                           {64, 6, true}}) {
        std::atomic<int> whole = 0;
        std::vector<std::exception_ptr> thrown(static_cast<std::size_t>(row.scans));
        {
            const DescriptorLimit limit(static_cast<rlim_t>(row.limit));
            std::vector<std::jthread> threads;
            for (std::exception_ptr& failure : thrown)
                threads.emplace_back([&] {
                    try {
                        whole += scanned(tree.url()) == expected;
                    } catch (...) {
                        failure = std::current_exception();
                    }
                });
        }
        int refused = 0;
        for (const std::exception_ptr& failure : thrown) {
            try {
                if (failure)
                    std::rethrow_exception(failure);
            } catch (const std::system_error& error) {
                refused += error.code().value() == EMFILE;
            }
        }
        EXPECT_EQ(row.isEnough ? whole.load() : refused, row.scans) << "limit " << row.limit;
    }
    pretendedProcessors = 0;
}

TEST(DiskScannerHostile, UnreadableLeavesCostWhatOthersCost)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    constexpr int depth = 5'000;
    tree.chain("", "d", depth, 1);
    faults.error = EACCES;
    for (const char* unopenable : {"none", "sibling"}) {
        faults.unopenable = unopenable;
        faults.openings = 0;
        EXPECT_EQ(countFolders(scanned(tree.url())), 2u * depth);
        EXPECT_LT(faults.openings, 100 * depth) << unopenable;
    }
    faults.unopenable.clear();
}

TEST(DiskScannerHostile, PathsBeyondTheSystemsLongest)
{
    TemporaryTree tree;
    const std::string longest(255, 'n');
    tree.chain("", longest, 60, 0);
    std::string path = tree.path();
    for (int i = 0; i < 60; ++i)
        path += '/' + longest;
    const FileNode root = scanned(tree.url());
    ASSERT_NE(LargeFiles::find(path, root), nullptr);
    // Such a path may be a root itself.
    EXPECT_EQ(scanned(FileURL(path)), *LargeFiles::find(path, root));
    EXPECT_EQ(std::get<ScanError>(DiskScanner{0, 0}.scan(FileURL(path + "/missing"), [](auto&) {})),
              ScanError::rootMissing);
}

TEST(DiskScannerHostile, ItemsVanishWhileTheScanRuns)
{
    TemporaryTree tree;
    tree.file("stays", 300 * kib);
    tree.file("goes/a/b/file", 300 * kib);
    // The first item that is met removes a folder that may still be ahead.
    const FileNode root = std::get<FileNode>(
        DiskScanner{256 * kib, 1}.scan(tree.url(), [&](const ScanProgress& report) {
            if (report.visitedCount == 1)
                tree.remove("goes");
        }));
    EXPECT_NE(LargeFiles::find(tree.at("stays"), root), nullptr);
    EXPECT_EQ(LargeFiles::find(tree.at("goes/a/b/file"), root), nullptr);

    tree.folder("root");
    tree.file("root/file", 300 * kib);
    const FileURL vanishing(tree.at("root"));
    const FileNode gone = scanned(vanishing, [&](const ScanProgress&) { tree.remove("root"); });
    EXPECT_TRUE(gone.children().empty());
    EXPECT_EQ(gone.url(), vanishing);
}

TEST(DiskScannerHostile, AFolderReplacedByALinkIsNotFollowed)
{
    TemporaryTree tree;
    tree.file("outside/file", 300 * kib);
    tree.file("root/inner/file", 300 * kib);
    const FileNode root = std::get<FileNode>(
        DiskScanner{256 * kib, 1}.scan(FileURL(tree.at("root")), [&](const ScanProgress& report) {
            if (report.visitedCount != 1)
                return;
            tree.remove("root/inner");
            tree.link("root/inner", tree.at("outside"));
        }));
    EXPECT_EQ(root.allocatedSize(), 0);

    // Nor is the root, once the first report has named it.
    tree.file("folder/file", 300 * kib);
    const FileNode kept = scanned(FileURL(tree.at("folder")), [&](const ScanProgress& report) {
        if (report.visitedCount != 0 ||
            ::rename(tree.at("folder").c_str(), tree.at("away").c_str()))
            return;
        tree.link("folder", tree.at("outside"));
    });
    EXPECT_EQ(kept.allocatedSize(), 300 * kib);
    EXPECT_NE(LargeFiles::find(tree.at("folder/file"), kept), nullptr);
}

TEST(DiskScannerHostile, WhatTheSystemDoesWrongChangesNoTree)
{
    TemporaryTree tree;
    for (int i = 0; i < 40; ++i) {
        tree.file("folder" + std::to_string(i) + "/large", 300 * kib);
        tree.file("folder" + std::to_string(i) + "/small", 4 * kib);
    }
    tree.file("x.app/file", 4 * kib);
    const FileNode expected = scanned(tree.url());
    const auto expectSame = [&](const char* fault) {
        EXPECT_EQ(scanned(tree.url()), expected) << fault;
    };
    faults.areFoldersListedTwice = true;
    expectSame("entries listed twice");
    faults.areFoldersListedTwice = false;

    faults.isEverySecondMeasureInterrupted = true;
    expectSame("interrupted measures");
    faults.isEverySecondMeasureInterrupted = false;

    faults.unopenable = "/proc/thread-self/mountinfo";
    for (faults.error = 0; faults.error <= EACCES; faults.error += EACCES)
        expectSame("an unreadable table of mounts");

    // A root that cannot be looked at is not called missing.
    faults.unopenable = tree.path();
    for (const int error : {EACCES, EIO, ENFILE}) {
        faults.error = error;
        try {
            (void)DiskScanner{0, 0}.scan(tree.url(), [](auto&) {});
            ADD_FAILURE() << error;
        } catch (const std::system_error& thrown) {
            EXPECT_EQ(thrown.code().value(), error);
        }
    }
    faults.unopenable.clear();
}

TEST(DiskScannerHostile, UnreadableFoldersArePassedOver)
{
    TemporaryTree tree;
    tree.file("locked/file", 300 * kib);
    tree.file("open", 300 * kib);
    ::chmod(tree.path().c_str(), 0755);
    ::chmod(tree.at("locked").c_str(), 0);
    // Rights do not bind the superuser, so the scan runs in a child without them.
    const pid_t child = ::fork();
    if (child == 0) {
        if (::getuid() == 0 && ::setuid(65534) != 0)
            ::_exit(2);
        const FileNode root = scanned(tree.url());
        const FileNode locked = scanned(FileURL(tree.at("locked")));
        const bool isRight = root.allocatedSize() == 300 * kib && root.children().size() == 2 &&
                             root.children()[1].children().empty() && locked.children().empty();
        ::_exit(isRight ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(DiskScannerHostile, SpecialFilesAreFilesWithoutSize)
{
    TemporaryTree tree;
    ASSERT_EQ(::mkfifo(tree.at("pipe").c_str(), 0600), 0);
    tree.folder("skipped");
    const FileNode root = scanned(tree.url());
    EXPECT_EQ(root, referenceTree(tree.path(), 256 * kib));
    EXPECT_EQ(root.children()[1].aggregateSources(), FileURLList({FileURL(tree.at("pipe"))}));
}

} // namespace
