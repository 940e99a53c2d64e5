#pragma once

#include "host/SnapshotManager.h"

namespace brisalon::host {

/// The snapshots that snapper keeps of the subvolume at a mount point, through its
/// command-line tool (version 0.8.6 or newer, which can print CSV). See snapper(8).
class SnapperSnapshots : public SnapshotManager {
public:
    SnapperSnapshots(std::string tool, std::string mountPoint);

    /// Whether the tool runs and has a configuration for the mount point. One that does
    /// not answer may have: nothing else may delete its snapshots behind its back.
    bool isAvailable(Deadline deadline) const override;
    Listing list(Deadline deadline) const override;
    ProcessResult erase(std::uint64_t number, Deadline deadline) const override;

private:
    struct Configuration {
        std::optional<std::string> name;
        bool hasAnswered;
    };
    Configuration configuration(Deadline deadline) const;

    std::string tool_;
    std::string mountPoint_;
};

} // namespace brisalon::host
