#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/LargeFiles.h"
#include "support/Files.h"
#include "support/ReferenceTree.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <functional>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

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

// What goes wrong with the system's functions that others stand in for below.

/// Items of that name cannot be opened for want of rights.
std::string unopenable;
std::atomic<int> openings = 0;
bool areFoldersListedTwice = false;

} // namespace

/// These take the place of the system's functions of those names in this program.
extern "C" int faultyOpenat(int folder, const char* path, int flags, ...) asm("openat");
extern "C" int faultyOpenat(int folder, const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    ++openings;
    if (!unopenable.empty() && path == unopenable) {
        errno = EACCES;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

extern "C" ssize_t faultyGetdents64(int folder, void* buffer, std::size_t size) asm("getdents64");
extern "C" ssize_t faultyGetdents64(int folder, void* buffer, std::size_t size)
{
    thread_local int seenToEnd = -1;
    const auto count = ::syscall(SYS_getdents64, folder, buffer, size);
    if (count == 0 && areFoldersListedTwice && seenToEnd != folder) {
        seenToEnd = folder;
        ::lseek(folder, 0, SEEK_SET);
        return ::syscall(SYS_getdents64, folder, buffer, size);
    }
    if (count == 0)
        seenToEnd = -1;
    return count;
}

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

/// Reports at every item.
FileNode scannedReporting(const FileURL& root, const DiskScanner::ProgressCallback& progress)
{
    return std::get<FileNode>(DiskScanner{0, 1}.scan(root, progress));
}

/// Below the root.
std::size_t countFolders(const FileNode& root)
{
    std::size_t count = 0;
    std::vector<const FileNode*> pending{&root};
    while (!pending.empty()) {
        const FileNode* node = pending.back();
        pending.pop_back();
        for (const FileNode& child : node->children())
            if (child.kind() == NodeKind::directory) {
                ++count;
                pending.push_back(&child);
            }
    }
    return count;
}

/// Lowers this process's limit of open files while it lives, and pretends that it has so
/// many processors.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit, int processors = 0)
    {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        rlimit lowered = before_;
        lowered.rlim_cur = limit;
        ::setrlimit(RLIMIT_NOFILE, &lowered);
        pretendedProcessors = processors;
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit()
    {
        ::setrlimit(RLIMIT_NOFILE, &before_);
        pretendedProcessors = 0;
    }

private:
    rlimit before_{};
};

TEST(DiskScannerHostile, FoldersOfAnyShapeWithFewDescriptors)
{
    using Tree = const TemporaryTree&;
    // A disk takes minutes to make and remove the deeper one.
    const auto depthIn = [](Tree tree) { return tree.isInMemory() ? 40'000 : 3'000; };
    struct Row {
        const char* shape;
        std::function<int(Tree)> make; ///< so many folders
        rlim_t limit;
        int processors;
    };
    for (const Row& row : {Row{"deep", // and with a folder beside every third
                               [&](Tree tree) {
                                   tree.chain("", "d", depthIn(tree), 3);
                                   return depthIn(tree) + (depthIn(tree) + 2) / 3;
                               },
                               64, 0},
                           {"wide and deep: those kept open change hands all the time",
                            [](Tree tree) {
                                for (const char* top : {"a", "b", "c", "d", "e", "f"})
                                    tree.chain(top, "deeper", 300, 1);
                                return 6 * (1 + 600);
                            },
                            48, 0},
                           {"many workers, each of which waits for its turn to report",
                            [](Tree tree) {
                                for (int i = 0; i < 400; ++i)
                                    tree.folder(std::to_string(i) + "/a/b");
                                return 3 * 400;
                            },
                            32, 64}}) {
        SCOPED_TRACE(row.shape);
        const TemporaryTree tree(TemporaryTree::Storage::memory);
        const auto count = static_cast<std::size_t>(row.make(tree));
        const auto before = openDescriptors();
        const DescriptorLimit limit(row.limit, row.processors);
        const ScanResult result = DiskScanner{0, row.processors > 0 ? 1 : 0}.scan(
            tree.url(), [](const ScanProgress&) { ::sched_yield(); });
        const FileNode& root = std::get<FileNode>(result);
        EXPECT_EQ(countFolders(root), count);
        EXPECT_EQ(root, scanned(tree.url()));
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST(DiskScannerHostile, ScansAtOnceLoseNothingForWantOfDescriptors)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    for (int i = 0; i < 200; ++i)
        tree.folder(std::to_string(i) + "/a/b");
    tree.chain("", "deep", 100, 1);
    const FileNode expected = scanned(tree.url());
    struct Row {
        rlim_t limit;
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
            const DescriptorLimit limit(row.limit, 8);
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
}

TEST(DiskScannerHostile, CombsAreClimbedOnce)
{
    TemporaryTree tree(TemporaryTree::Storage::memory);
    constexpr int depth = 5'000;
    tree.chain("", "d", depth, 1);
    for (const char* name : {"none", "sibling"})
        for (const int processors : {1, 2, 16}) {
            const DescriptorLimit limit(256, processors);
            unopenable = name;
            openings = 0;
            EXPECT_EQ(countFolders(scanned(tree.url())), 2u * depth);
            // Each folder is opened once, and each level climbed once; near the root a
            // few are opened by names.
            EXPECT_LT(openings, 4 * depth) << name << ", processors: " << processors;
        }
    unopenable.clear();
}

TEST(DiskScannerHostile, PathsBeyondTheSystemsLongest)
{
    TemporaryTree tree;
    const std::string path = tree.chain("", std::string(255, 'n'), 60);
    const FileNode root = scanned(tree.url());
    ASSERT_NE(LargeFiles::find(path, root), nullptr);
    // Such a path may be a root itself.
    EXPECT_EQ(scanned(FileURL(path)), *LargeFiles::find(path, root));
    EXPECT_EQ(std::get<ScanError>(DiskScanner{0, 0}.scan(FileURL(path + "/missing"), [](auto&) {})),
              ScanError::rootMissing);
}

TEST(DiskScannerHostile, AFolderReplacedByALinkIsNotFollowed)
{
    TemporaryTree tree;
    tree.file("outside/file", 300 * kib);
    tree.file("root/inner/file", 300 * kib);
    const FileNode root =
        scannedReporting(FileURL(tree.at("root")), [&](const ScanProgress& report) {
            if (report.visitedCount != 1)
                return;
            tree.remove("root/inner");
            tree.link("root/inner", tree.at("outside"));
        });
    EXPECT_EQ(root.allocatedSize(), 0);

    // Nor is the root, once the first report has named it.
    tree.file("folder/file", 300 * kib);
    const FileNode kept =
        scannedReporting(FileURL(tree.at("folder")), [&](const ScanProgress& report) {
            if (report.visitedCount == 0 &&
                ::rename(tree.at("folder").c_str(), tree.at("away").c_str()) == 0)
                tree.link("folder", tree.at("outside"));
        });
    EXPECT_EQ(kept.allocatedSize(), 300 * kib);
    EXPECT_NE(LargeFiles::find(tree.at("folder/file"), kept), nullptr);
}

TEST(DiskScannerHostile, TheWayBackIsFoundAboveAFolderThatWasMoved)
{
    const TemporaryTree tree(TemporaryTree::Storage::memory);
    constexpr int depth = 100;
    tree.chain("root", "d", depth, 1);
    tree.folder("elsewhere");
    std::string middle = tree.at("root");
    for (int level = 0; level < depth / 2; ++level)
        middle += "/d";
    const DescriptorLimit limit(32, 1);
    ScanOmissions told;
    const auto moveWhenBelow = [&](const ScanProgress& report) {
        if (report.visitedCount == depth + depth / 2)
            ::rename(middle.c_str(), tree.at("elsewhere/d").c_str());
    };
    (void)DiskScanner{0, 1}.scan(FileURL(tree.at("root")), moveWhenBelow, {}, &told);
    EXPECT_TRUE(::access(middle.c_str(), F_OK) != 0);
    EXPECT_EQ(told.vanishedCount, 0u);
}

TEST(DiskScannerHostile, EntriesListedTwiceCountOnce)
{
    TemporaryTree tree;
    tree.fillAtRandom(5, 300);
    const FileNode expected = scanned(tree.url(), 4 * kib);
    areFoldersListedTwice = true;
    EXPECT_EQ(scanned(tree.url(), 4 * kib), expected);
    areFoldersListedTwice = false;
}

TEST(DiskScannerHostile, UnreadableFoldersArePassedOver)
{
    TemporaryTree tree;
    tree.file("locked/file", 300 * kib);
    tree.file("listed/file", 300 * kib);
    tree.file("listed/other", 300 * kib);
    tree.file("open", 300 * kib);
    ::chmod(tree.path().c_str(), 0755);
    ::chmod(tree.at("locked").c_str(), 0);
    ::chmod(tree.at("listed").c_str(), 0744);
    // Rights do not bind the superuser, so the scan runs in a child without them.
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isBound = ::getuid() != 0 || ::setuid(65534) == 0;
        ScanOmissions told;
        const auto result = DiskScanner{0, 0}.scan(tree.url(), [](auto&) {}, {}, &told);
        const FileNode& root = std::get<FileNode>(result);
        std::set<std::pair<std::string, mode_t>> folders;
        for (const ScanOmissions::Folder& folder : told.unreadable)
            folders.emplace(folder.url.path(), folder.mode);
        ::_exit(
            isBound && root.allocatedSize() == 300 * kib && countFolders(root) == 2 &&
                    folders ==
                        std::set<std::pair<std::string, mode_t>>{
                            {tree.at("locked"), S_IFDIR}, {tree.at("listed"), S_IFDIR | 0744}} &&
                    scanned(FileURL(tree.at("locked"))).children().empty()
                ? 0
                : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
