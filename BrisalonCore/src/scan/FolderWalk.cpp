#include "scan/FolderWalk.h"

#include "base/SaturatingSum.h"
#include "host/CacheTag.h"
#include "host/Package.h"
#include "host/Volume.h"
#include "scan/PathRules.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace brisalon::detail {

using host::FolderReader;
using host::ItemType;
using host::OpenFolder;

namespace {

constexpr std::string_view aggregateName = ".small-files-aggregate";

/// Whether a path is skipped is settled by its first three components.
constexpr std::size_t depthOfSkipRules = 3;

/// So many levels can be gone again by names whenever it helps. Few trees have more.
constexpr std::size_t shortWay = 64;

std::size_t mostWorkers(const OpenFolder& root)
{
    // More than the heads can serve at once only make them seek.
    if (host::isOnRotatingDisk(root))
        return 1;
    // Beyond this no storage was found to answer more quickly.
    constexpr std::size_t most = 32;
    // Beside the folders kept open each worker opens up to three of its own: where
    // descriptors are few, more workers would only wait for one another's.
    return std::min(most, OpenFolders::budget() / 4);
}

/// Appends a name with its closing NUL; returns where it starts.
std::uint64_t appendName(std::string& names, const char* name)
{
    const std::uint64_t offset = names.size();
    names.append(name, std::strlen(name) + 1);
    return offset;
}

bool isCacheTagName(const char* name) noexcept
{
    return std::strcmp(name, host::cacheTagName) == 0;
}

std::size_t componentCount(std::string_view path) noexcept
{
    return path == "/" ? 0 : static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
}

/// The trail of the folder that holds the root. What its path leads to may have changed
/// since it was opened.
HogTrail trailAbove(std::string_view rootPath, const OpenFolder& root)
{
    const HogTrail trail = HogTrail::of(rootPath.substr(0, rootPath.rfind('/')));
    return host::isBelowCacheTag(root.descriptor(), componentCount(rootPath)) ? trail.tagged()
                                                                              : trail;
}

} // namespace

FolderWalk::FolderWalk(FileURL root, OpenFolder folder, host::MountBarriers::Place mounts,
                       const DiskScanner& scanner, ScanLedger& ledger, std::stop_token cancellation,
                       ScanOmissions* omissions)
    : root_(std::move(root)),
      rootPath_(root_.path()),
      rootDepth_(componentCount(rootPath_)),
      isRootSkipped_(isSkippedPath(rootPath_)),
      smallFileThreshold_(scanner.smallFileThreshold),
      ledger_(ledger),
      omissions_(omissions),
      cancellation_(std::move(cancellation)),
      mounts_(mounts),
      openFolders_(std::move(folder),
                   [this] {
                       if (cancellation_.stop_requested())
                           abandon();
                       return isAbandoned();
                   }),
      mostWorkers_(mostWorkers(openFolders_.root())),
      crewSize_(std::min<std::size_t>(host::availableProcessors(), mostWorkers_), mostWorkers_),
      queues_(mostWorkers_),
      trailAboveRoot_(trailAbove(rootPath_, openFolders_.root())),
      rootNode_(NodeAssembly::leaf(root_, 0, NodeKind::directory,
                                   trailAboveRoot_.classify(root_.lastPathComponent())))
{
}

std::optional<FileNode> FolderWalk::run()
{
    Worker first;
    const Task rootTask{nullptr, 0, 0};
    queues_.push(0, {&rootTask, 1});
    employ(crewSize_.get());
    work(first);
    // Nobody employs any more, since all tasks are finished.
    helpers_.clear();
    if (failure_)
        std::rethrow_exception(failure_);
    if (isAbandoned())
        return std::nullopt;
    return rootNode_;
}

void FolderWalk::work(Worker& worker) noexcept
{
    worker.account.restart();
    while (const auto task = nextTask(worker)) {
        visit(*task, worker);
        if (!queues_.isAnyIdle())
            employ(crewSize_.note(worker.account));
        queues_.finish();
    }
}

std::optional<FolderWalk::Task> FolderWalk::nextTask(Worker& worker)
{
    if (const auto task = queues_.take(worker.index))
        return task;
    worker.place = {}; // who waits keeps nothing open
    return queues_.steal(
        worker.index, [this, &worker](const Tasks& tasks) { return shareOf(tasks, worker); },
        [&worker] { worker.account.restart(); });
}

std::pair<FolderWalk::Tasks::const_iterator, FolderWalk::Tasks::const_iterator>
FolderWalk::shareOf(const Tasks& tasks, Worker& worker) const
{
    // They wait along one way down. The oldest are the largest pieces of work, so the older
    // half of those near the root is taken: all folders there are reached in few steps.
    const auto firstBelow = [&tasks](std::size_t depth) {
        return std::partition_point(tasks.begin(), tasks.end(), [depth](const Task& task) {
            return !task.folder || task.folder->depth <= depth;
        });
    };
    const auto half = [](auto first, auto last) {
        return std::pair(first, first + (last - first + 1) / 2);
    };
    const auto lastNear = firstBelow(rootDepth_ + shortWay);
    if (lastNear != tasks.begin())
        return half(tasks.begin(), lastNear);
    // Further down only some in the uppermost folder that is open: to return to one above
    // is left to who came down from it, so that nobody climbs what he did not descend.
    const auto first = std::partition_point(lastNear, tasks.end(), [this](const Task& task) {
        return !openFolders_.placeIn(*task.folder).handle;
    });
    if (first != tasks.end())
        worker.place = openFolders_.placeIn(*first->folder);
    return worker.place.handle ? half(first, firstBelow(first->folder->depth))
                               : std::pair(tasks.end(), tasks.end());
}

void FolderWalk::employ(std::size_t workers) noexcept
{
    if (workers <= workerCount_)
        return;
    const std::lock_guard lock(crewMutex_);
    try {
        for (; workerCount_ < workers; ++workerCount_) {
            Helper& helper = *helpers_.emplace_back(std::make_unique<Helper>());
            helper.worker.index = workerCount_;
            queues_.admit(workerCount_ + 1);
            helper.thread = std::jthread([this, &helper] { work(helper.worker); });
        }
    } catch (const std::exception&) {
        // No more threads are to be had, or no memory for them: those that run do the
        // work.
        workerCount_ = mostWorkers_;
    }
}

void FolderWalk::visit(const Task& task, Worker& worker)
{
    WalkFolder* const parent = task.folder;
    std::unique_ptr<WalkFolder> folder;
    worker.tasks.clear();
    worker.failure = 0;
    try {
        std::optional<DescriptorShortage::Use> use; // ends when the handle has
        OpenFolder handle;
        if (parent) {
            OpenFolders::Claim claim(openFolders_, *parent);
            if (!isAbandoned())
                handle = claim.open(parent->names->name(task.nameOffset), worker.place);
            worker.failure = claim.reason();
            if (handle.isValid())
                use.emplace();
        }
        folder = std::make_unique<WalkFolder>();
        folder->parent = parent;
        folder->nameOffset = task.nameOffset;
        folder->slot = task.slot;
        if (!parent) {
            folder->depth = rootDepth_;
            folder->trail = trailAboveRoot_.entering(root_.lastPathComponent());
            folder->mounts = mounts_;
            if (isRootSkipped_)
                omissions_.noteSystemArea(root_);
        } else {
            const char* name = folder->name();
            folder->depth = parent->depth + 1;
            folder->mounts = parent->mounts.child(name);
            folder->package = parent->package;
            if (!folder->package) {
                const FileNode& node = parent->children->nodes()[task.slot];
                if (node.kind() == NodeKind::package) {
                    folder->package = folder.get();
                    folder->packageBytes = node.allocatedSize();
                } else {
                    folder->trail = parent->trail.entering(name);
                }
            }
        }

        const OpenFolder& opened = parent ? handle : openFolders_.root();
        if (folder->package)
            readPackageFolder(*folder, opened, worker);
        else
            readFolder(*folder, opened, worker);

        if (!worker.tasks.empty()) {
            folder->unfinished = worker.tasks.size();
            openFolders_.keep(*folder, std::move(handle), worker.tasks.size());
            queues_.push(worker.index, worker.tasks);
            (void)folder.release(); // its last subfolder finishes it
            return;
        }
    } catch (...) {
        abandon(std::current_exception());
        if (folder)
            openFolders_.forget(*folder);
    }
    if (folder)
        finish(std::move(folder));
    else
        finishUnread(parent);
}

void FolderWalk::readFolder(WalkFolder& folder, const OpenFolder& handle, Worker& worker)
{
    worker.kept.clear();
    worker.keptNames.clear();
    worker.smallNames.clear();
    worker.smallCount = 0;
    worker.smallBytes = 0;
    worker.sawCacheTag = false;
    worker.names.clear();

    const FileURL url = urlOf(folder);
    std::string pathForSkipping;
    if (folder.depth < depthOfSkipRules) {
        pathForSkipping = url.path();
        if (!pathForSkipping.ends_with('/'))
            pathForSkipping += '/';
    }
    worker.reader.start(handle);
    while (worker.reader.readBatch()) {
        worker.items.clear();
        while (const auto entry = worker.reader.next()) {
            if (isAbandoned())
                return;
            if (cancellation_.stop_requested())
                return abandon();
            if (!worker.names.add(entry->name))
                continue;
            const std::int64_t bytes = note(*entry, folder, pathForSkipping, handle, worker);
            worker.items.push_back({entry->name, bytes});
        }
        if (!ledger_.enter(url, folder.depth, worker.items, worker.report))
            return abandon();
    }
    noteGap(folder, worker);
    if (worker.sawCacheTag && host::isCacheTagged(handle.descriptor()))
        markAsCache(folder);
    makeNodes(folder, worker);
}

std::int64_t FolderWalk::note(const FolderReader::Entry& entry, const WalkFolder& folder,
                              const std::string& pathForSkipping, const OpenFolder& handle,
                              Worker& worker)
{
    const bool isBarrier = folder.mounts.child(entry.name).isBarrier();
    ItemType type = entry.type;
    std::int64_t size = 0;
    if (isBarrier) {
        // Even a look at its size might hang.
        if (type == ItemType::unknown)
            type = ItemType::folder;
    } else if (type == ItemType::other || type == ItemType::unknown) {
        const auto measured = measure(entry.name, handle, worker);
        // What cannot be measured (any more) counts as an empty file.
        type = measured ? measured->type : ItemType::other;
        size = measured && type == ItemType::other ? measured->allocatedBytes : 0;
    }
    if (type == ItemType::link)
        return 0;
    if (isRootSkipped_)
        return 0;
    if (!pathForSkipping.empty() && isSkippedPath(pathForSkipping + entry.name)) {
        if (!isBarrier)
            omissions_.noteSystemArea(FileURL(pathForSkipping + entry.name));
        return 0;
    }

    if (type == ItemType::folder) {
        NodeKind kind = NodeKind::directory;
        if (!isBarrier && host::isPackageName(entry.name)) {
            const auto measured = measure(entry.name, handle, worker);
            kind = NodeKind::package;
            size = measured ? measured->allocatedBytes : 0;
        }
        worker.kept.push_back({appendName(worker.keptNames, entry.name), size, kind, !isBarrier});
        return 0; // a package's bytes are recorded when it has been measured
    }
    worker.sawCacheTag |= !isBarrier && isCacheTagName(entry.name);
    if (size < smallFileThreshold_) {
        appendName(worker.smallNames, entry.name);
        ++worker.smallCount;
        worker.smallBytes = saturatingSum(worker.smallBytes, size);
    } else {
        worker.kept.push_back(
            {appendName(worker.keptNames, entry.name), size, NodeKind::file, false});
    }
    return size;
}

std::optional<OpenFolder::Measure> FolderWalk::measure(const char* name, const OpenFolder& handle,
                                                       Worker& worker)
{
    const auto measured = handle.measure(name);
    if (measured)
        return measured;
    if (const int reason = errno; host::isAbsence(reason))
        omissions_.noteVanished();
    else
        worker.failure = reason;
    return std::nullopt;
}

void FolderWalk::noteGap(WalkFolder& folder, const Worker& worker)
{
    const int reason = worker.failure != 0 ? worker.failure : worker.reader.error();
    if (reason == 0)
        return;
    if (host::isAbsence(reason))
        return omissions_.noteVanished();
    WalkFolder& shown = folder.package ? *folder.package : folder;
    if (!shown.hasGap.exchange(true))
        omissions_.noteUnreadable(urlOf(shown));
}

void FolderWalk::markAsCache(WalkFolder& folder)
{
    folder.trail = folder.trail.tagged();
    const HogTrail& around = folder.parent ? folder.parent->trail : trailAboveRoot_;
    NodeAssembly::setHogKind(
        nodeOf(folder),
        around.tagged().classify(folder.parent ? folder.name() : root_.lastPathComponent()));
}

void FolderWalk::makeNodes(WalkFolder& folder, Worker& worker) const
{
    if (worker.kept.empty() && worker.smallCount == 0)
        return;
    std::string& names = worker.keptNames;
    std::uint64_t aggregateOffset = 0;
    if (worker.smallCount > 0) {
        aggregateOffset = names.size();
        names.append(aggregateName).push_back('\0');
        names += worker.smallNames;
    }
    folder.names = NameBlock::make(urlOf(folder), names);
    ChildBlock* block = ChildBlock::make(worker.kept.size() + (worker.smallCount > 0 ? 1 : 0));
    folder.children = SharedRef<ChildBlock>(block);
    for (const Kept& kept : worker.kept) {
        if (kept.isEntered)
            worker.tasks.push_back({&folder, kept.nameOffset, block->nodes().size()});
        NodeAssembly::append(*block, NameBlock::url(folder.names, kept.nameOffset), kept.size,
                             kept.kind, folder.trail.classify(folder.names->name(kept.nameOffset)));
    }
    if (worker.smallCount > 0)
        NodeAssembly::appendAggregate(*block, NameBlock::url(folder.names, aggregateOffset),
                                      worker.smallBytes, worker.smallCount,
                                      folder.trail.classify(aggregateName));
}

void FolderWalk::readPackageFolder(WalkFolder& folder, const OpenFolder& handle, Worker& worker)
{
    worker.keptNames.clear();
    worker.names.clear();
    std::int64_t bytes = 0;
    worker.sawCacheTag = false;
    worker.reader.start(handle);
    while (worker.reader.readBatch()) {
        while (const auto entry = worker.reader.next()) {
            // A package is one item: a cancellation that nobody has noticed yet
            // does not interrupt it.
            if (isAbandoned())
                return worker.tasks.clear();
            if (folder.mounts.child(entry->name).isBarrier() || !worker.names.add(entry->name))
                continue;
            const auto measured = measure(entry->name, handle, worker);
            if (!measured)
                continue;
            bytes = saturatingSum(bytes, measured->allocatedBytes);
            worker.sawCacheTag |= isCacheTagName(entry->name);
            if (measured->type == ItemType::folder)
                worker.tasks.push_back({&folder, appendName(worker.keptNames, entry->name), 0});
        }
    }
    noteGap(folder, worker);
    if (worker.sawCacheTag && folder.package == &folder && host::isCacheTagged(handle.descriptor()))
        markAsCache(folder);
    std::int64_t total = folder.package->packageBytes;
    while (!folder.package->packageBytes.compare_exchange_weak(total, saturatingSum(total, bytes)))
        ;
    if (!worker.tasks.empty())
        folder.names = NameBlock::make(FileURL(), worker.keptNames);
}

void FolderWalk::finish(std::unique_ptr<WalkFolder> folder)
{
    for (;;) {
        std::int64_t size = 0;
        if (folder->package == folder.get()) {
            size = folder->packageBytes;
            ledger_.addBytes(size);
        } else if (folder->children) {
            size = arrange(*folder->children);
        }
        WalkFolder* const parent = folder->parent;
        if (folder->package == nullptr || folder->package == folder.get()) {
            FileNode& node = nodeOf(*folder);
            NodeAssembly::setSize(node, size);
            if (folder->children)
                NodeAssembly::setChildren(node, folder->children.get());
        }
        folder.reset();
        if (!parent || --parent->unfinished != 0)
            return;
        folder.reset(parent);
    }
}

void FolderWalk::finishUnread(WalkFolder* parent)
{
    if (parent && --parent->unfinished == 0)
        finish(std::unique_ptr<WalkFolder>(parent));
}

std::int64_t FolderWalk::arrange(const ChildBlock& children)
{
    const auto nodes = children.nodes();
    NodeAssembly::sort(nodes);
    std::int64_t total = 0;
    for (const FileNode& node : nodes)
        total = saturatingSum(total, node.allocatedSize());
    return total;
}

FileNode& FolderWalk::nodeOf(const WalkFolder& folder)
{
    return folder.parent ? folder.parent->children->nodes()[folder.slot] : rootNode_;
}

FileURL FolderWalk::urlOf(const WalkFolder& folder) const
{
    return folder.parent ? NameBlock::url(folder.parent->names, folder.nameOffset) : root_;
}

void FolderWalk::abandon(std::exception_ptr reason) noexcept
{
    const std::lock_guard lock(failureMutex_);
    if (reason && !failure_)
        failure_ = std::move(reason);
    isAbandoned_ = true;
}

} // namespace brisalon::detail
