#include "Brisalon/Platform/ItemStatus.h"

#include "Brisalon/Platform/linux/FileStatus.h"
#include "Brisalon/Platform/linux/ReachedFolder.h"

#include <string>

namespace brisalon {

std::optional<ItemStatus> ItemStatus::read(const FileURL& url)
{
    const FileURL parent = url.deletingLastPathComponent().resolvingSymbolicLinks();
    const auto folder = ReachedFolder::at(parent.path());
    if (!folder)
        return std::nullopt;
    const auto status =
        FileStatus::read(folder->folder.get(), std::string(url.lastPathComponent()).c_str());
    return status ? std::optional(status->item) : std::nullopt;
}

} // namespace brisalon
