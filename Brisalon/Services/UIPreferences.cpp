#include "Brisalon/Services/UIPreferences.h"

#include "Brisalon/Platform/DefaultsStore.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace brisalon {

namespace {

constexpr std::string_view dismissedUntilKey = "fdaBannerDismissedUntil";
constexpr std::string_view seenHintKey = "hasSeenMapInteractionHint";

using Seconds = std::chrono::duration<double>;

} // namespace

std::optional<UIPreferences::Date> UIPreferences::fdaBannerDismissedUntil() const
{
    const std::optional<double> seconds = store_.number(dismissedUntilKey);
    if (!seconds || std::isnan(*seconds))
        return std::nullopt;
    // What lies beyond the clock, as in a damaged file, is its end.
    constexpr double end = std::chrono::floor<std::chrono::seconds>(Date::duration::max()).count();
    return Date(std::chrono::duration_cast<Date::duration>(
        Seconds(std::clamp(*seconds, -end, end - 1024))));
}

void UIPreferences::setFDABannerDismissedUntil(std::optional<Date> date)
{
    if (date)
        store_.setNumber(dismissedUntilKey, Seconds(date->time_since_epoch()).count());
    else
        store_.remove(dismissedUntilKey);
}

bool UIPreferences::hasSeenMapInteractionHint() const
{
    return store_.boolean(seenHintKey).value_or(false);
}

void UIPreferences::setHasSeenMapInteractionHint()
{
    store_.setBoolean(seenHintKey, true);
}

} // namespace brisalon
