#pragma once

#include "support/TemporaryTree.h"

#include <cstdlib>

namespace brisalon::tests {

/// A home folder of the test program's own: from its construction on, the
/// program's home and settings lie in a temporary folder and nobody answers on its
/// session bus, so that no test can touch those of whoever runs it. Make one before
/// the application object.
class TestHome {
public:
    TestHome()
    {
        ::setenv("HOME", home_.path().c_str(), 1);
        for (const char* const folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            ::setenv(folder, settings_.path().c_str(), 1);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + settings_.at("no-bus")).c_str(), 1);
    }

    const TemporaryTree& tree() const { return home_; }

private:
    TemporaryTree home_;
    TemporaryTree settings_;
};

} // namespace brisalon::tests
