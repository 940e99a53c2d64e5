#pragma once

#include "BrisalonCore/SnapshotProvider.h"
#include "host/SnapshotManager.h"

#include <memory>

namespace brisalon::detail {

/// The snapshots of a manager that knows them by numbers, under date tokens.
///
/// Snapshots of one second, which share a plain token, get others (the seconds, 60 to
/// 99, follow from the number), so that none of them is taken for one that is gone.
/// Those that no seconds are left for are not listed.
class ManagedSnapshots final : public SnapshotProvider {
public:
    explicit ManagedSnapshots(std::shared_ptr<const host::SnapshotManager> manager);

    bool isAvailable(Deadline deadline) const override;
    SnapshotListResult list(Deadline deadline) const override;
    std::optional<std::string> remove(std::string_view dateToken, Deadline deadline) const override;

private:
    std::shared_ptr<const host::SnapshotManager> manager_;
};

/// What a deletion reports to the user: nothing after exit status 0, otherwise what
/// the tool said, or that the snapshot could not be deleted.
std::optional<std::string> deletionFailure(const host::ProcessResult& result,
                                           std::string_view dateToken);

} // namespace brisalon::detail
