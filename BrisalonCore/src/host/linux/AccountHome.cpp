#include "BrisalonCore/AccountHome.h"

#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace brisalon {

namespace {

std::string lookUp()
{
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return entry.pw_dir;
}

} // namespace

const std::string& accountHome()
{
    static const std::string home = lookUp();
    return home;
}

} // namespace brisalon
