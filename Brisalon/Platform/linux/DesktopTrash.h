#pragma once

#include "Brisalon/Platform/TrashItem.h"
#include "Brisalon/Platform/linux/TrashFailure.h"

#include "BrisalonCore/FileURL.h"

#include <span>
#include <stop_token>
#include <utility>
#include <variant>
#include <vector>

namespace brisalon {

/// The current user's Trash, as the file managers of the desktop have it (trash
/// rules 1.0 of freedesktop.org): the home trash for items on its own volume, and
/// for those on another one that volume's own trash folder: in the administrator's
/// ".Trash" where there is one, else ".Trash-UID". Any thread.
class DesktopTrash {
public:
    /// `home` is the home trash; it is made when it is first needed.
    explicit DesktopTrash(FileURL home) : home_(std::move(home)) {}

    /// Where the home trash is: "Trash" in the user's folder of application data,
    /// by the environment, so on the main thread.
    static FileURL homeTrash();

    /// Where the item is now, or why it was not moved.
    using Result = std::variant<FileURL, TrashFailure>;

    /// Moves the items as they were recorded, one after the other, each by a rename
    /// within its volume or not at all. The outcomes are in their order. Looks at the
    /// stop token before every item; those that are not reached are refused. Trash
    /// folders that were made and got no item are removed again. An item for which there
    /// is no memory is refused; throws std::bad_alloc only before it has done anything.
    std::vector<Result> put(std::span<const TrashItem> items,
                            const std::stop_token& stop = {}) const;

    /// The same for one item.
    Result put(const TrashItem& item) const { return put({&item, 1}).front(); }

private:
    FileURL home_;
};

} // namespace brisalon
