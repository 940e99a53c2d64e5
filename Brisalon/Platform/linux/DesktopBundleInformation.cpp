#include "Brisalon/Platform/DesktopBundleInformation.h"

#include <filesystem>
#include <system_error>

namespace brisalon {

std::optional<std::string> DesktopBundleInformation::text(std::string_view key) const
{
    if (key == versionKey)
        return BRISALON_VERSION;
    if (key == buildKey)
        return BRISALON_BUILD;
    return std::nullopt;
}

FileURL DesktopBundleInformation::url() const
{
    std::error_code error;
    return FileURL(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

} // namespace brisalon
