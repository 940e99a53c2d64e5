#pragma once

#include "Brisalon/Platform/linux/MadeFolders.h"
#include "Brisalon/Platform/linux/TrashFailure.h"
#include "Brisalon/Platform/linux/TrashJournal.h"

#include "BrisalonCore/Descriptor.h"
#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/ItemStatus.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brisalon {

/// One trash folder as the desktop has them (trash rules 1.0 of freedesktop.org): the
/// items lie in "files", and for each there is a file in "info" that tells where it
/// came from.
///
/// The information comes first, and is on the disk before its item moves: so whatever
/// happens in between, nothing is in the Trash that cannot be restored. Since waiting
/// for the disk takes long, a place is reserved for every item before the first moves.
/// What a program that was killed has left of its move is put right by the next that
/// opens the folder.
class TrashFolder {
public:
    /// An item in its place, ready to be moved.
    struct Source {
        const Descriptor& folder; ///< the open folder that holds it
        std::string name;         ///< its name there
        std::string path;         ///< the path to restore it to
        ItemIdentity wanted;      ///< what it has to be
    };

    /// Opens the trash folder `root`, at `path`, and makes its two folders where they
    /// are missing.
    static std::variant<TrashFailure, TrashFolder> open(Descriptor root, const FileURL& path,
                                                        MadeFolders& made);

    /// Reserves a name for the item, and writes its information. Throws std::bad_alloc
    /// with nothing left behind.
    std::variant<std::string, TrashFailure> reserve(const Source& source);

    /// Gives the name up: the item will not come.
    void release(const std::string& name) const noexcept;

    /// Moves the item to the name that was reserved for it, or to another that is free,
    /// and returns where it is. What has been reserved is on the disk then. Throws
    /// std::bad_alloc with the item where it was and the name given up.
    std::variant<FileURL, TrashFailure> take(const Source& source, std::string name);

    /// Waits until the items that were taken are here for good.
    void finish() noexcept;

private:
    TrashFolder() = default;

    /// Makes the information file of that name; 0, or why it cannot.
    int writeInfo(const std::string& infoName, const std::string& text);
    /// Waits until what has been reserved is on the disk; 0, or why it may not be.
    int flush();
    int flushReserved() const;
    std::variant<FileURL, TrashFailure> takeOrRename(const Source& source, std::string& name);
    /// Why the item cannot be moved here under that name; nothing when it was.
    std::optional<TrashFailure> move(const Source& source, const std::string& name) const;

    Descriptor root_;
    Descriptor files_;
    Descriptor info_;
    FileURL filesURL_;
    ItemIdentity filesIdentity_;
    ItemIdentity infoIdentity_;
    TrashJournal journal_;
    bool isNew_ = false;       ///< folders were made that are not on the disk yet
    bool hasArrivals_ = false; ///< items were taken that may not be here for good
    std::vector<std::string> unflushed_;
    int flushError_ = 0;
};

} // namespace brisalon
