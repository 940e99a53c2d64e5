#pragma once

#include "scan/WalkFolder.h"

#include <atomic>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string_view>

namespace brisalon::detail {

/// Keeps folders open from which subfolders are still to be opened, but never
/// more than a budget, however deep and wide the tree.
///
/// Over the budget, the folder kept longest (the nearest to the root, the last
/// that a depth-first walk returns to) is closed. When a worker is about to
/// return there, the folder is reached again through ".." from below, which
/// costs few steps however deep it lies; otherwise by its names from the nearest
/// folder above that is open. In both cases it must be the very same folder as
/// before, or what waits in it counts as vanished. Thread-safe.
class OpenFolders {
public:
    OpenFolders(std::string_view rootPath, std::size_t budget);

    /// Holds that one of the folder's waiting subfolders is being dealt with;
    /// when the last claim ends, the folder is closed.
    class Claim {
    public:
        Claim(OpenFolders& folders, WalkFolder& folder) noexcept;
        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;
        ~Claim();

        /// Opens the subfolder; invalid when it has vanished or cannot be read.
        host::OpenFolder open(const char* name);

    private:
        OpenFolders& folders_;
        WalkFolder& folder_;
    };

    /// Keeps a folder of which `waiting` (at least 1) subfolders will be claimed.
    void keep(WalkFolder& folder, host::OpenFolder handle, std::size_t waiting);

    /// Forgets a folder whose subfolders will not be claimed after all.
    void forget(WalkFolder& folder) noexcept;

    /// Whether any folder was closed that is still needed.
    bool hasClosed() const noexcept { return closed_ > 0; }

    /// Told when a worker is done with a folder in which nothing waits, and goes
    /// on in `next`, one of the folders above it: if that was closed, reaches it
    /// from here.
    void returnTo(WalkFolder& next, const WalkFolder& leaf, const host::OpenFolder& handle);

private:
    std::shared_ptr<const host::OpenFolder> reopen(WalkFolder& folder);
    void hold(WalkFolder& folder, std::shared_ptr<const host::OpenFolder> handle);
    void drop(WalkFolder& folder) noexcept;

    const std::shared_ptr<const host::OpenFolder> root_;
    const std::size_t budget_;
    std::mutex mutex_;
    std::list<WalkFolder*> held_;        ///< the one held longest first
    std::atomic<std::size_t> closed_{0}; ///< folders that were given up and are still needed
};

} // namespace brisalon::detail
