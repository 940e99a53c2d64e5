#pragma once

#include <cstdint>
#include <string>

namespace brisalon {

/// The name of a user's account, as the bytes that the system has; the number for a user
/// without one. May take a network. Any thread.
std::string accountName(std::uint32_t user);

} // namespace brisalon
