#include "Brisalon/Platform/TrashItem.h"

#include "Brisalon/Platform/linux/ReachedFolder.h"

#include <string>

namespace brisalon {

std::vector<TrashItem> TrashItem::record(std::span<const FileURL> urls)
{
    std::vector<TrashItem> items;
    items.reserve(urls.size());
    // Most requests are of many items of few folders, one folder after the other.
    FileURL parent;
    FileURL resolvedParent;
    std::optional<ReachedFolder> folder;
    for (const FileURL& url : urls) {
        const std::string name(url.lastPathComponent());
        if (name.empty() || name == "." || name == "..") {
            items.push_back({url, url, std::nullopt, 0});
            continue;
        }
        const FileURL next = url.deletingLastPathComponent();
        if (!folder || next != parent) {
            parent = next;
            resolvedParent = parent.resolvingSymbolicLinks();
            folder = ReachedFolder::at(resolvedParent.path());
        }
        const auto status = folder ? ItemStatus::read(folder->folder, name.c_str()) : std::nullopt;
        items.push_back(
            {url, resolvedParent == parent ? url : resolvedParent.appendingPathComponent(name),
             status ? std::optional(status->identity) : std::nullopt,
             status ? status->allocatedBytes : 0});
    }
    return items;
}

} // namespace brisalon
