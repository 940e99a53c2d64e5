#include "BrisalonCore/AccountName.h"

#include <vector>

#include <pwd.h>

namespace brisalon {

std::string accountName(std::uint32_t user)
{
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return std::to_string(user);
    return entry.pw_name;
}

} // namespace brisalon
