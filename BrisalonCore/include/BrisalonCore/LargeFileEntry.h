#pragma once

#include "BrisalonCore/FileNode.h"

namespace brisalon {

/// One row of the list of largest files: a snapshot of a node's values.
struct LargeFileEntry {
    FileURL url;
    std::string name;
    std::int64_t allocatedSize = 0;
    HogKind hogKind = HogKind::none;
    Risk risk = Risk::unknown;

    /// The file's path: the identity that its node has.
    std::string id() const { return url.path(); }

    friend bool operator==(const LargeFileEntry&, const LargeFileEntry&) = default;
};

} // namespace brisalon
