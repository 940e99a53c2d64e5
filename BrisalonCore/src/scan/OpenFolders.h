#pragma once

#include "base/DescriptorShortage.h"
#include "scan/WalkFolder.h"

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
/// the last that a depth-first walk returns to). A worker that comes to a folder that
/// was given up reaches it again from its place: as a rule through ".." from below,
/// so that it climbs no more levels than it has descended, however deep they lie.
/// It must be the very same folder as before, or what waits in it counts as vanished.
/// A walk's root stays open as long as the walk. Thread-safe.
class OpenFolders {
public:
    /// Subfolders are opened below `root`. `isAbandoned` is asked while a worker waits for
    /// a descriptor; once it is true, nobody does any more.
    OpenFolders(host::OpenFolder root, std::function<bool()> isAbandoned);

    /// How many folders the walks of this process may keep open together, by its present
    /// limit of open files, of which they leave most to others; at least 8.
    static std::size_t budget() noexcept;

    const host::OpenFolder& root() const noexcept { return *root_; }

    /// Where a worker is: a folder that it went through and keeps open, which lies above,
    /// at or below the one in which its next task waits. None at first, and for who has
    /// no task.
    struct Place {
        std::shared_ptr<const host::OpenFolder> handle;
        std::size_t depth = 0; ///< as WalkFolder's
    };

    /// The place of a worker that takes over what waits in the folder; none when that is
    /// not open.
    Place placeIn(const WalkFolder& folder) const;

    /// Holds that one of the folder's waiting subfolders is being dealt with; when the
    /// last claim ends, the folder is closed.
    class Claim {
    public:
        Claim(OpenFolders& folders, WalkFolder& folder) noexcept;
        Claim(const Claim&) = delete;
        Claim& operator=(const Claim&) = delete;
        ~Claim();

        /// Opens the subfolder, going to its folder from the worker's place if need be;
        /// invalid when it has vanished or cannot be read, or the walk was abandoned.
        /// Where descriptors have run out, waits for one, with no place. Throws
        /// std::system_error when there is none to be had. Once; the claim has to end
        /// before its worker goes on to what may wait.
        host::OpenFolder open(const char* name, Place& place);

        /// Why that failed, as in errno; 0 when it did not.
        int reason() const noexcept { return reason_; }

    private:
        OpenFolders& folders_;
        WalkFolder& folder_;
        int reason_ = 0;
    };

    /// Keeps a folder of which `waiting` (at least 1) subfolders will be claimed; the
    /// root without a handle, since it is open.
    void keep(WalkFolder& folder, host::OpenFolder handle, std::size_t waiting);

    /// Forgets a folder whose subfolders will not be claimed after all.
    void forget(WalkFolder& folder) noexcept;

private:
    /// What is kept for all walks. Its mutex guards WalkFolder::access of all of them.
    struct Shelf {
        std::mutex mutex;
        std::list<WalkFolder*> held; ///< the one held longest first; no roots
    };

    std::shared_ptr<const host::OpenFolder> handleOf(const WalkFolder& folder) const;
    std::shared_ptr<const host::OpenFolder> reach(WalkFolder& folder, Place& place) const;
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
