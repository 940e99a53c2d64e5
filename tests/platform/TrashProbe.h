#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

/// The names in a folder; none when there is no such folder.
std::vector<std::string> namesIn(const std::string& path);

/// The number of the item itself; 0 when there is none.
std::uint64_t inodeOf(const std::string& path);

bool exists(const std::string& path);
void writeText(const std::string& path, const std::string& text);
std::string readText(const std::string& path);

/// File systems know times no finer than the kernel's tick: returns when what is made
/// in that folder from now on is younger than what was made before.
void waitForTheNextBirth(const std::string& folder);

} // namespace brisalon::tests
