#pragma once

#include <cstddef>
#include <string_view>

namespace brisalon::detail {

struct Utf8Character {
    char32_t value;
    std::size_t bytes;
};

/// Stands for a byte that does not belong to valid UTF-8.
inline constexpr char32_t notUtf8 = 0xFFFFFFFF;

/// The character that `text`, which is not empty, begins with. Strict as RFC 3629
/// has it: no overlong forms, surrogates, values above U+10FFFF or cut sequences.
/// Where that fails, notUtf8 for the first byte alone.
Utf8Character firstCharacter(std::string_view text) noexcept;

bool isUtf8(std::string_view text) noexcept;

} // namespace brisalon::detail
