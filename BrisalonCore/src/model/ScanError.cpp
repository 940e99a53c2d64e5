#include "BrisalonCore/ScanError.h"

#include <array>

namespace brisalon {

std::string_view description(ScanError error) noexcept
{
    static constexpr std::array<std::string_view, 3> texts{
        "That folder no longer exists.",
        "Choose a folder to scan, not a file.",
        "Scan was cancelled.",
    };
    return texts[static_cast<std::size_t>(error)];
}

} // namespace brisalon
