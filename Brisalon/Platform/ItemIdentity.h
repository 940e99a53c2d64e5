#pragma once

#include <cstdint>

namespace brisalon {

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
};

} // namespace brisalon
