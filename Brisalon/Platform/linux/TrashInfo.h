#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace brisalon {

/// The text of the file that lets an item in the Trash be restored (trash rules 1.0
/// of freedesktop.org, "Contents of a trash directory"): its original path, absolute
/// or relative to its volume's top folder, and the local time at which it was moved.
std::string trashInfo(std::string_view path, std::time_t moved);

} // namespace brisalon
