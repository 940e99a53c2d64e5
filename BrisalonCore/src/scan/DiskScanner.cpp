#include "BrisalonCore/DiskScanner.h"

#include "BrisalonCore/LargeFiles.h"
#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"
#include "BrisalonCore/TreeGraft.h"
#include "base/DescriptorShortage.h"
#include "host/Folder.h"
#include "host/MountBarriers.h"
#include "scan/FolderWalk.h"
#include "scan/ScanLedger.h"

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

namespace brisalon {

using host::MountBarriers;
using host::PathState;

namespace {

/// What is found at the folder where a scan begins.
struct Start {
    FileURL url;
    std::optional<PathState> state;
    int error = 0; ///< why there is no state
    host::OpenFolder folder;

    void look(FileURL where)
    {
        url = std::move(where);
        state = host::pathState(url.path());
        error = errno;
    }
    bool isFolder() const
    {
        if (!state)
            throw std::system_error(error, std::generic_category());
        return state == PathState::folder;
    }
    void open()
    {
        if (state == PathState::folder)
            folder = host::OpenFolder::at(url.path());
    }

    /// Nothing when the walk was cancelled.
    std::optional<FileNode> walk(const DiskScanner& scanner, MountBarriers::Place mounts,
                                 const DiskScanner::ProgressCallback& progress,
                                 const std::stop_token& cancellation, ScanOmissions* omissions)
    {
        detail::ScanLedger ledger(progress, scanner.progressEvery, cancellation);
        detail::FolderWalk walk(url, std::move(folder), mounts, scanner, ledger, cancellation,
                                omissions);
        ledger.reportRoot(url);
        auto tree = walk.run();
        if (tree)
            ledger.reportRoot(url);
        return tree;
    }
};

/// The place of `path`, at or below `root`, among the barriers of a scan of `root`; nothing
/// when it lies behind one.
std::optional<MountBarriers::Place> placeOf(std::string_view path, std::string_view root,
                                            const MountBarriers& barriers)
{
    MountBarriers::Place place = barriers.root();
    for (const std::string_view name : paths::components(paths::relative(path, root))) {
        if (place.isBarrier())
            return std::nullopt;
        place = place.child(name);
    }
    return place;
}

bool leadsThroughLinks(const FileURL& url)
{
    return url.resolvingSymbolicLinks().path() != url.path();
}

FileNode emptied(const FileNode& folder)
{
    return {folder.url(), folder.name(), 0, folder.kind(), folder.hogKind(), folder.risk(), {}, {}};
}

} // namespace

ScanResult DiskScanner::scan(const FileURL& root, const ProgressCallback& progress,
                             std::stop_token cancellation, ScanOmissions* omissions) const
{
    if (omissions)
        *omissions = {};
    if (cancellation.stop_requested())
        return TaskCancelled{};
    Start start;
    std::optional<MountTable> mounts;
    const auto look = [&] {
        start.look(root.resolvingSymbolicLinks().standardized());
        mounts = MountTable::current();
        // Last, so that a refusal before leaves nothing open.
        start.open();
    };
    if (!detail::DescriptorShortage::outlast(look, [&] { return cancellation.stop_requested(); }))
        return ScanError::cancelled;
    if (!start.isFolder())
        return start.state == PathState::missing ? ScanError::rootMissing : ScanError::notDirectory;
    const MountBarriers barriers(*mounts, start.url.path(),
                                 omissions ? &omissions->mounts : nullptr);
    auto tree = start.walk(*this, barriers.root(), progress, cancellation, omissions);
    return tree ? ScanResult(*std::move(tree)) : ScanError::cancelled;
}

ScanResult DiskScanner::rescan(const FileNode& tree, const FileURL& folder,
                               const ProgressCallback& progress, std::stop_token cancellation,
                               ScanOmissions* omissions) const
{
    if (cancellation.stop_requested())
        return TaskCancelled{};
    const std::string path = folder.path();
    const std::string root = tree.url().path();
    const FileNode* const known = LargeFiles::find(path, tree);
    if (!known || known->kind() != NodeKind::directory)
        return ScanError::rootMissing;
    Start whole;
    Start part;
    std::optional<MountBarriers> barriers;
    std::optional<MountBarriers::Place> place;
    ScanOmissions omitted;
    const auto look = [&] {
        whole.look(tree.url());
        omitted.mounts = {};
        barriers.emplace(MountTable::current(), root, &omitted.mounts);
        place = placeOf(path, root, *barriers);
        // Not even a look at what the scan does not enter.
        if (!place || place->isBarrier())
            return;
        part.look(folder);
        if (leadsThroughLinks(folder))
            part.state = PathState::other;
        part.open();
    };
    if (!detail::DescriptorShortage::outlast(look, [&] { return cancellation.stop_requested(); }))
        return ScanError::cancelled;
    if (!whole.isFolder())
        return ScanError::rootMissing;
    std::optional<FileNode> now;
    if (place && place->isBarrier()) {
        now = emptied(*known);
    } else if (place && part.isFolder()) {
        now = part.walk(*this, *place, progress, cancellation, &omitted);
        if (!now)
            return ScanError::cancelled;
    }
    auto result = TreeGraft::graft(tree, path, std::move(now));
    if (omissions && result)
        omissions->replace(folder, std::move(omitted));
    return result ? ScanResult(*std::move(result)) : ScanError::rootMissing;
}

} // namespace brisalon
