#pragma once

#include "analysis/HogTest.h"

#include <array>

namespace brisalon::detail {

/// The tests that hold on every desktop, in the order in which they are tried.
inline constexpr std::array commonHogs = [] {
    using enum HogTest::Where;
    using enum HogKind;
    return std::array{
        HogTest(nameIs, "docker.raw", docker),
        HogTest(nameIs, "docker.raw.qcow2", docker),
        HogTest(pathContains, "/com.docker.docker", docker),
        HogTest(pathContains, "/group.com.docker", docker),
        HogTest(nameIs, "node_modules", nodeModules),
        HogTest(pathContains, "/mobilesync/backup", iosBackup),
        HogTest(pathContains, "/.localsnapshots", timeMachineSnapshot),
        HogTest(pathContains, "/com.apple.timemachine", timeMachineSnapshot),
        HogTest(pathContains, "/developer/xcode/deriveddata", xcodeDerivedData),
        HogTest(pathContains, "/developer/xcode/archives", xcodeDerivedData),
        HogTest(pathContains, "/developer/coresimulator", xcodeSimulators),
        HogTest(pathContains, "/xcode/ios devicesupport", xcodeSimulators),
        HogTest(pathContains, "/library/caches/homebrew", homebrew),
        HogTest(pathContains, "/homebrew/caches", homebrew),
        HogTest(pathContains, "/library/caches", caches),
        HogTest(pathContains, "/library/logs", logs),
        HogTest(pathContains, "/.trash", trash),
        HogTest(pathContains, "/library/trashes", trash),
        HogTest(nameEndsWith, ".dmg", installer),
        HogTest(nameEndsWith, ".pkg", installer),
    };
}();

} // namespace brisalon::detail
