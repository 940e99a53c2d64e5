#pragma once

#include "Brisalon/Platform/DefaultsStore.h"

#include <map>
#include <variant>

namespace brisalon {

/// Settings that last as long as the object, for tools and tests, which must not
/// touch the user's own.
class MemoryDefaultsStore final : public DefaultsStore {
public:
    std::optional<std::string> text(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<bool> boolean(std::string_view key) const override;
    void setText(std::string_view key, std::string_view value) override;
    void setNumber(std::string_view key, double value) override;
    void setBoolean(std::string_view key, bool value) override;
    void remove(std::string_view key) override;

private:
    template <typename T>
    std::optional<T> value(std::string_view key) const;

    std::map<std::string, std::variant<std::string, double, bool>, std::less<>> values_;
};

} // namespace brisalon
