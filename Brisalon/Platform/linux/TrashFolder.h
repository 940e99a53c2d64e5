#pragma once

#include "Brisalon/Platform/linux/TrashFailure.h"

#include "BrisalonCore/Descriptor.h"
#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/ItemStatus.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace brisalon {

/// One trash folder as the desktop has them (trash rules 1.0 of freedesktop.org): the
/// items lie in "files", and for each there is a file in "info" that tells where it
/// came from.
class TrashFolder {
public:
    /// An item in its place, ready to be moved.
    struct Source {
        const Descriptor& folder; ///< the open folder that holds it
        std::string name;         ///< its name there
        std::string path;         ///< the path to restore it to
        ItemIdentity wanted;      ///< what it has to be
    };

    /// Opens the trash folder `root`, at `path`, and makes its two folders where
    /// they are missing. Nothing when it cannot be used.
    static std::optional<TrashFolder> open(Descriptor root, const FileURL& path);

    /// The mount that items are moved to; others cannot be moved here.
    const MountIdentity& mount() const noexcept { return mount_; }

    /// Moves the item here under a name of its own, and returns where it is. The
    /// information comes first, so that whatever happens in between nothing is in
    /// the Trash that cannot be restored; it is taken back when the item stays.
    std::variant<FileURL, TrashFailure> take(const Source& source) const;

private:
    TrashFolder() = default;

    /// Makes the information file of that name; 0, or why it cannot.
    int reserve(const std::string& infoName, const std::string& text) const;
    void takeBack(const std::string& infoName) const;
    /// Why the item cannot be moved here under that name; nothing when it was.
    std::optional<TrashFailure> move(const Source& source, const std::string& name) const;

    Descriptor files_;
    Descriptor info_;
    FileURL filesURL_;
    MountIdentity mount_;
    ItemIdentity filesIdentity_;
    ItemIdentity infoIdentity_;
    std::size_t longestName_ = 0;
};

} // namespace brisalon
