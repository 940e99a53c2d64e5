#pragma once

#include "BrisalonCore/DiskScanner.h"
#include "host/MountBarriers.h"
#include "scan/CrewSize.h"
#include "scan/ItemReport.h"
#include "scan/NameSet.h"
#include "scan/OmissionLog.h"
#include "scan/OpenFolders.h"
#include "scan/ScanLedger.h"
#include "scan/WalkFolder.h"
#include "scan/WorkStealingQueues.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brisalon::detail {

/// One walk over everything below a root, by several workers, into a tree.
///
/// A folder is read whole by one worker: what is not a folder is measured as it
/// is met, small files are folded at once into packed names, and the folder's
/// nodes are made in their final place. Its subfolders become tasks that any
/// worker may take. The last of them to finish sums and sorts the folder and
/// passes its size up, so that the tree is complete when the walk is.
///
/// Used once.
class FolderWalk {
public:
    /// `folder` is the root, opened, or invalid where it cannot be read. What becomes of
    /// its path later does not matter. `mounts` is its place among the barriers, which
    /// outlive the walk.
    FolderWalk(FileURL root, host::OpenFolder folder, host::MountBarriers::Place mounts,
               const DiskScanner& scanner, ScanLedger& ledger, std::stop_token cancellation,
               ScanOmissions* omissions);

    /// Walks with the calling thread and as many more as help. Nothing when the
    /// walk noticed its cancellation. Throws what the ledger throws, bad_alloc, and
    /// system_error where folders cannot be opened for want of descriptors.
    std::optional<FileNode> run();

private:
    /// A subfolder to be read, or (without a folder) the root itself.
    struct Task {
        WalkFolder* folder;
        std::uint64_t nameOffset;
        std::size_t slot;
    };

    /// One entry that gets a node of its own.
    struct Kept {
        std::uint64_t nameOffset;
        std::int64_t size;
        NodeKind kind;
        bool isEntered;
    };

    /// What a worker reuses from folder to folder.
    struct Worker {
        std::size_t index = 0;
        OpenFolders::Place place;
        CrewSize::Account account;
        host::FolderReader reader;
        NameSet names;
        std::vector<ScanLedger::Item> items;
        ItemReport report;
        std::vector<Kept> kept;
        std::string keptNames;
        std::string smallNames;
        std::int64_t smallCount = 0;
        std::int64_t smallBytes = 0;
        bool sawCacheTag = false;
        int failure = 0; ///< why something in the folder could not be read, as in errno
        std::vector<Task> tasks;
    };

    /// A worker with a thread of its own.
    struct Helper {
        Worker worker;
        std::jthread thread; ///< last, so that it ends first
    };

    void work(Worker& worker) noexcept;
    /// Sees to it that there are so many workers, as far as threads are to be had.
    void employ(std::size_t workers) noexcept;
    std::optional<Task> nextTask(Worker& worker);
    using Tasks = WorkStealingQueues<Task>::Tasks;
    /// Which of another worker's tasks this one takes over; it then has its place there.
    std::pair<Tasks::const_iterator, Tasks::const_iterator> shareOf(const Tasks& tasks,
                                                                    Worker& worker) const;
    void visit(const Task& task, Worker& worker);

    /// Reads a folder and makes its nodes; leaves a task for each subfolder.
    void readFolder(WalkFolder& folder, const host::OpenFolder& handle, Worker& worker);
    /// Sorts one entry into the worker's lists; returns the bytes it records.
    std::int64_t note(const host::FolderReader::Entry& entry, const WalkFolder& folder,
                      const std::string& pathForSkipping, const host::OpenFolder& handle,
                      Worker& worker);
    /// Measures an entry, or notes why that cannot be done.
    std::optional<host::OpenFolder::Measure>
    measure(const char* name, const host::OpenFolder& handle, Worker& worker);
    /// Told at the end of each folder.
    void noteGap(WalkFolder& folder, const Worker& worker);
    /// Classifies a folder again that turned out to be tagged, before its nodes are made.
    void markAsCache(WalkFolder& folder);
    void makeNodes(WalkFolder& folder, Worker& worker) const;

    /// Adds up a folder inside a package; leaves a task for each subfolder.
    void readPackageFolder(WalkFolder& folder, const host::OpenFolder& handle, Worker& worker);

    /// Closes the books on a folder with nothing unfinished below it, and on
    /// those above it for which it was the last.
    void finish(std::unique_ptr<WalkFolder> folder);
    /// One subfolder of `parent` will never be read.
    void finishUnread(WalkFolder* parent);
    static std::int64_t arrange(const ChildBlock& children);

    FileNode& nodeOf(const WalkFolder& folder);
    FileURL urlOf(const WalkFolder& folder) const;
    bool isAbandoned() const noexcept { return isAbandoned_.load(std::memory_order_relaxed); }
    void abandon(std::exception_ptr reason = nullptr) noexcept;

    const FileURL root_;
    const std::string rootPath_;
    const std::size_t rootDepth_; ///< as WalkFolder's
    const bool isRootSkipped_;
    const std::int64_t smallFileThreshold_;
    ScanLedger& ledger_;
    OmissionLog omissions_;
    const std::stop_token cancellation_;
    const host::MountBarriers::Place mounts_;
    OpenFolders openFolders_;
    const std::size_t mostWorkers_;
    CrewSize crewSize_;
    WorkStealingQueues<Task> queues_;
    std::mutex crewMutex_;
    std::atomic<std::size_t> workerCount_{1}; ///< with the calling thread
    std::vector<std::unique_ptr<Helper>> helpers_;

    std::atomic<bool> isAbandoned_{false};
    std::mutex failureMutex_;
    std::exception_ptr failure_;
    const HogTrail trailAboveRoot_;
    FileNode rootNode_;
};

} // namespace brisalon::detail
