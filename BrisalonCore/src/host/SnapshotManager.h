#pragma once

#include "host/Process.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brisalon::host {

/// A manager of snapshots that may be found on a machine without the system tool,
/// such as a program for them or the file system itself. It knows them by numbers.
///
/// Immutable; any thread.
class SnapshotManager {
public:
    SnapshotManager() = default;
    SnapshotManager(const SnapshotManager&) = delete;
    SnapshotManager& operator=(const SnapshotManager&) = delete;
    virtual ~SnapshotManager() = default;

    /// Whether this manager is installed and looks after the startup volume.
    virtual bool isAvailable() const = 0;

    struct Snapshot {
        std::uint64_t number = 0;
        std::string created; ///< local time as YYYY-MM-DD HH:MM:SS
        std::string line;    ///< what the manager says of it
    };
    struct Listing {
        std::vector<Snapshot> snapshots;
        std::string rawOutput; ///< all that the manager says
        std::string complaint; ///< empty when all went well
    };
    virtual Listing list() const = 0;

    /// Deletes the snapshot of that number.
    virtual ProcessResult erase(std::uint64_t number) const = 0;
};

/// This machine's managers, the preferred one first; each command that they run may
/// take that long.
std::vector<std::shared_ptr<const SnapshotManager>>
snapshotManagers(std::chrono::milliseconds timeLimit);

} // namespace brisalon::host
