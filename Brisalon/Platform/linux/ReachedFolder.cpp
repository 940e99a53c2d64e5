#include "Brisalon/Platform/linux/ReachedFolder.h"

#include "BrisalonCore/Paths.h"

#include <fcntl.h>

namespace brisalon {

Descriptor openFolder(int base, const char* path) noexcept
{
    return Descriptor::open(base, path, O_PATH | O_DIRECTORY | O_NOFOLLOW);
}

std::optional<ReachedFolder> ReachedFolder::at(std::string_view path)
{
    if (!path.starts_with('/'))
        return std::nullopt;
    ReachedFolder result;
    std::string_view above;
    for (const std::string_view way : paths::way(path)) {
        const std::string name(above.empty() ? way : paths::relative(way, above));
        result.folder = openFolder(result.folder.get(), name.c_str());
        const auto status =
            result.folder.isValid() ? ItemStatus::read(result.folder, "") : std::nullopt;
        if (!status)
            return std::nullopt;
        if (!result.top.isValid() || status->mount != result.mount) {
            result.mount = status->mount;
            result.top = result.folder.duplicate();
            result.topPath = way;
        }
        above = way;
    }
    return result;
}

} // namespace brisalon
