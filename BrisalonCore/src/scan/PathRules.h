#pragma once

#include <string_view>

namespace brisalon::detail {

/// The two path policies on the text of a path that is already normalised:
/// absolute, without ".", ".." and doubled slashes, its links resolved.
/// Comparisons are exact and case-sensitive; "begins with" is a plain text
/// prefix, whatever follows it.

/// Whether a scan records neither this item nor anything below it. Every rule
/// is settled by the path's first three components.
bool isSkippedPath(std::string_view path) noexcept;

/// Whether this item must never be moved to the Trash.
bool isProtectedPath(std::string_view path) noexcept;

} // namespace brisalon::detail
