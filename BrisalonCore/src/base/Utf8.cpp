#include "base/Utf8.h"

#include <array>
#include <bit>

namespace brisalon::detail {

Utf8Character firstCharacter(std::string_view text) noexcept
{
    // The least value that needs as many bytes.
    static constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    constexpr Utf8Character broken{notUtf8, 1};

    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80)
        return {lead, 1};
    const auto bytes = static_cast<std::size_t>(std::countl_one(lead));
    if (bytes < 2 || bytes > 4 || bytes > text.size())
        return broken;
    char32_t value = lead & (0x7FU >> bytes);
    for (const char following : text.substr(1, bytes - 1)) {
        const auto byte = static_cast<unsigned char>(following);
        if ((byte & 0xC0U) != 0x80)
            return broken;
        value = value << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < least[bytes] || value > 0x10FFFF || isSurrogate)
        return broken;
    return {value, bytes};
}

bool isUtf8(std::string_view text) noexcept
{
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        if (character.value == notUtf8)
            return false;
        text.remove_prefix(character.bytes);
    }
    return true;
}

} // namespace brisalon::detail
