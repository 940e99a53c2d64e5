#pragma once

#include "BrisalonCore/VolumeStats.h"

#include <optional>
#include <string_view>

namespace brisalon::host {

/// The capacities of the volume that holds the item at `path` (of any length);
/// nothing when the system does not tell.
std::optional<VolumeStats::Capacities> volumeCapacities(std::string_view path);

/// Whether the folder at `path` is stored on a rotating disk of this machine,
/// where several readers at once only make the heads seek. False for virtual
/// disks, whatever they claim, and when the system does not tell.
bool isOnRotatingDisk(std::string_view path);

} // namespace brisalon::host
