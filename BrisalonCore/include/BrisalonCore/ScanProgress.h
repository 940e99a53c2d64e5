#pragma once

#include <cstdint>
#include <string>

namespace brisalon {

/// One report of a running scan.
struct ScanProgress {
    /// Items met so far, every one counted, whether kept or skipped.
    std::int64_t visitedCount = 0;
    /// The path, as bytes, of the item being visited; the root's in the first
    /// and the last report.
    std::string currentPath;
    /// The allocated bytes recorded so far.
    std::int64_t bytesFound = 0;

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

} // namespace brisalon
