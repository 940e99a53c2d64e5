#pragma once

#include <string_view>

namespace brisalon::host {

/// This desktop's own places that must never be moved to the Trash, beside the
/// rules that hold everywhere. Paths are absolute and normalised, their links
/// resolved; comparisons are exact.

/// Whether it is one of the top-level folders that the system is made of, lies
/// in one of those whose contents are the system's own, or is the folder `home`
/// or one that contains it. Goes by the text alone.
bool isProtectedPlace(std::string_view path, std::string_view home) noexcept;

/// The same for the home folders of the current user (the environment's and the
/// account's), and whether the item is the root of a mounted volume. Asks the
/// system. Any thread that does not run beside a change of the environment.
bool isProtectedHere(std::string_view path);

} // namespace brisalon::host
