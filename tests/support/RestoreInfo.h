#pragma once

#include <optional>
#include <string>

namespace brisalon::tests {

/// What a file manager would read to restore an item from the Trash.
struct RestoreInfo {
    std::string path; ///< decoded
    std::string date;

    /// Of the text of the item's file, by the rules for such files alone; nothing when it
    /// is not exactly of the form that they give.
    static std::optional<RestoreInfo> parse(const std::string& text);
};

} // namespace brisalon::tests
