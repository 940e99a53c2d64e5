#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace brisalon {
class MountTable;
}

namespace brisalon::host {

/// The mount points at and below a scan's root that the walk must not enter.
///
/// Worked out once, when a scan starts, from the system's table of mounts: so a
/// walk needs no system call to notice a mount, and never touches one that could
/// hang or be triggered by being opened. A mount that appears while the scan
/// runs is not known.
///
/// Not entered are: kernel pseudo-filesystems and automount points, by type of
/// file system; network and user-space mounts, unless the root itself lies on
/// one; file systems that show again what is stored elsewhere (overlays,
/// mounted images), unless the root lies on one; and a mount that shows one of
/// the folders above it. The mount that the root itself lies on is always
/// walked; local disks are entered.
///
/// Immutable once made; safe to read from any thread.
class MountBarriers {
public:
    /// A folder at or above a barrier.
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

    /// The barriers for a scan of `root`, an absolute, resolved path.
    MountBarriers(const MountTable& table, std::string_view root);

    /// The root's place; null when nothing below the root is a barrier.
    const Place* root() const noexcept;

private:
    Place root_;
};

} // namespace brisalon::host
