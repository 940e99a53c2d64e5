#include "Brisalon/Platform/linux/ReachedFolder.h"

#include <algorithm>

#include <fcntl.h>

namespace brisalon {

std::optional<ReachedFolder> ReachedFolder::at(std::string_view path)
{
    if (!path.starts_with('/'))
        return std::nullopt;
    ReachedFolder result;
    Descriptor folder = Descriptor::openFolder(AT_FDCWD, "/");
    std::size_t start = 1;
    std::size_t end = 0;
    for (;;) {
        const auto status = FileStatus::read(folder.get(), "");
        if (!status)
            return std::nullopt;
        if (!result.top.isValid() || status->mount != result.mount) {
            result.mount = status->mount;
            result.top = folder.duplicate();
            result.topPath = end == 0 ? "/" : path.substr(0, end);
        }
        if (start >= path.size())
            break;
        end = std::min(path.find('/', start), path.size());
        folder = Descriptor::openFolder(folder.get(),
                                        std::string(path.substr(start, end - start)).c_str());
        start = end + 1;
    }
    result.folder = std::move(folder);
    return result;
}

} // namespace brisalon
