#include "support/Files.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

namespace brisalon::tests {

std::vector<std::string> namesIn(const std::string& path)
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(path, error))
        names.push_back(entry.path().filename().native());
    return names;
}

std::uint64_t inodeOf(const std::string& path)
{
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

bool exists(const std::string& path)
{
    return inodeOf(path) != 0;
}

void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t openDescriptors()
{
    return namesIn("/proc/self/fd").size();
}

} // namespace brisalon::tests
