#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstdint>
#include <optional>

namespace brisalon {

/// How large a volume is and how much of it is free, in bytes.
struct VolumeStats {
    std::int64_t total = 0;
    std::int64_t free = 0;

    /// total − free, never negative.
    std::int64_t used() const noexcept;
    /// used ÷ total, at most 1; 0 for a volume without a size.
    double usedFraction() const noexcept;

    /// The figures of the volume that holds the item, or nothing when they
    /// cannot be read. Any thread.
    static std::optional<VolumeStats> read(const FileURL& url);

    /// What the item's volume keeps back from ordinary users of the space that is free:
    /// a part of used(). 0 when that cannot be read. Any thread.
    static std::int64_t reserved(const FileURL& url);

    /// What a file system reports of a volume, each figure in bytes or absent.
    struct Capacities {
        std::optional<std::int64_t> total;
        /// Free space including what the system would clear on demand.
        std::optional<std::int64_t> availableForImportantUsage;
        std::optional<std::int64_t> available;
    };
    /// Nothing without a total. `free` is the figure for important usage when
    /// that is positive, else the plain one; without a plain one, the figure for
    /// important usage, floored at 0.
    static std::optional<VolumeStats> from(const Capacities& capacities) noexcept;

    friend bool operator==(const VolumeStats&, const VolumeStats&) = default;
};

} // namespace brisalon
