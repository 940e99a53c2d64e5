#include "host/linux/BtrfsSnapshots.h"
#include "host/linux/SnapperSnapshots.h"

#include <array>
#include <filesystem>

namespace brisalon::host {

namespace {

/// The path of an installed tool. Systems differ in the folder; the user's own
/// search path is not asked, since what deletes must be the system's.
std::string installed(const std::string& tool)
{
    static constexpr std::array<const char*, 3> folders{"/usr/bin/", "/usr/sbin/", "/sbin/"};
    std::error_code error;
    for (const char* folder : folders)
        if (std::filesystem::exists(folder + tool, error))
            return folder + tool;
    return folders.front() + tool;
}

} // namespace

std::vector<std::shared_ptr<const SnapshotManager>> snapshotManagers()
{
    // Where snapper manages the file system's snapshots it has to hear of deletions.
    return {
        std::make_shared<SnapperSnapshots>(installed("snapper"), "/"),
        std::make_shared<BtrfsSnapshots>(installed("btrfs"), "/"),
    };
}

} // namespace brisalon::host
