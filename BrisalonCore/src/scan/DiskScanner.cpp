#include "BrisalonCore/DiskScanner.h"

#include "BrisalonCore/MountTable.h"
#include "base/DescriptorShortage.h"
#include "host/Folder.h"
#include "scan/FolderWalk.h"
#include "scan/ScanLedger.h"

#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>

namespace brisalon {

ScanResult DiskScanner::scan(const FileURL& root, const ProgressCallback& progress,
                             std::stop_token cancellation, ScanOmissions* omissions) const
{
    if (omissions)
        *omissions = {};
    if (cancellation.stop_requested())
        return TaskCancelled{};
    FileURL resolved;
    std::optional<host::PathState> state;
    int error = 0;
    std::optional<MountTable> mounts;
    host::OpenFolder folder;
    const auto lookAtRoot = [&] {
        resolved = root.resolvingSymbolicLinks().standardized();
        state = host::pathState(resolved.path());
        error = errno;
        mounts = MountTable::current();
        // Last, so that a refusal before leaves nothing open.
        if (state == host::PathState::folder)
            folder = host::OpenFolder::at(resolved.path());
    };
    if (!detail::DescriptorShortage::outlast(lookAtRoot,
                                             [&] { return cancellation.stop_requested(); }))
        return ScanError::cancelled;
    if (!state)
        throw std::system_error(error, std::generic_category());
    if (state == host::PathState::missing)
        return ScanError::rootMissing;
    if (state == host::PathState::other)
        return ScanError::notDirectory;

    detail::ScanLedger ledger(progress, progressEvery, cancellation);
    detail::FolderWalk walk(resolved, std::move(folder), *mounts, *this, ledger,
                            std::move(cancellation), omissions);
    ledger.reportRoot(resolved);
    auto tree = walk.run();
    if (!tree)
        return ScanError::cancelled;
    ledger.reportRoot(resolved);
    return *std::move(tree);
}

} // namespace brisalon
