#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brisalon {

/// How a move to the Trash went.
struct CleanReport {
    std::int64_t movedCount = 0;
    /// What the moved items themselves occupied on disk just before, without what is
    /// in a folder.
    std::int64_t movedBytes = 0;
    /// Texts for the user, in bytes like the names in them: what the system said, if
    /// it said anything, then one for each item that was not moved, in order.
    std::vector<std::string> failures;

    friend bool operator==(const CleanReport&, const CleanReport&) = default;
};

} // namespace brisalon
