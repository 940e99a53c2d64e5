#pragma once

#include "Brisalon/Platform/TrashItem.h"

#include "BrisalonCore/FileURL.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {

/// What the desktop does with files and addresses on the program's behalf. Main
/// thread.
class Workspace {
public:
    struct Moved {
        FileURL source; ///< the item's `url`
        FileURL destination;
    };
    struct Recycled {
        /// The items that are in the Trash now, in order; each path once.
        std::vector<Moved> moved;
        /// What the system said when it refused an item, to be shown; empty when it
        /// said nothing. Of several refusals the first.
        std::string error;
    };
    using Completion = std::function<void(Recycled)>;
    /// Told on the main thread whether anything could be started, possibly before the call
    /// returns; never once the workspace is destroyed.
    using Started = std::function<void(bool)>;

    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// Moves the items to the Trash, from where they can be restored; each that
    /// cannot be moved, or is no longer what was recorded, stays as it is. Nothing
    /// is ever copied or removed, no link is followed, and a folder moves whole.
    ///
    /// Returns at once and works elsewhere. `completion` is called on the main
    /// thread, never before this returns, and not at all when the workspace is
    /// destroyed before; then the items that were not reached stay as they are.
    virtual void recycle(std::vector<TrashItem> items, Completion completion) = 0;

    /// Shows the item in a window of the file manager. Returns at once; when the
    /// item is missing, the file manager decides what to show.
    virtual void reveal(const FileURL& item, Started started) = 0;

    /// Opens a terminal in the folder, whose path is resolved. Returns at once.
    virtual void openTerminal(const FileURL& folder, Started started) = 0;

    /// Opens an address with whatever the desktop has for it; false when it is no
    /// address or the desktop has nothing.
    virtual bool openAddress(std::string_view address) = 0;
};

} // namespace brisalon
