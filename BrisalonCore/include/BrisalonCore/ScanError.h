#pragma once

#include <cstdint>
#include <string_view>

namespace brisalon {

/// Why a scan gave no tree. The underlying value is the error's numeric code.
enum class ScanError : std::uint8_t {
    rootMissing,  ///< the root does not exist
    notDirectory, ///< the root exists but is not a folder
    cancelled,    ///< the scan noticed that it was cancelled
};

/// The text that the user sees.
std::string_view description(ScanError error) noexcept;

} // namespace brisalon
