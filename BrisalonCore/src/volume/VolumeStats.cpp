#include "BrisalonCore/VolumeStats.h"

#include "host/Volume.h"

#include <algorithm>
#include <limits>

namespace brisalon {

std::int64_t VolumeStats::used() const noexcept
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (free >= total)
        return 0;
    return free < 0 && total > most + free ? most : total - free;
}

double VolumeStats::usedFraction() const noexcept
{
    if (total < 1)
        return 0;
    return std::min(static_cast<double>(used()) / static_cast<double>(total), 1.0);
}

std::optional<VolumeStats> VolumeStats::read(const FileURL& url)
{
    const auto capacities = host::volumeCapacities(url.path());
    if (!capacities)
        return std::nullopt;
    return from({.total = capacities->total,
                 .availableForImportantUsage = capacities->availableForImportantUsage,
                 .available = capacities->available});
}

std::int64_t VolumeStats::reserved(const FileURL& url)
{
    const auto capacities = host::volumeCapacities(url.path());
    return capacities ? capacities->reserved : 0;
}

std::optional<VolumeStats> VolumeStats::from(const Capacities& capacities) noexcept
{
    if (!capacities.total)
        return std::nullopt;
    const std::int64_t important = capacities.availableForImportantUsage.value_or(0);
    if (!capacities.available || important > 0)
        return VolumeStats{*capacities.total, std::max<std::int64_t>(important, 0)};
    return VolumeStats{*capacities.total, *capacities.available};
}

} // namespace brisalon
