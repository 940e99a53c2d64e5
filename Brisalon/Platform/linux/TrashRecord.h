#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace brisalon {

/// A name for an item inside the Trash, which only has to differ from the others
/// there; the item's own name is kept beside it.
///
/// Number 0 is the name itself, any other number stands before the extension
/// ("photo.2.jpg"), so that programs still see what kind of file it is. At most
/// `longest` bytes: what is too much is cut off the end of the stem, between two
/// characters where the name is UTF-8; an extension too long to be one is cut like
/// a part of the stem. Never empty, "." or "..", for names that are not.
std::string trashName(std::string_view name, std::uint64_t number, std::size_t longest);

/// The text of the file that lets an item in the Trash be restored (trash rules 1.0
/// of freedesktop.org, "Contents of a trash directory"): its original path, absolute
/// or relative to its volume's top folder, and the local time at which it was moved.
std::string trashInfo(std::string_view path, std::time_t moved);

} // namespace brisalon
