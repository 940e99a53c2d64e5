#pragma once

#include <string>
#include <string_view>

namespace brisalon {

/// A local snapshot of the startup volume, as a listing named it.
struct LocalSnapshot {
    /// Its creation in local time as YYYY-MM-DD-HHMMSS; names it for a deletion.
    std::string dateToken;
    /// The line of the listing that the token was found in, without the white
    /// space around it.
    std::string rawLine;

    const std::string& id() const noexcept { return dateToken; }

    /// A date token as shown to people, for example "2024-01-15 · 12:34": the
    /// date, then hours and minutes. A text that is no such token (fewer than four
    /// parts between hyphens, or a fourth that is not six characters long) stays
    /// as it is; empty parts and those after the fourth do not count. Any thread.
    static std::string formattedDate(std::string_view dateToken);

    friend bool operator==(const LocalSnapshot&, const LocalSnapshot&) = default;
};

} // namespace brisalon
