#pragma once

#include "BrisalonCore/LargeFileEntry.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace brisalon {

/// What the hogs of one kind take together, and where.
struct HogSum {
    HogKind kind = HogKind::none;
    std::int64_t allocatedSize = 0; ///< of all places
    std::size_t placeCount = 0;
    std::vector<LargeFileEntry> places; ///< the largest of them, largest first

    friend bool operator==(const HogSum&, const HogSum&) = default;
};

/// Sums up a finished tree by the kinds of its hogs. Pure; any thread; no file-system
/// access; no recursion.
class HogSummary {
public:
    HogSummary() = delete;

    /// One sum for each kind but `none` that takes any space, largest first, equal ones
    /// in the order of the kinds; each with its `placeLimit` largest places, equal ones
    /// in pre-order.
    ///
    /// A place is an outermost node that is a hog. What lies in it counts with it,
    /// whatever its own kind, so that no byte counts twice. One pass.
    static std::vector<HogSum> of(const FileNode& root, std::size_t placeLimit);

    /// What may go without a second thought: the sums of the kinds of risk `safe`.
    static std::int64_t safeBytes(std::span<const HogSum> sums) noexcept;
};

} // namespace brisalon
