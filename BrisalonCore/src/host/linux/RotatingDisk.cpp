#include "host/linux/RotatingDisk.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <string_view>

namespace brisalon::host {

namespace {

namespace fs = std::filesystem;

/// What virtual machines' disks have in their maker's or model's name.
constexpr std::array<std::string_view, 7> virtualMakers{
    "QEMU", "VBOX", "VMware", "Virtual", "Msft", "Xen", "Google",
};

/// Mapped devices stand on others at most this often; more is a fault.
constexpr int deepestStack = 16;

std::string firstLine(const fs::path& file)
{
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

bool isVirtual(const fs::path& disk)
{
    const std::string location = disk.string();
    if (location.find("/virtio") != std::string::npos ||
        location.find("/devices/virtual/") != std::string::npos ||
        location.find("/vbd-") != std::string::npos)
        return true;
    const std::string maker = firstLine(disk / "device/vendor") + firstLine(disk / "device/model");
    return std::ranges::any_of(virtualMakers, [&maker](std::string_view name) {
        return maker.find(name) != std::string::npos;
    });
}

/// `device` is a block device's folder, or a link to it.
bool isRotating(const fs::path& device, int stack)
{
    std::error_code error;
    fs::path disk = fs::canonical(device, error);
    if (error || stack > deepestStack)
        return false;
    if (fs::exists(disk / "partition", error))
        disk = disk.parent_path();
    bool hasParts = false;
    for (fs::directory_iterator part(disk / "slaves", error), end; part != end;
         part.increment(error)) {
        if (isRotating(part->path(), stack + 1))
            return true;
        hasParts = true;
    }
    return !hasParts && firstLine(disk / "queue/rotational") == "1" && !isVirtual(disk);
}

} // namespace

bool isRotatingDisk(unsigned major, unsigned minor, const fs::path& devices)
{
    return isRotating(devices / (std::to_string(major) + ':' + std::to_string(minor)), 0);
}

} // namespace brisalon::host
