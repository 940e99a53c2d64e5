#pragma once

#include "Brisalon/Platform/FileAccess.h"

#include <set>
#include <string>
#include <vector>

namespace brisalon {

/// A desktop that hides private places and lets read what it is told to, for tools
/// and tests.
class MemoryFileAccess final : public FileAccess {
public:
    bool isHiding = true;
    std::set<std::string> readablePaths;
    std::set<std::string> existingPaths;
    /// The paths that were asked for, in order.
    mutable std::vector<std::string> asked;

    bool hidesPrivatePlaces() const override { return isHiding; }
    bool isReadable(const FileURL& url) const override
    {
        asked.push_back(url.path());
        return readablePaths.contains(asked.back());
    }
    bool exists(const FileURL& url) const override { return existingPaths.contains(url.path()); }
};

} // namespace brisalon
