#pragma once

#include "support/TemporaryTree.h"

namespace brisalon::tests {

/// A home folder of the test program's own: from its construction on, the
/// program's home and settings lie in a temporary folder and nobody answers on its
/// session bus, so that no test can touch those of whoever runs it. Make one before
/// the application object.
class TestHome {
public:
    TestHome();

    const TemporaryTree& tree() const { return home_; }

private:
    TemporaryTree home_;
    TemporaryTree settings_;
};

} // namespace brisalon::tests
