#pragma once

#include "Brisalon/Platform/DefaultsStore.h"

#include <map>
#include <variant>

namespace brisalon {

/// Settings that last as long as the object, for tools and tests, which must not
/// touch the user's own.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    using Key = std::string_view;

    std::optional<std::string> text(Key key) const override { return value<std::string>(key); }
    std::optional<double> number(Key key) const override { return value<double>(key); }
    std::optional<bool> boolean(Key key) const override { return value<bool>(key); }
    void setText(Key key, std::string_view value) override
    {
        values_.insert_or_assign(std::string(key), std::string(value));
    }
    void setNumber(Key key, double value) override
    {
        values_.insert_or_assign(std::string(key), value);
    }
    void setBoolean(Key key, bool value) override
    {
        values_.insert_or_assign(std::string(key), value);
    }
    void remove(Key key) override { values_.erase(std::string(key)); }

private:
    template <typename T>
    std::optional<T> value(Key key) const
    {
        const auto found = values_.find(key);
        const T* const held = found == values_.end() ? nullptr : std::get_if<T>(&found->second);
        return held ? std::optional<T>(*held) : std::nullopt;
    }

    std::map<std::string, std::variant<std::string, double, bool>, std::less<>> values_;
};

} // namespace brisalon
