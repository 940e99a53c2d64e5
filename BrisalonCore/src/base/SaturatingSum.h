#pragma once

#include <cstdint>
#include <limits>

namespace brisalon::detail {

/// The sum of two sizes, held at the greatest value: file systems that report
/// absurd sizes must not overflow it.
inline std::int64_t saturatingSum(std::int64_t a, std::int64_t b) noexcept
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    return a > most - b ? most : a + b;
}

} // namespace brisalon::detail
