#include "BrisalonCore/SnapshotParser.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>

namespace brisalon {

namespace {

using detail::firstCharacter;

/// What a token looks like; 'd' is any decimal digit.
constexpr std::string_view tokenShape = "dddd-dd-dd-dddddd";

/// The zero of each script's decimal digits, which follow one another (Unicode 15,
/// general category Nd).
constexpr auto zeros = std::to_array<char32_t>({
    0x0030,  0x0660,  0x06F0,  0x07C0,  0x0966,  0x09E6,  0x0A66,  0x0AE6,  0x0B66,  0x0BE6,
    0x0C66,  0x0CE6,  0x0D66,  0x0DE6,  0x0E50,  0x0ED0,  0x0F20,  0x1040,  0x1090,  0x17E0,
    0x1810,  0x1946,  0x19D0,  0x1A80,  0x1A90,  0x1B50,  0x1BB0,  0x1C40,  0x1C50,  0xA620,
    0xA8D0,  0xA900,  0xA9D0,  0xA9F0,  0xAA50,  0xABF0,  0xFF10,  0x104A0, 0x10D30, 0x11066,
    0x110F0, 0x11136, 0x111D0, 0x112F0, 0x11450, 0x114D0, 0x11650, 0x116C0, 0x11730, 0x118E0,
    0x11950, 0x11C50, 0x11D50, 0x11DA0, 0x11F50, 0x16A60, 0x16AC0, 0x16B50, 0x1D7CE, 0x1D7D8,
    0x1D7E2, 0x1D7EC, 0x1D7F6, 0x1E140, 0x1E2F0, 0x1E4F0, 0x1E950, 0x1FBF0,
});
static_assert(std::ranges::is_sorted(zeros));

bool isDecimalDigit(char32_t character)
{
    const auto next = std::ranges::upper_bound(zeros, character);
    return next != zeros.begin() && character - *std::prev(next) < 10;
}

bool isLineBreak(char32_t character)
{
    return (character >= U'\n' && character <= U'\r') || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

/// Tab and the space separators (general category Zs).
bool isSpace(char32_t character)
{
    return character == U' ' || character == U'\t' || character == 0xA0 || character == 0x1680 ||
           (character >= 0x2000 && character <= 0x200A) || character == 0x202F ||
           character == 0x205F || character == 0x3000;
}

/// The token that `text` begins with, or nothing.
std::string_view leadingToken(std::string_view text)
{
    std::size_t length = 0;
    for (const char wanted : tokenShape) {
        if (length == text.size())
            return {};
        const auto [value, bytes] = firstCharacter(text.substr(length));
        if (wanted == 'd' ? !isDecimalDigit(value) : value != U'-')
            return {};
        length += bytes;
    }
    return text.substr(0, length);
}

void appendSnapshot(std::string_view line, std::vector<LocalSnapshot>& snapshots)
{
    for (std::string_view rest = line; !rest.empty();
         rest.remove_prefix(firstCharacter(rest).bytes)) {
        if (const std::string_view token = leadingToken(rest); !token.empty()) {
            snapshots.push_back({std::string(token), std::string(line)});
            return;
        }
    }
}

} // namespace

std::vector<LocalSnapshot> SnapshotParser::parse(std::string_view listOutput)
{
    std::vector<LocalSnapshot> snapshots;
    // The current line from its first to its last character that is not a space.
    std::size_t begin = 0;
    std::size_t end = 0;
    for (std::size_t position = 0; position < listOutput.size();) {
        const auto [value, bytes] = firstCharacter(listOutput.substr(position));
        if (isLineBreak(value)) {
            appendSnapshot(listOutput.substr(begin, end - begin), snapshots);
            begin = end = position + bytes;
        } else if (!isSpace(value)) {
            if (begin == end)
                begin = position;
            end = position + bytes;
        }
        position += bytes;
    }
    appendSnapshot(listOutput.substr(begin, end - begin), snapshots);
    return snapshots;
}

} // namespace brisalon
