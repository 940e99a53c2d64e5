#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brisalon::host {

class OpenFolder;

/// What a file system reports of a volume, in bytes.
struct VolumeCapacities {
    std::int64_t total = 0;
    std::int64_t available = 0;
    /// Free, but kept back from ordinary users.
    std::int64_t reserved = 0;
    /// Free space including what the system would clear on demand, on systems that do
    /// so.
    std::optional<std::int64_t> availableForImportantUsage;
};

/// The capacities of the volume that holds the item at `path` (of any length);
/// nothing when the system does not tell.
std::optional<VolumeCapacities> volumeCapacities(std::string_view path);

/// Whether the folder is stored on a rotating disk of this machine,
/// where several readers at once only make the heads seek. False for virtual
/// disks, whatever they claim, and when the system does not tell.
bool isOnRotatingDisk(const OpenFolder& folder);

} // namespace brisalon::host
