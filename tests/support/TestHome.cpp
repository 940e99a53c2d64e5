#include "support/TestHome.h"

#include <cstdlib>

namespace brisalon::tests {

TestHome::TestHome()
{
    ::setenv("HOME", home_.path().c_str(), 1);
    for (const char* const folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        ::setenv(folder, settings_.path().c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + settings_.at("no-bus")).c_str(), 1);
}

} // namespace brisalon::tests
