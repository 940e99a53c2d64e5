#pragma once

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/VolumeStats.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brisalon {

class MountTable;

/// A volume that is stored on a disk of this machine, and where it is mounted.
struct LocalVolume {
    /// Its mount point's last name, in bytes; the whole path where several end alike.
    std::string name;
    FileURL mountPoint;
    /// Nothing for one that a program or a network stands in the way of: such a volume
    /// can hang, and is not asked.
    std::optional<VolumeStats> stats;

    /// What reads the figures of a volume: VolumeStats::read, or a test's stand-in.
    using Measure = std::function<std::optional<VolumeStats>(const FileURL& mountPoint)>;

    /// Those of the running system. Takes as long as its disks take to answer; any thread.
    static std::vector<LocalVolume> mounted();
    /// Those of a table of mounts, each once and only where it can be seen, in the order of
    /// their paths. One that was asked and gives no size is left out.
    static std::vector<LocalVolume> among(const MountTable& table, const Measure& measure);

    friend bool operator==(const LocalVolume&, const LocalVolume&) = default;
};

} // namespace brisalon
