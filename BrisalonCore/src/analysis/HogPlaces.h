#pragma once

#include "analysis/HogTest.h"

#include <span>

namespace brisalon::detail {

/// The classifier's tests for places of this desktop, in the order in which they
/// are tried; they follow the tests that hold everywhere.
std::span<const HogTest> hogPlaces() noexcept;

} // namespace brisalon::detail
