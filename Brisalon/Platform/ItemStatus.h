#pragma once

#include "Brisalon/Platform/ItemIdentity.h"

#include "BrisalonCore/FileURL.h"

#include <cstdint>
#include <optional>

namespace brisalon {

/// What the file system says of one item itself, at the moment of asking: of a
/// link and not of what it leads to, of a folder and not of what is in it.
struct ItemStatus {
    ItemIdentity identity;
    /// Bytes that it occupies on disk.
    std::int64_t allocatedBytes = 0;

    /// Nothing when there is no such item or it cannot be reached. Links of the
    /// folders above are followed; the path may have any length. Any thread.
    static std::optional<ItemStatus> read(const FileURL& url);
};

} // namespace brisalon
