#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {
class MountTable;
struct MountReport;
} // namespace brisalon

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
/// it, also where that lies in such a mount: there everything beside the way is a barrier.
/// Goes by where things are stored, never by the names of their paths.
///
/// Immutable once made; safe to read from any thread.
class MountBarriers {
public:
    /// Where what is entered ends, or begins again.
    struct Way {
        std::string path;
        bool isOpen;
    };

    /// A folder with the ways at and below it, mostly none. A small value; refers to
    /// the MountBarriers that it came from.
    class Place {
    public:
        bool isBarrier() const noexcept;
        /// The item of that name inside this folder.
        Place child(std::string_view name) const noexcept;

    private:
        friend class MountBarriers;
        std::span<const Way> ways_;
        std::size_t length_ = 0; ///< of the path that all of them begin with
        bool isShut_ = false;    ///< whether only open ways are entered
    };

    /// The barriers for a scan of `root`, an absolute, resolved path. Asks the system
    /// about mounted images, about the links to the layers of unions, and whether there is
    /// anything in what others are mounted over. Fills the report, if there is one.
    MountBarriers(const MountTable& table, std::string_view root, MountReport* report = nullptr);

    Place root() const noexcept;

private:
    /// In place of the paths the names from the root on, every one ended by NUL, so that
    /// in their order what lies in one folder stands together. Not a tree: a mount may lie
    /// a million folders deep.
    std::vector<Way> ways_;
};

} // namespace brisalon::host
