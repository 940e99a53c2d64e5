#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

/// The user's small settings: a value for a key, kept between runs.
///
/// A value that is missing, or cannot be read as the type asked for, is absent.
/// Texts are bytes and come back exactly. Every call reads or writes at once and
/// nothing is held open between calls. Main thread.
class DefaultsStore {
public:
    DefaultsStore() = default;
    DefaultsStore(const DefaultsStore&) = delete;
    DefaultsStore& operator=(const DefaultsStore&) = delete;
    virtual ~DefaultsStore() = default;

    virtual std::optional<std::string> text(std::string_view key) const = 0;
    virtual std::optional<double> number(std::string_view key) const = 0;
    virtual std::optional<bool> boolean(std::string_view key) const = 0;

    virtual void setText(std::string_view key, std::string_view value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setBoolean(std::string_view key, bool value) = 0;

    /// Afterwards the key is absent, also when it was before.
    virtual void remove(std::string_view key) = 0;
};

} // namespace brisalon
