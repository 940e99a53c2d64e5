#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brisalon::tests {

/// The names in a folder, as the system lists them; none when there is no such folder.
std::vector<std::string> namesIn(const std::string& path);

/// The number of the item itself; 0 when there is none.
std::uint64_t inodeOf(const std::string& path);

bool exists(const std::string& path);
void writeText(const std::string& path, const std::string& text);
std::string contents(const std::string& path);

/// How many this process has open.
std::size_t openDescriptors();

} // namespace brisalon::tests
