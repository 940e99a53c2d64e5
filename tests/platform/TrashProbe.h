#pragma once

#include "BrisalonCore/FileURL.h"
#include "support/Files.h"

#include <optional>
#include <string>

namespace brisalon::tests {

/// What a file manager would read to restore an item, read by the rules for such
/// files alone.
struct RestoreInfo {
    std::string path; ///< decoded
    std::string date;
};

/// Of an item at its place in a trash folder; nothing when the file is missing or
/// not exactly of the form that the rules give.
std::optional<RestoreInfo> restoreInfo(const FileURL& trashed);

/// Whether the time is written as the rules have it and lies within the last minute.
bool isJustNow(const std::string& date);

/// File systems know times no finer than the kernel's tick: returns when what is made
/// in that folder from now on is younger than what was made before.
void waitForTheNextBirth(const std::string& folder);

} // namespace brisalon::tests
