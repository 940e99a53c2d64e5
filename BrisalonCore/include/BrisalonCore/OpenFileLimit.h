#pragma once

#include <cstddef>

namespace brisalon {

/// How many files this process may have open at a time, by its present limit.
std::size_t openFileLimit() noexcept;

/// Raises that limit as far as the process may by itself: the usual one is low for the
/// sake of programs that cannot handle large descriptor numbers. Once, before threads
/// are started.
void raiseOpenFileLimit() noexcept;

} // namespace brisalon
