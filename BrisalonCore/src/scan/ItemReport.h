#pragma once

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/ScanProgress.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// The reports that one worker makes, one after the other in the same place.
///
/// A worker goes on near to where it was, so only the end of the path changes from report
/// to report, and only that is composed: in a tree of a million levels thousands of
/// reports name paths of megabytes. For folders of one walk alone. One thread.
class ItemReport {
public:
    /// The report of an item of that name in the folder, which lies that deep (counted
    /// from anywhere above the walk's root). Valid until the next one.
    const ScanProgress& of(const FileURL& folder, std::size_t depth, std::string_view name,
                           std::int64_t visitedCount, std::int64_t bytesFound);

private:
    void enter(const FileURL& folder, std::size_t depth);

    ScanProgress report_;
    FileURL folder_; ///< of the last report; empty before the first
    std::size_t depth_ = 0;
    std::size_t folderLength_ = 0; ///< of the folder's path within the report's, 0 for "/"
};

} // namespace brisalon::detail
