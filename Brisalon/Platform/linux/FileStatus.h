#pragma once

#include "Brisalon/Platform/ItemStatus.h"

#include <compare>
#include <cstdint>
#include <optional>

#include <sys/types.h>

namespace brisalon {

/// A mount of a file system. What one mount shows can be renamed only within it,
/// also when another mount shows the same file system.
struct MountIdentity {
    std::uint64_t device = 0;
    std::uint64_t mount = 0; ///< 0 when the kernel does not tell

    friend auto operator<=>(const MountIdentity&, const MountIdentity&) = default;
};

/// What the kernel says of one item, links not followed.
struct FileStatus {
    ItemStatus item;
    MountIdentity mount;
    mode_t mode = 0;
    uid_t owner = 0;

    /// Of the item of that name in the folder, or of the folder itself for the empty
    /// name. Nothing when there is none, with the reason in errno.
    static std::optional<FileStatus> read(int folder, const char* name) noexcept;
};

} // namespace brisalon
