#pragma once

#include "host/SnapshotManager.h"

namespace brisalon::host {

/// The snapshots among the subvolumes of the btrfs file system at a mount point. The
/// kernel is asked for them (btrfs-ioctl(2)), which only the administrator may do;
/// the deletion is asked of the tool of btrfs-progs.
///
/// People see only the date of what they are about to delete. What is a snapshot to
/// the file system but not to them is left out: what is mounted, such as a running
/// system that has been rolled back (nothing else would prevent its deletion), and
/// what containers and machines stand on.
class BtrfsSnapshots : public SnapshotManager {
public:
    BtrfsSnapshots(std::string tool, std::string mountPoint);

    /// Whether that is a btrfs file system and the tool is there.
    bool isAvailable(Deadline deadline) const override;
    Listing list(Deadline deadline) const override;
    ProcessResult erase(std::uint64_t number, Deadline deadline) const override;

private:
    std::string tool_;
    std::string mountPoint_;
};

} // namespace brisalon::host
