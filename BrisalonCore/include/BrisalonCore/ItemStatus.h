#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brisalon {

class Descriptor;

/// What tells one item of the file system from every other, whatever its path.
///
/// An item keeps its identity for as long as it exists, also when it is renamed,
/// written to or given other permissions. File systems hand out the number of a
/// removed item again, often to the very next one, so the number alone would take
/// a new file for the old one: the time at which the item was made tells them
/// apart, on file systems that keep it.
struct ItemIdentity {
    enum class Kind : std::uint8_t { file, folder, link, other };

    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// When the item was made, in nanoseconds since 1970; 0 when that is not kept.
    std::int64_t birth = 0;
    Kind kind = Kind::other;

    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;

    /// Of what is open. An identity does not change, so that no server is asked for it
    /// again. Nothing when it cannot be told.
    static std::optional<ItemIdentity> of(const Descriptor& item) noexcept;
};

/// A mount of a file system. What one mount shows can be renamed only within it,
/// also when another mount shows the same file system.
struct MountIdentity {
    std::uint64_t device = 0; ///< of the item that was asked; a volume may have several
    std::uint64_t mount = 0;  ///< as in MountTable; 0 when the system does not tell

    friend auto operator<=>(const MountIdentity&, const MountIdentity&) = default;
};

/// What the file system says of one item itself, at the moment of asking: of a
/// link and not of what it leads to, of a folder and not of what is in it. Asking
/// triggers no automount at the item. Any thread.
struct ItemStatus {
    ItemIdentity identity;
    /// Bytes that it occupies on disk.
    std::int64_t allocatedBytes = 0;
    MountIdentity mount;
    /// Whether a file system, or a part of one, is mounted on the item itself.
    bool isMountRoot = false;
    /// Its type and permissions, and the user that it belongs to, as in stat(2).
    std::uint32_t mode = 0;
    std::uint32_t owner = 0;

    /// Of the item of that name in the folder, or of the folder itself for the empty
    /// name. Nothing when there is none, with the reason in errno.
    static std::optional<ItemStatus> read(const Descriptor& folder, const char* name) noexcept;

    /// Of the item at an absolute path of any length, where links of the folders
    /// above are followed. Nothing when there is none or it cannot be reached.
    static std::optional<ItemStatus> read(std::string_view path);
};

} // namespace brisalon
