#include "Brisalon/Interface/RingColors.h"

#include "Brisalon/Theme/Theme.h"

namespace brisalon {

namespace {

constexpr double filling = 0.75;
constexpr double full = 0.9;

} // namespace

QColor RingColors::from(double usedFraction)
{
    if (usedFraction > full)
        return Theme::danger();
    return usedFraction > filling ? Theme::amber() : Theme::accent();
}

QColor RingColors::to(double usedFraction)
{
    if (usedFraction > full)
        return Theme::faded(Theme::danger(), 0.7);
    return usedFraction > filling ? Theme::accent() : Theme::faded(Theme::success(), 0.8);
}

} // namespace brisalon
