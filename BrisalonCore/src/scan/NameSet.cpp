#include "scan/NameSet.h"

#include <algorithm>
#include <functional>

namespace brisalon::detail {

void NameSet::clear() noexcept
{
    texts_.clear();
    names_.clear();
    used_ = fewest;
    std::fill_n(slots_.begin(), used_, 0);
}

bool NameSet::add(std::string_view name)
{
    const std::size_t hash = std::hash<std::string_view>()(name);
    std::size_t slot = hash & (used_ - 1);
    for (; slots_[slot] != 0; slot = (slot + 1) & (used_ - 1))
        if (names_[slots_[slot] - 1].hash == hash && text(slots_[slot]) == name)
            return false;
    texts_ += name;
    names_.push_back({hash, texts_.size()});
    slots_[slot] = static_cast<std::uint32_t>(names_.size());
    if (names_.size() * 2 > used_) {
        slots_.resize(std::max(slots_.size(), used_ * 2));
        used_ *= 2;
        spread();
    }
    return true;
}

std::string_view NameSet::text(std::uint32_t number) const noexcept
{
    const std::size_t begin = number > 1 ? names_[number - 2].end : 0;
    return {texts_.data() + begin, names_[number - 1].end - begin};
}

void NameSet::spread() noexcept
{
    std::fill_n(slots_.begin(), used_, 0);
    for (std::uint32_t number = 1; number <= names_.size(); ++number) {
        std::size_t slot = names_[number - 1].hash & (used_ - 1);
        while (slots_[slot] != 0)
            slot = (slot + 1) & (used_ - 1);
        slots_[slot] = number;
    }
}

} // namespace brisalon::detail
