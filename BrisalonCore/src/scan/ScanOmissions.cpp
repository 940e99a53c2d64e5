#include "BrisalonCore/ScanOmissions.h"

#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace brisalon {

namespace {

/// What the node at the path takes; 0 when there is none. Goes down name by name, since
/// a tree may have more nodes than a disk has mounts by far.
std::int64_t sizeAt(std::string_view path, std::string_view rootPath, const FileNode& tree)
{
    const FileNode* node = &tree;
    for (const std::string_view name : paths::components(paths::relative(path, rootPath))) {
        const auto children = node->children();
        const auto found = std::ranges::find(
            children, name, [](const FileNode& child) { return child.url().lastPathComponent(); });
        if (found == children.end())
            return 0;
        node = &*found;
    }
    return node->allocatedSize();
}

} // namespace

void ScanOmissions::replace(const FileURL& folder, ScanOmissions now)
{
    const std::string path = folder.path();
    const auto isInside = [&path](const FileURL& url) { return paths::isWithin(url.path(), path); };
    const auto take = [](auto& list, auto& others) {
        std::ranges::move(others, std::back_inserter(list));
        list.resize(std::min(list.size(), limit));
    };
    unreadableCount -=
        std::erase_if(unreadable, [&](const Folder& each) { return isInside(each.url); });
    unreadableCount += now.unreadableCount;
    take(unreadable, now.unreadable);
    std::erase_if(systemAreas, isInside);
    take(systemAreas, now.systemAreas);
    vanishedCount += now.vanishedCount;
    mounts = std::move(now.mounts);
}

std::int64_t ScanOmissions::bytesOnRootVolume(const FileNode& tree) const
{
    const std::string rootPath = tree.url().path();
    std::int64_t bytes = tree.allocatedSize();
    for (const MountReport::Crossing& crossing : mounts.crossings) {
        const std::int64_t beyond = sizeAt(crossing.path, rootPath, tree);
        bytes += crossing.isBack ? beyond : -beyond;
    }
    return bytes;
}

} // namespace brisalon
