#pragma once

#include "Brisalon/Platform/TrashItem.h"
#include "Brisalon/Platform/linux/ReachedFolder.h"
#include "Brisalon/Platform/linux/TrashFailure.h"
#include "Brisalon/Platform/linux/TrashFolder.h"

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/MountTable.h"

#include <map>
#include <optional>
#include <string_view>
#include <variant>

namespace brisalon {

/// The current user's Trash, as the file managers of the desktop have it (trash
/// rules 1.0 of freedesktop.org): the home trash for items on its own volume, and
/// for those on another one that volume's own trash folder: in the administrator's
/// ".Trash" where there is one, else ".Trash-UID".
///
/// An item moves by a rename within its volume, or not at all. Lives for one
/// operation, on one thread: what it learns of volumes it does not ask again.
class DesktopTrash {
public:
    /// `home` is the home trash; it is made when it is first needed.
    explicit DesktopTrash(FileURL home);

    /// Where the home trash is: "Trash" in the user's folder of application data,
    /// by the environment, so on the main thread.
    static FileURL homeTrash();

    /// Moves the item as it was recorded, and returns where it is now.
    std::variant<FileURL, TrashFailure> put(const TrashItem& item);

private:
    const TrashFolder* homeFolder();
    const TrashFolder* volumeFolder(const ReachedFolder& place);
    /// Whether a volume is mounted somewhere in the folder at that path.
    bool holdsMount(std::string_view path) const;

    FileURL home_;
    MountTable mounts_;
    std::optional<std::optional<TrashFolder>> homeFolder_;
    std::map<MountIdentity, std::optional<TrashFolder>> volumeFolders_;
};

} // namespace brisalon
