#pragma once

#include "BrisalonCore/DiskScanner.h"
#include "host/MountBarriers.h"
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
    FolderWalk(FileURL root, const DiskScanner& scanner, ScanLedger& ledger,
               std::stop_token cancellation);

    /// Walks with the calling thread and as many more as help. Nothing when the
    /// walk noticed its cancellation. Throws what the ledger throws, and bad_alloc.
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
        host::FolderReader reader;
        std::vector<ScanLedger::Item> items;
        std::vector<Kept> kept;
        std::string keptNames;
        std::string smallNames;
        std::int64_t smallCount = 0;
        std::int64_t smallBytes = 0;
        bool sawCacheTag = false;
        std::vector<Task> tasks;
    };

    void work(Worker& worker) noexcept;
    void visit(const Task& task, Worker& worker);

    /// Reads a folder and makes its nodes; leaves a task for each subfolder.
    void readFolder(WalkFolder& folder, const host::OpenFolder& handle, Worker& worker);
    /// Sorts one entry into the worker's lists; returns the bytes it records.
    std::int64_t note(const host::FolderReader::Entry& entry, const WalkFolder& folder,
                      const std::string& pathForSkipping, const host::OpenFolder& handle,
                      Worker& worker) const;
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
    const bool isRootSkipped_;
    const std::int64_t smallFileThreshold_;
    ScanLedger& ledger_;
    const std::stop_token cancellation_;
    const host::MountBarriers barriers_;
    OpenFolders openFolders_;
    WorkStealingQueues<Task> queues_;
    const std::size_t workerCount_;

    std::atomic<bool> isAbandoned_{false};
    std::mutex failureMutex_;
    std::exception_ptr failure_;
    const HogTrail trailAboveRoot_;
    FileNode rootNode_;
};

} // namespace brisalon::detail
