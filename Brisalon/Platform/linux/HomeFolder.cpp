#include "Brisalon/Platform/HomeFolder.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace brisalon {

FileURL homeFolder()
{
    // The environment's path is taken only when absolute: anything else depends
    // on where the program was started.
    if (const char* const home = std::getenv("HOME"); home && *home == '/')
        return FileURL(home);
    if (const passwd* const account = ::getpwuid(::getuid()); account && *account->pw_dir)
        return FileURL(account->pw_dir);
    return FileURL("/");
}

} // namespace brisalon
