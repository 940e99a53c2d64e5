#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

/// Writes all of the text to an open file; 0, or why it cannot.
int writeText(int handle, std::string_view text) noexcept;

/// What the regular file of that name in the folder `base` holds; nothing when there is
/// none or it cannot be read. Follows no link.
std::optional<std::string> readText(int base, const char* name);

} // namespace brisalon
