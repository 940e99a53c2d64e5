#include "host/Volume.h"

#include "host/Folder.h"
#include "host/linux/RotatingDisk.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

namespace brisalon::host {

namespace {

/// The bytes of so many blocks; a user-space file system's nonsense must not
/// overflow.
std::int64_t bytesOf(std::uint64_t blocks, std::uint64_t blockSize) noexcept
{
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    if (blockSize == 0)
        return 0;
    return static_cast<std::int64_t>(std::min(blocks, most / blockSize) * blockSize);
}

/// A path that is too long to be given in one piece leads through its folder.
bool readStatus(std::string_view path, struct statvfs& status)
{
    if (::statvfs(std::string(path).c_str(), &status) == 0)
        return true;
    if (errno != ENAMETOOLONG)
        return false;
    OpenFolder folder = OpenFolder::at(path);
    if (!folder.isValid())
        folder = OpenFolder::at(path.substr(0, path.rfind('/')));
    return folder.isValid() && ::fstatvfs(folder.descriptor().get(), &status) == 0;
}

} // namespace

std::optional<VolumeCapacities> volumeCapacities(std::string_view path)
{
    struct statvfs status;
    if (!readStatus(path, status))
        return std::nullopt;
    // What is reserved for the administrator counts as used: users cannot have it.
    return VolumeCapacities{
        .total = bytesOf(status.f_blocks, status.f_frsize),
        .available = bytesOf(status.f_bavail, status.f_frsize),
        .reserved =
            bytesOf(std::max(status.f_bfree, status.f_bavail) - status.f_bavail, status.f_frsize),
        .availableForImportantUsage = std::nullopt,
    };
}

bool isOnRotatingDisk(const OpenFolder& folder)
{
    const auto identity = folder.identity();
    return identity &&
           isRotatingDisk(major(identity->device), minor(identity->device), "/sys/dev/block");
}

} // namespace brisalon::host
