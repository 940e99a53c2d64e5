#pragma once

#include "BrisalonCore/Deadline.h"
#include "BrisalonCore/SnapshotListResult.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

/// What may answer for local snapshots on a machine without the system's tool.
///
/// Both operations ask anew, and a date token names the same snapshot as in the
/// listing that showed it, or none. What is not done at the deadline is given up soon
/// after. Immutable; any thread.
class SnapshotProvider {
public:
    SnapshotProvider() = default;
    SnapshotProvider(const SnapshotProvider&) = delete;
    SnapshotProvider& operator=(const SnapshotProvider&) = delete;
    virtual ~SnapshotProvider() = default;

    /// Whether it can answer on this machine.
    virtual bool isAvailable(Deadline deadline) const = 0;

    /// As SnapshotService::listLocalSnapshots.
    virtual SnapshotListResult list(Deadline deadline) const = 0;

    /// As SnapshotService::deleteLocalSnapshot.
    virtual std::optional<std::string> remove(std::string_view dateToken,
                                              Deadline deadline) const = 0;
};

} // namespace brisalon
