#include "analysis/HogPlaces.h"

#include <algorithm>
#include <array>

namespace brisalon::detail {

namespace {

using enum HogTest::Where;

/// The more specific before the more general. The installers come last, so that
/// an image in a cache or in the trash is judged by its place.
constexpr std::array places{
    HogTest{pathContains, "/var/lib/docker", HogKind::docker},
    HogTest{pathContains, "/var/lib/containers", HogKind::docker},
    HogTest{pathContains, "/.local/share/containers", HogKind::docker},
    HogTest{pathContains, "/.local/share/docker", HogKind::docker},
    HogTest{pathContains, "/.snapshots/", HogKind::timeMachineSnapshot},
    HogTest{pathContains, "/timeshift/snapshots", HogKind::timeMachineSnapshot},
    HogTest{pathContains, "/.cache/homebrew", HogKind::homebrew},
    HogTest{pathContains, "/.local/share/trash", HogKind::trash},
    HogTest{pathContains, "/.cache/", HogKind::caches},
    HogTest{pathContains, "/var/cache/", HogKind::caches},
    HogTest{pathContains, "/.pip/cache", HogKind::caches},
    HogTest{pathContains, "/.npm/_cacache", HogKind::caches},
    HogTest{pathContains, "/.cargo/registry", HogKind::caches},
    HogTest{pathContains, "/go/pkg/mod", HogKind::caches},
    HogTest{pathContains, "/.gradle/caches", HogKind::caches},
    HogTest{pathContains, "/.m2/repository", HogKind::caches},
    HogTest{pathContains, "/.ccache", HogKind::caches},
    HogTest{pathContains, "/var/log", HogKind::logs},
    HogTest{nameEndsWith, ".iso", HogKind::installer},
    HogTest{nameEndsWith, ".deb", HogKind::installer},
    HogTest{nameEndsWith, ".rpm", HogKind::installer},
    HogTest{nameEndsWith, ".appimage", HogKind::installer},
    HogTest{nameEndsWith, ".flatpakref", HogKind::installer},
    HogTest{nameEndsWith, ".snap", HogKind::installer},
};
static_assert(std::ranges::all_of(places, &HogTest::isWellFormed));

} // namespace

std::span<const HogTest> hogPlaces() noexcept
{
    return places;
}

} // namespace brisalon::detail
