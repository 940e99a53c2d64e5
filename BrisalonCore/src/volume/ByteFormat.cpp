#include "BrisalonCore/ByteFormat.h"

#include <array>
#include <charconv>
#include <string_view>

namespace brisalon {

namespace {

constexpr std::array<std::string_view, 5> units{"B", "KB", "MB", "GB", "TB"};
constexpr double step = 1024;

std::string joined(std::string_view number, std::string_view unit)
{
    std::string text(number);
    text += ' ';
    text += unit;
    return text;
}

} // namespace

std::string ByteFormat::string(std::int64_t bytes)
{
    if (bytes < 0)
        bytes = 0;
    if (bytes < 1024)
        return joined(std::to_string(bytes), units[0]);
    double value = static_cast<double>(bytes) / step;
    std::size_t unit = 1;
    for (; value >= step && unit + 1 < units.size(); ++unit)
        value /= step;

    // The places are chosen before rounding, so 9.99 reads "10.0". to_chars
    // rounds as printf does and, unlike it, knows no locale.
    const int places = value >= 10 ? 0 : 1;
    std::array<char, 32> digits; // at most 8388608 TB
    const std::to_chars_result text = std::to_chars(digits.data(), digits.data() + digits.size(),
                                                    value, std::chars_format::fixed, places);
    return joined({digits.data(), text.ptr}, units[unit]);
}

} // namespace brisalon
