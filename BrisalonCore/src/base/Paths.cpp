#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace brisalon::paths {

std::vector<std::string_view> components(std::string_view path)
{
    std::vector<std::string_view> names;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        if (end > 0)
            names.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return names;
}

std::vector<std::string_view> way(std::string_view path)
{
    std::vector<std::string_view> folders{"/"};
    for (std::size_t end = 1; end < path.size(); ++end) {
        end = std::min(path.find('/', end), path.size());
        folders.push_back(path.substr(0, end));
    }
    return folders;
}

bool isWithin(std::string_view path, std::string_view folder) noexcept
{
    return path == folder || isBelow(path, folder);
}

bool isBelow(std::string_view path, std::string_view folder) noexcept
{
    if (folder == "/")
        return path.size() > 1 && path.starts_with('/');
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

std::string_view relative(std::string_view path, std::string_view folder) noexcept
{
    path.remove_prefix(folder == "/" ? 0 : folder.size());
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    return path;
}

std::string joined(std::string_view folder, std::string_view name)
{
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path += folder;
    if (!name.empty() && !folder.ends_with('/'))
        path += '/';
    path += name;
    return path;
}

std::string absolute(std::string_view path)
{
    if (path.starts_with('/'))
        return std::string(path);
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return joined(error ? "/" : folder.native(), path);
}

} // namespace brisalon::paths
