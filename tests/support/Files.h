#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace brisalon::tests {

/// The names in a folder, as the system lists them; none when there is no such folder.
inline std::vector<std::string> namesIn(const std::string& path)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(path, error))
        names.push_back(entry.path().filename().native());
    return names;
}

/// The number of the item itself; 0 when there is none.
inline std::uint64_t inodeOf(const std::string& path)
{
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

inline bool exists(const std::string& path)
{
    return inodeOf(path) != 0;
}

inline void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// How many this process has open.
inline std::size_t openDescriptors()
{
    return namesIn("/proc/self/fd").size();
}

} // namespace brisalon::tests
