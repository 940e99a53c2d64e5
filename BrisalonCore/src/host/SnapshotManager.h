#pragma once

#include "host/Process.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisalon::host {

/// A manager of snapshots that may be found on a machine without the system tool,
/// such as a program for them or the file system itself. It knows them by numbers.
///
/// What is not done at the deadline is given up. Immutable; any thread.
class SnapshotManager {
public:
    SnapshotManager() = default;
    SnapshotManager(const SnapshotManager&) = delete;
    SnapshotManager& operator=(const SnapshotManager&) = delete;
    virtual ~SnapshotManager() = default;

    /// Whether this manager is installed and looks after the startup volume.
    virtual bool isAvailable(Deadline deadline) const = 0;

    struct Snapshot {
        std::uint64_t number = 0;
        std::string created; ///< local time as YYYY-MM-DD HH:MM:SS
        std::string line;    ///< what the manager says of it
    };
    struct Listing {
        std::vector<Snapshot> snapshots;
        std::string rawOutput;   ///< all that the manager says
        std::string complaint;   ///< empty when all went well
        bool hasAnswered = true; ///< false when the deadline cut it short
    };
    virtual Listing list(Deadline deadline) const = 0;

    /// Deletes the snapshot of that number.
    virtual ProcessResult erase(std::uint64_t number, Deadline deadline) const = 0;
};

/// This machine's managers, the preferred one first.
std::vector<std::shared_ptr<const SnapshotManager>> snapshotManagers();

} // namespace brisalon::host
