#pragma once

#include "BrisalonCore/FileNode.h"

#include <optional>
#include <string_view>

namespace brisalon {

/// Puts a newer scan of one folder into the tree of an older scan that holds it.
/// Stateless; any thread; no file-system access; no recursion.
class TreeGraft {
public:
    TreeGraft() = delete;

    /// A new tree in which `folder` stands in the place of the folder at `path`, or
    /// nothing does; the same as if the whole tree had been scanned anew and nothing
    /// outside that folder had changed. It shares all else with `tree`, which stays as
    /// it is: the cost is that of the folders above and what lies directly in them.
    ///
    /// Both are trees of scans, and `folder` has that path. Nothing when `tree` has no
    /// folder there, or when nothing is left of it.
    static std::optional<FileNode> graft(const FileNode& tree, std::string_view path,
                                         std::optional<FileNode> folder);
};

} // namespace brisalon
