#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace brisalon {
class MountTable;
}

namespace brisalon::host {

/// The places below a scan's root that the walk must not enter.
///
/// Worked out once, when a scan starts, from the system's table of mounts: so a
/// walk needs no system call to notice a mount, and never touches one that could
/// hang or be triggered by being opened. A mount that appears while the scan
/// runs is not known.
///
/// Not entered are: kernel pseudo-filesystems and automount points, by type of
/// file system; network and user-space mounts, unless the root itself lies on
/// one; and mounts of what the same scan meets in another place, so that nothing is
/// counted twice: parts of a file system that are seen elsewhere, the root's own
/// folder and what contains it, unions and mounted images of which the scan meets all
/// layers or the image. What it does not meet elsewhere it enters, local disks among
/// it. Goes by where things are stored, never by the names of their paths.
///
/// Immutable once made; safe to read from any thread.
class MountBarriers {
public:
    /// A folder at or above a barrier, most of which are mount points.
    class Place {
    public:
        bool isBarrier() const noexcept { return isBarrier_; }
        /// The place of that name inside this one; null when neither it nor
        /// anything below it is a barrier.
        const Place* child(std::string_view name) const;

    private:
        friend class MountBarriers;
        std::map<std::string, Place, std::less<>> children_;
        bool isBarrier_ = false;
    };

    /// The barriers for a scan of `root`, an absolute, resolved path. Asks the system
    /// about mounted images, and about the links to the layers of unions.
    MountBarriers(const MountTable& table, std::string_view root);

    /// The root's place; null when nothing below the root is a barrier.
    const Place* root() const noexcept;

private:
    Place root_;
};

} // namespace brisalon::host
