#include "BrisalonCore/LocalSnapshot.h"

#include "base/Utf8.h"

#include <algorithm>
#include <vector>

namespace brisalon {

namespace {

/// The text's characters: the parts of a date may hold any digits.
std::vector<std::string_view> characters(std::string_view text)
{
    std::vector<std::string_view> result;
    while (!text.empty()) {
        result.push_back(text.substr(0, detail::firstCharacter(text).bytes));
        text.remove_prefix(result.back().size());
    }
    return result;
}

} // namespace

std::string LocalSnapshot::formattedDate(std::string_view dateToken)
{
    std::vector<std::string_view> parts;
    for (std::string_view rest = dateToken; !rest.empty();) {
        const auto end = std::min(rest.find('-'), rest.size());
        if (end > 0)
            parts.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (parts.size() < 4)
        return std::string(dateToken);
    const auto time = characters(parts[3]);
    if (time.size() != 6)
        return std::string(dateToken);

    std::string text;
    for (const std::string_view piece :
         {parts[0], std::string_view("-"), parts[1], std::string_view("-"), parts[2],
          std::string_view(" · "), time[0], time[1], std::string_view(":"), time[2], time[3]})
        text += piece;
    return text;
}

} // namespace brisalon
