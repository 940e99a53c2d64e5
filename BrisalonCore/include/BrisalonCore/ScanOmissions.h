#pragma once

#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/MountReport.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brisalon {

/// What a scan met, or knew of, and left out of its tree. The lists are bounded, the
/// counts are of all.
struct ScanOmissions {
    /// How many folders each list names at most.
    static constexpr std::size_t limit = 100;

    /// A folder of which not everything could be read, or a package.
    struct Folder {
        FileURL url;
        /// Its type and permissions, and the user that it belongs to, as in stat(2); 0
        /// when even that cannot be told.
        std::uint32_t mode = 0;
        std::uint32_t owner = 0;
    };
    /// Those that were met first.
    std::vector<Folder> unreadable;
    std::size_t unreadableCount = 0;

    /// Items that were gone when they were to be measured or opened.
    std::size_t vanishedCount = 0;

    /// What SkipRules keep out and no mount would.
    std::vector<FileURL> systemAreas;

    MountReport mounts;

    /// Takes over what another scan of that folder has left out, and of all mounts what it
    /// knows. Of what vanished, and of more unreadable folders than are listed, nobody
    /// knows whether they were in that folder; they stay.
    void replace(const FileURL& folder, ScanOmissions now);

    /// What of the tree lies on the root's own volume. Mounts in packages are taken for
    /// a part of what is round them.
    std::int64_t bytesOnRootVolume(const FileNode& tree) const;
};

} // namespace brisalon
