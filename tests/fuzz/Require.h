#pragma once

#include <cstdlib>

namespace brisalon::tests {

/// What has to hold whatever the input; where it does not, the fuzzer keeps that.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace brisalon::tests
