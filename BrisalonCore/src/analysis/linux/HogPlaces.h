#pragma once

#include "analysis/HogTest.h"

#include <array>

namespace brisalon::detail {

/// The classifier's tests for this desktop, in the order in which they are tried; they
/// follow the tests that hold everywhere. The more specific before the more general.
inline constexpr std::array hogPlaces = [] {
    using enum HogTest::Where;
    using enum HogKind;
    return std::array{
        HogTest(within, "/var/lib/docker", docker),
        HogTest(within, "/var/lib/containerd", docker),
        HogTest(within, "/var/lib/containers", docker),
        HogTest(within, "/.local/share/containers", docker),
        HogTest(within, "/.local/share/docker", docker),
        HogTest(within, "/.snapshots", timeMachineSnapshot),
        HogTest(within, "/timeshift/snapshots", timeMachineSnapshot),
        HogTest(within, "/.cache/homebrew", homebrew),
        HogTest(within, "/.local/share/trash", trash),
        HogTest(within, "/.cache", caches),
        HogTest(within, "/var/cache", caches),
        HogTest(within, "/var/lib/apt/lists", caches),
        HogTest(within, "/.thumbnails", caches),
        HogTest(within, "/.pip/cache", caches),
        HogTest(within, "/.npm/_cacache", caches),
        HogTest(within, "/.local/share/pnpm/store", caches),
        HogTest(within, "/.pnpm-store", caches),
        HogTest(within, "/.yarn/cache", caches),
        HogTest(within, "/.yarn/berry/cache", caches),
        HogTest(within, "/.bun/install/cache", caches),
        HogTest(within, "/.cargo/registry", caches),
        HogTest(within, "/.cargo/git", caches),
        HogTest(within, "/go/pkg/mod", caches),
        HogTest(within, "/.gradle/caches", caches),
        HogTest(within, "/.gradle/wrapper", caches),
        HogTest(within, "/.m2/repository", caches),
        HogTest(within, "/.nuget/packages", caches),
        HogTest(within, "/anaconda3/pkgs", caches),
        HogTest(within, "/miniconda3/pkgs", caches),
        HogTest(within, "/miniforge3/pkgs", caches),
        HogTest(within, "/conda/pkgs", caches),
        HogTest(within, "/.conda/pkgs", caches),
        HogTest(within, "/.ccache", caches),
        HogTest(within, "/.var/app/*/cache", caches),
        HogTest(within, "/.config/**/cache", caches),
        HogTest(within, "/.config/**/code cache", caches),
        HogTest(within, "/.config/**/gpucache", caches),
        HogTest(within, "/.config/**/cachestorage", caches),
        HogTest(within, "/var/log", logs),
        HogTest(within, "/run/log/journal", logs),
        HogTest(within, "/var/crash", logs),
        HogTest(within, "/var/lib/systemd/coredump", logs),
        HogTest(tagged, "", caches),
        // Snaps are installed as the very files that they are offered in.
        HogTest(within, "/var/lib/snapd", none),
        // Last, so that an image in a cache or in the trash is judged by its place.
        HogTest(nameEndsWith, ".iso", installer),
        HogTest(nameEndsWith, ".deb", installer),
        HogTest(nameEndsWith, ".rpm", installer),
        HogTest(nameEndsWith, ".appimage", installer),
        HogTest(nameEndsWith, ".flatpakref", installer),
        HogTest(nameEndsWith, ".snap", installer),
    };
}();

} // namespace brisalon::detail
