#pragma once

#include <cerrno>
#include <cstdint>

namespace brisalon {

/// Why an item was not moved to the Trash. Unless the reason says otherwise, it is where
/// it was, as it was.
struct TrashFailure {
    enum class Reason : std::uint8_t {
        changed,     ///< gone, or no longer the item that was recorded
        noTrash,     ///< the volume has no trash folder that can be used
        holdsVolume, ///< a volume is mounted in it, which would go along
        refused,     ///< the system does not let the item go
        /// At the last moment another item took its name, arrived in its place, and
        /// cannot go back: that one lies in the Trash and can be restored.
        swapped,
    };

    Reason reason;
    int error = 0; ///< what the system gave as its reason; 0 when it gave none

    /// Of an item that was not found, for the system's reason.
    static TrashFailure unreached(int error) noexcept
    {
        // The way there may be of other folders by now, or of links.
        if (error == ENOENT || error == ENOTDIR || error == ELOOP)
            return {Reason::changed};
        return {Reason::refused, error};
    }

    friend bool operator==(const TrashFailure&, const TrashFailure&) = default;
};

} // namespace brisalon
