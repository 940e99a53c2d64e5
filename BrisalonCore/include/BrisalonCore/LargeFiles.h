#pragma once

#include "BrisalonCore/LargeFileEntry.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {

/// Finds the largest items of a finished tree, and items by path. Pure; any
/// thread; no file-system access; no recursion.
class LargeFiles {
public:
    LargeFiles() = delete;

    /// The `limit` largest files and packages, largest first; equal sizes in
    /// pre-order. Aggregates never appear. One pass, with memory for `limit`.
    static std::vector<LargeFileEntry> topFiles(const FileNode& root, std::size_t limit);

    /// The first node in pre-order whose path is exactly `path`, or null; valid
    /// while `root` lives.
    static const FileNode* find(std::string_view path, const FileNode& root);

    /// The path of the URL's containing folder if the tree has such a node.
    static std::optional<std::string> parentPath(const FileURL& url, const FileNode& root);
};

} // namespace brisalon
