#pragma once

#include "Brisalon/Platform/linux/DesktopTrash.h"
#include "support/Files.h"
#include "support/RestoreInfo.h"

#include <optional>
#include <string>

namespace brisalon::tests {

/// Of an item at its place in a trash folder; nothing when the file is missing or
/// not exactly of the form that the rules give.
std::optional<RestoreInfo> restoreInfo(const FileURL& trashed);

/// The path in that; empty when there is none.
std::string originOf(const FileURL& trashed);

/// Where the item went; empty, with a failure, when it did not go.
FileURL destinationOf(const DesktopTrash::Result& result);

/// Moves an item as it is now.
DesktopTrash::Result putNow(const DesktopTrash& trash, const FileURL& url);

/// Whether the time is written as the rules have it and lies within the last minute.
bool isJustNow(const std::string& date);

/// File systems know times no finer than the kernel's tick: returns when what is made
/// in that folder from now on is younger than what was made before.
void waitForTheNextBirth(const std::string& folder);

} // namespace brisalon::tests
