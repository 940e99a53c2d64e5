#pragma once

#include "host/SnapshotManager.h"

namespace brisalon::host {

/// The snapshots that snapper keeps of the subvolume at a mount point, through its
/// command-line tool (version 0.8.6 or newer, which can print CSV). See snapper(8).
class SnapperSnapshots : public SnapshotManager {
public:
    SnapperSnapshots(std::string tool, std::string mountPoint, std::chrono::milliseconds timeLimit);

    /// Whether the tool runs and has a configuration for the mount point.
    bool isAvailable() const override;
    Listing list() const override;
    ProcessResult erase(std::uint64_t number) const override;

private:
    std::optional<std::string> configuration() const;

    std::string tool_;
    std::string mountPoint_;
    std::chrono::milliseconds timeLimit_;
};

} // namespace brisalon::host
