#include "Brisalon/Platform/HomeFolder.h"

#include "BrisalonCore/AccountHome.h"

#include <cstdlib>

namespace brisalon {

FileURL homeFolder()
{
    // The environment's path is taken only when absolute: anything else depends
    // on where the program was started.
    if (const char* const home = std::getenv("HOME"); home && *home == '/')
        return FileURL(home);
    return FileURL(accountHome().empty() ? "/" : accountHome());
}

} // namespace brisalon
