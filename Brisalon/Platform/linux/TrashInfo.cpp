#include "Brisalon/Platform/linux/TrashInfo.h"

#include "Brisalon/Platform/PercentEncoding.h"

#include <array>

namespace brisalon {

std::string trashInfo(std::string_view path, std::time_t moved)
{
    std::tm local{};
    ::localtime_r(&moved, &local);
    std::array<char, sizeof "YYYY-MM-DDThh:mm:ss"> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + date.data() + '\n';
}

} // namespace brisalon
