#pragma once

#include <chrono>

namespace brisalon {

/// When something has to be done at the latest; on a clock that nobody sets.
using Deadline = std::chrono::steady_clock::time_point;

} // namespace brisalon
