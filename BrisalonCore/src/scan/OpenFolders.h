#pragma once

#include "base/DescriptorShortage.h"
#include "scan/WalkFolder.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>

namespace brisalon::detail {

/// Keeps a walk's folders open from which subfolders are still to be opened: all
/// walks of the process together never more than one budget, however many, deep and
/// wide they are, and fewer where descriptors run short.
///
/// What is too much is the folder kept longest (as a rule the nearest to its root,
/// the last that a depth-first walk returns to). When a worker is about to return to
/// a folder that was given up, it is reached again through ".." from below, which
/// costs few steps however deep it lies; otherwise by its names from the nearest
/// folder above that is open. In both cases it must be the very same folder as
/// before, or what waits in it counts as vanished. A walk's root stays open as long
/// as the walk. Thread-safe.
class OpenFolders {
public:
    /// Subfolders are opened below `root`. `isAbandoned` is asked while a worker waits for
    /// a descriptor; once it is true, nobody does any more.
    OpenFolders(host::OpenFolder root, std::function<bool()> isAbandoned);

    /// How many folders the walks of this process may keep open together, by its present
    /// limit of open files, of which they leave most to others; at least 8.
    static std::size_t budget() noexcept;

    const host::OpenFolder& root() const noexcept { return *root_; }

    /// Holds that one of the folder's waiting subfolders is being dealt with; when the
    /// last claim ends, the folder is closed.
    class Claim {
    public:
        Claim(OpenFolders& folders, WalkFolder& folder) noexcept;
        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;
        ~Claim();

        /// Opens the subfolder; invalid when it has vanished or cannot be read, or the
        /// walk was abandoned. Where descriptors have run out, waits for one. Throws
        /// std::system_error when there is none to be had. Once; the claim has to end
        /// before its worker goes on to what may wait.
        host::OpenFolder open(const char* name);

        /// Why that failed, as in errno; 0 when it did not.
        int reason() const noexcept { return reason_; }

        /// Told when that failed and the worker goes on in `next`, a folder above or
        /// this one: if that was given up, reaches it from here.
        void returnTo(WalkFolder& next);

    private:
        OpenFolders& folders_;
        WalkFolder& folder_;
        std::shared_ptr<const host::OpenFolder> handle_;
        int reason_ = 0;
    };

    /// Keeps a folder of which `waiting` (at least 1) subfolders will be claimed; the
    /// root without a handle, since it is open.
    void keep(WalkFolder& folder, host::OpenFolder handle, std::size_t waiting);

    /// Forgets a folder whose subfolders will not be claimed after all.
    void forget(WalkFolder& folder) noexcept;

    /// Whether any folder was given up that is still needed.
    static bool hasClosed() noexcept { return shelf_.closed > 0; }

    /// Told when a worker is done with a folder in which nothing waits, and goes on in
    /// `next`, one of the folders above it: if that was given up, reaches it from here.
    void returnTo(WalkFolder& next, const WalkFolder& leaf, const host::OpenFolder& handle);

private:
    /// What is kept for all walks. Its mutex guards WalkFolder::access of all of them.
    struct Shelf {
        std::mutex mutex;
        std::list<WalkFolder*> held;     ///< the one held longest first; no roots
        std::atomic<std::size_t> closed; ///< folders that were given up and are still needed
    };

    std::shared_ptr<const host::OpenFolder> handleOf(WalkFolder& folder) const;
    std::shared_ptr<const host::OpenFolder> reopen(WalkFolder& folder) const;
    bool holdAgain(WalkFolder& folder, std::shared_ptr<const host::OpenFolder> handle) const;
    void hold(WalkFolder& folder, std::shared_ptr<const host::OpenFolder> handle) const;
    static void drop(WalkFolder& folder) noexcept;
    static bool giveUpLongestHeld() noexcept;
    static bool giveUpHalf() noexcept;

    static inline Shelf shelf_;

    const std::shared_ptr<const host::OpenFolder> root_;
    const std::function<bool()> isAbandoned_;
    const std::size_t budget_;
};

} // namespace brisalon::detail
