#include "support/MemoryDefaultsStore.h"

namespace brisalon {

template <typename T>
std::optional<T> MemoryDefaultsStore::value(std::string_view key) const
{
    const auto found = values_.find(key);
    if (found == values_.end())
        return std::nullopt;
    const T* const held = std::get_if<T>(&found->second);
    return held ? std::optional<T>(*held) : std::nullopt;
}

std::optional<std::string> MemoryDefaultsStore::text(std::string_view key) const
{
    return value<std::string>(key);
}

std::optional<double> MemoryDefaultsStore::number(std::string_view key) const
{
    return value<double>(key);
}

std::optional<bool> MemoryDefaultsStore::boolean(std::string_view key) const
{
    return value<bool>(key);
}

void MemoryDefaultsStore::setText(std::string_view key, std::string_view value)
{
    values_.insert_or_assign(std::string(key), std::string(value));
}

void MemoryDefaultsStore::setNumber(std::string_view key, double value)
{
    values_.insert_or_assign(std::string(key), value);
}

void MemoryDefaultsStore::setBoolean(std::string_view key, bool value)
{
    values_.insert_or_assign(std::string(key), value);
}

void MemoryDefaultsStore::remove(std::string_view key)
{
    if (const auto found = values_.find(key); found != values_.end())
        values_.erase(found);
}

} // namespace brisalon
