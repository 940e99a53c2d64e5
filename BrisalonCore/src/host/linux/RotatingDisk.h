#pragma once

#include <filesystem>

namespace brisalon::host {

/// Whether a block device is, or lies on, a rotating disk of this machine.
///
/// Partitions are judged by their disk, mapped and striped devices by what they
/// are made of. Virtual disks count as not rotating: most claim to rotate by
/// default, whatever stores them. False as well for what is no block device.
/// `devices` is the system's folder of block devices by number
/// ("/sys/dev/block").
bool isRotatingDisk(unsigned major, unsigned minor, const std::filesystem::path& devices);

} // namespace brisalon::host
