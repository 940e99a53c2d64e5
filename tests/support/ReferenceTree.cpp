#include "support/ReferenceTree.h"

#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/FileNodeBuilder.h"
#include "host/Package.h"
#include "support/Files.h"

#include <algorithm>
#include <vector>

#include <sys/stat.h>

namespace brisalon::tests {

namespace {

struct stat statusOf(const std::string& path)
{
    struct stat status = {};
    ::lstat(path.c_str(), &status);
    return status;
}

std::int64_t wholeSize(const std::string& path)
{
    const struct stat status = statusOf(path);
    std::int64_t size = status.st_blocks * 512;
    if (S_ISDIR(status.st_mode))
        for (const std::string& name : namesIn(path))
            size += wholeSize(path + '/' + name);
    return size;
}

} // namespace

FileNode scanned(const FileURL& root, std::int64_t smallFileThreshold)
{
    return std::get<FileNode>(DiskScanner{smallFileThreshold, 0}.scan(root, [](const auto&) {}));
}

FileNode referenceTree(const std::string& folder, std::int64_t smallFileThreshold,
                       std::int64_t& count)
{
    std::vector<FileNode> children;
    std::vector<FileURL> small;
    std::int64_t smallBytes = 0;
    for (const std::string& name : namesIn(folder)) {
        ++count;
        const std::string path = folder + '/' + name;
        const struct stat status = statusOf(path);
        const std::int64_t size = status.st_blocks * 512;
        if (S_ISLNK(status.st_mode))
            continue;
        if (S_ISDIR(status.st_mode) && host::isPackageName(name)) {
            children.push_back(
                FileNodeBuilder::make(FileURL(path), wholeSize(path), NodeKind::package));
        } else if (S_ISDIR(status.st_mode)) {
            children.push_back(referenceTree(path, smallFileThreshold, count));
        } else if (size < smallFileThreshold) {
            small.emplace_back(path);
            smallBytes += size;
        } else {
            children.push_back(FileNodeBuilder::make(FileURL(path), size, NodeKind::file));
        }
    }
    if (!small.empty()) {
        const auto kind = NodeKind::smallFilesAggregate(static_cast<std::int64_t>(small.size()));
        children.push_back(FileNodeBuilder::make(FileURL(folder + "/.small-files-aggregate"),
                                                 smallBytes, kind, {}, FileURLList(small)));
    }
    std::stable_sort(children.begin(), children.end(), [](const FileNode& a, const FileNode& b) {
        return a.allocatedSize() > b.allocatedSize();
    });
    std::int64_t total = 0;
    for (const FileNode& child : children)
        total += child.allocatedSize();
    return FileNodeBuilder::make(FileURL(folder), total, NodeKind::directory, std::move(children));
}

} // namespace brisalon::tests
