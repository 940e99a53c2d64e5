#include "analysis/HogTrail.h"

#include "analysis/CommonHogs.h"

#include "HogPlaces.h" // this system's

namespace brisalon::detail {

namespace {

constexpr HogAutomaton automaton(commonHogs, hogPlaces);

} // namespace

HogTrail HogTrail::of(std::string_view path) noexcept
{
    HogTrail trail = ofNoFolder();
    for (;;) {
        const auto slash = path.find('/');
        trail = trail.entering(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return trail;
        path.remove_prefix(slash + 1);
    }
}

HogTrail HogTrail::entering(std::string_view folderName) const noexcept
{
    return HogTrail(automaton.entering(state_, folderName));
}

HogTrail HogTrail::tagged() const noexcept
{
    return HogTrail(automaton.tagged(state_));
}

HogKind HogTrail::classify(std::string_view name) const noexcept
{
    return automaton.classify(state_, name);
}

} // namespace brisalon::detail
