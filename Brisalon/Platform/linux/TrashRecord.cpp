#include "Brisalon/Platform/linux/TrashRecord.h"

#include "Brisalon/Platform/PercentEncoding.h"

#include <algorithm>
#include <array>

namespace brisalon {

namespace {

/// More than that behind a dot is a part of the name.
constexpr std::size_t longestExtension = 16;

/// Where the extension starts, its dot included; the end when there is none.
std::size_t extensionStart(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || name.size() - dot > longestExtension)
        return name.size();
    return dot;
}

/// The longest start of at most that many bytes that ends with a whole character.
std::string_view cut(std::string_view text, std::size_t longest)
{
    if (text.size() <= longest)
        return text;
    constexpr std::size_t longestCharacter = 4;
    for (std::size_t end = longest; end > 0 && longest - end < longestCharacter; --end) {
        const bool isContinuation = (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U;
        if (!isContinuation)
            return text.substr(0, end);
    }
    return text.substr(0, longest); // not UTF-8
}

} // namespace

std::string trashName(std::string_view name, std::uint64_t number, std::size_t longest)
{
    const std::string tag = number == 0 ? "" : '.' + std::to_string(number);
    const std::size_t dot = extensionStart(name);
    const std::string_view extension = name.substr(dot);
    std::string result(cut(name.substr(0, dot), longest - tag.size() - extension.size()));
    result += tag;
    result += extension;
    return result;
}

std::string trashInfo(std::string_view path, std::time_t moved)
{
    std::tm local{};
    ::localtime_r(&moved, &local);
    std::array<char, sizeof "YYYY-MM-DDThh:mm:ss"> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + date.data() + '\n';
}

} // namespace brisalon
