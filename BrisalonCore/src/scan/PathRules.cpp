#include "scan/PathRules.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace brisalon::detail {

namespace {

enum class Test : std::uint8_t { equals, beginsWith };

struct Rule {
    Test test;
    std::string_view text;
    /// A prefix whose paths the rule leaves alone; empty for none.
    std::string_view except = {};

    constexpr bool matches(std::string_view path) const noexcept
    {
        if (!except.empty() && path.starts_with(except))
            return false;
        return test == Test::equals ? path == text : path.starts_with(text);
    }
};

constexpr std::array skipped{
    Rule{Test::equals, "/dev"},
    Rule{Test::beginsWith, "/dev/"},
    Rule{Test::equals, "/net"},
    Rule{Test::beginsWith, "/net/"},
    Rule{Test::equals, "/proc"},
    Rule{Test::beginsWith, "/proc/"},
    Rule{Test::beginsWith, "/private/var/vm"},
    Rule{Test::equals, "/System"},
    Rule{Test::beginsWith, "/System/"},
    Rule{Test::equals, "/cores"},
    Rule{Test::beginsWith, "/cores/"},
    Rule{Test::beginsWith, "/.vol/"},
};

constexpr std::array protectedRules{
    Rule{Test::equals, ""},
    Rule{Test::equals, "/"},
    Rule{Test::equals, "/Applications"},
    Rule{Test::equals, "/Users"},
    Rule{Test::equals, "/Library"},
    Rule{Test::equals, "/System"},
    Rule{Test::equals, "/Volumes"},
    Rule{Test::equals, "/private"},
    Rule{Test::equals, "/opt"},
    Rule{Test::equals, "/usr"},
    Rule{Test::beginsWith, "/System/"},
    Rule{Test::beginsWith, "/bin/"},
    Rule{Test::equals, "/bin"},
    Rule{Test::beginsWith, "/sbin/"},
    Rule{Test::equals, "/sbin"},
    Rule{Test::beginsWith, "/usr/", "/usr/local/"},
    Rule{Test::beginsWith, "/Library/Apple/"},
    Rule{Test::beginsWith, "/private/var/vm"},
};

} // namespace

bool isSkippedPath(std::string_view path) noexcept
{
    return std::ranges::any_of(skipped, [path](const Rule& rule) { return rule.matches(path); });
}

bool isProtectedPath(std::string_view path) noexcept
{
    return std::ranges::any_of(protectedRules,
                               [path](const Rule& rule) { return rule.matches(path); });
}

} // namespace brisalon::detail
