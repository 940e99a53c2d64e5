// Any path in the file that tells where an item in the Trash came from: a reader that
// knows only the rules for such files gets the same bytes back.

#include "Brisalon/Platform/linux/TrashRecord.h"

#include "Require.h"

#include <cstdint>
#include <string_view>

using brisalon::tests::require;

namespace {

std::string decoded(std::string_view text)
{
    std::string result;
    for (; !text.empty(); text.remove_prefix(1)) {
        require(text.front() > ' ' && text.front() <= '~');
        if (text.front() != '%') {
            result += text.front();
            continue;
        }
        require(text.size() > 2);
        result += static_cast<char>(std::stoi(std::string(text.substr(1, 2)), nullptr, 16));
        text.remove_prefix(2);
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view path(reinterpret_cast<const char*>(data), size);
    const std::string text = brisalon::trashInfo(path, 1'700'000'000);
    constexpr std::string_view head = "[Trash Info]\nPath=";
    constexpr std::string_view date = "\nDeletionDate=";
    require(text.starts_with(head));
    const auto end = text.find('\n', head.size());
    require(text.substr(end, date.size()) == date);
    require(text.size() == end + date.size() + std::string_view("YYYY-MM-DDThh:mm:ss\n").size());
    require(decoded(std::string_view(text).substr(head.size(), end - head.size())) == path);
    return 0;
}
