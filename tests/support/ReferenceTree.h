#pragma once

#include "BrisalonCore/FileNode.h"

#include <cstdint>
#include <string>

namespace brisalon::tests {

/// The tree of a scan of the folder, which is there; without reports.
FileNode scanned(const FileURL& root, std::int64_t smallFileThreshold = 0);

/// What a scan of the folder must yield, worked out in the plainest way: by
/// recursion, whole paths and a status request for everything. Adds the items that the
/// scan must count. Only for trees of moderate depth.
FileNode referenceTree(const std::string& folder, std::int64_t smallFileThreshold,
                       std::int64_t& count);

} // namespace brisalon::tests
