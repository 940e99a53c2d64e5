#include "BrisalonCore/LocalVolume.h"

#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"
#include "host/FileSystemNature.h"

#include <algorithm>
#include <map>
#include <utility>

namespace brisalon {

namespace {

/// Every volume on a disk, by its mount point; of several that show the same, the first.
std::map<std::string_view, const Mount*> volumes(const MountTable& table)
{
    std::map<std::string_view, const Mount*> byPoint;
    for (const Mount& mount : table.mounts())
        if (host::natureOf(mount.type) == host::Nature::disk && mount.showsVolume() &&
            table.at(mount.point) == &mount)
            byPoint.emplace(mount.point, &mount);
    std::vector<StoredPlace> shown;
    std::erase_if(byPoint, [&shown](const auto& entry) {
        const bool isKnown = std::ranges::find(shown, entry.second->shown()) != shown.end();
        shown.push_back(entry.second->shown());
        return isKnown;
    });
    return byPoint;
}

/// Whether a look at the mount's point touches nothing that can hang.
bool answers(const Mount& mount, const MountTable& table)
{
    return std::ranges::none_of(table.way(mount.point),
                                [](const Mount* passed) { return host::canHang(passed->type); });
}

/// The last name of a path; "/" has only itself.
std::string_view shortName(std::string_view point)
{
    return point.substr(point.size() == 1 ? 0 : point.rfind('/') + 1);
}

} // namespace

std::vector<LocalVolume> LocalVolume::mounted()
{
    return among(MountTable::current(), VolumeStats::read);
}

std::vector<LocalVolume> LocalVolume::among(const MountTable& table, const Measure& measure)
{
    std::vector<LocalVolume> result;
    std::map<std::string_view, int> ends;
    for (const auto& [point, mount] : volumes(table)) {
        LocalVolume volume{std::string(point), FileURL(point), std::nullopt};
        if (answers(*mount, table)) {
            volume.stats = measure(volume.mountPoint);
            if (!volume.stats || volume.stats->total < 1)
                continue;
        }
        ++ends[shortName(point)];
        result.push_back(std::move(volume));
    }
    for (LocalVolume& volume : result)
        if (const std::string_view name = shortName(volume.name); ends[name] == 1)
            volume.name = std::string(name);
    return result;
}

} // namespace brisalon
