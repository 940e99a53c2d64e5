#pragma once

#include <cstdint>

namespace brisalon {

/// Why an item was not moved to the Trash. It is where it was, as it was.
struct TrashFailure {
    enum class Reason : std::uint8_t {
        changed, ///< gone, or no longer the item that was recorded
        noTrash, ///< the volume has no trash folder that can be used
        refused, ///< the system does not let the item go
    };

    Reason reason;
    int error = 0; ///< what the system gave as its reason; 0 when it gave none

    friend bool operator==(const TrashFailure&, const TrashFailure&) = default;
};

} // namespace brisalon
