#include "BrisalonCore/DiskScanner.h"

#include "host/Folder.h"
#include "scan/FolderWalk.h"
#include "scan/ScanLedger.h"

#include <utility>

namespace brisalon {

ScanResult DiskScanner::scan(const FileURL& root, const ProgressCallback& progress,
                             std::stop_token cancellation) const
{
    if (cancellation.stop_requested())
        return TaskCancelled{};
    const FileURL resolved = root.resolvingSymbolicLinks().standardized();
    switch (host::pathState(resolved.path())) {
    case host::PathState::missing:
        return ScanError::rootMissing;
    case host::PathState::other:
        return ScanError::notDirectory;
    case host::PathState::folder:
        break;
    }
    detail::ScanLedger ledger(progress, progressEvery, cancellation);
    ledger.reportRoot(resolved);
    detail::FolderWalk walk(resolved, *this, ledger, std::move(cancellation));
    auto tree = walk.run();
    if (!tree)
        return ScanError::cancelled;
    ledger.reportRoot(resolved);
    return *std::move(tree);
}

} // namespace brisalon
