#pragma once

#include "analysis/HogTest.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace brisalon::tests {

/// What the tests must yield, worked out in the plainest way: each in turn on the whole
/// path, lower-cased. `isTagged` tells whether the item lies in a tagged folder.
HogKind plainKind(std::span<const detail::HogTest> tests, std::string_view path, bool isTagged);

/// A path out of any bytes that is rich in what the tests look for, and in what nearly
/// is: a byte is a character of its own, a piece of a test's text, or changes the next.
std::string pathOf(std::span<const std::uint8_t> bytes, std::span<const detail::HogTest> tests);

} // namespace brisalon::tests
