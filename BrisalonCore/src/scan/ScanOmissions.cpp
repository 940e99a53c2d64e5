#include "BrisalonCore/ScanOmissions.h"

#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <string>
#include <string_view>

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
