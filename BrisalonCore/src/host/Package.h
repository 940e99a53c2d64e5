#pragma once

#include <string_view>

namespace brisalon::host {

/// Whether a folder of that name is presented as one item (a package): its
/// extension is one of a table of bundle types, in any letter case, behind a
/// stem of at least one character.
bool isPackageName(std::string_view folderName) noexcept;

} // namespace brisalon::host
