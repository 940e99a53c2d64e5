#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {

/// Where an item is stored: the same for every path that shows it, through whichever
/// mounts, and another for every other item.
struct StoredPlace {
    std::uint64_t device = 0; ///< that of the file system, as Mount::device
    std::string path;         ///< from the top of the file system

    /// Whether it is that folder or lies below it.
    bool isWithin(const StoredPlace& folder) const noexcept;

    friend bool operator==(const StoredPlace&, const StoredPlace&) = default;
};

/// One file system, or a part of one, that is shown at one place. All texts are the
/// bytes that the system was given, whatever they are; a source may be empty.
struct Mount {
    std::uint64_t id = 0;     ///< as MountIdentity::mount
    std::uint64_t parent = 0; ///< the mount that it is mounted on; may be out of reach
    /// Number of the file system. Most items that the mount shows have it as their
    /// ItemIdentity::device; those of a file system of several volumes have others.
    std::uint64_t device = 0;
    std::string root;                 ///< which folder (or file) of its file system it shows
    std::string point;                ///< where: the mount point
    std::string type;                 ///< of the file system, such as "ext4"
    std::string source;               ///< what the file system was made of, such as "/dev/sda1"
    std::vector<std::string> options; ///< of the mount, such as "ro"
    std::vector<std::string> superOptions; ///< of the file system, such as "size=1024k"
    /// Where the mount point itself is stored, which what is mounted there hides; as
    /// long as the mount exists it may move with the folders above it. Nothing when it
    /// is mounted on something out of reach.
    std::optional<StoredPlace> under;

    /// The value of the first option of the file system of that name, empty when it
    /// has none; nothing when there is no such option.
    std::optional<std::string_view> superOption(std::string_view name) const noexcept;

    /// Where what this mount shows at `path`, at or below its point, is stored.
    StoredPlace place(std::string_view path) const;

    /// Where all that it shows is stored.
    StoredPlace shown() const { return {device, root}; }

    /// Whether it shows a volume from its top, rather than some folder of one. A file
    /// system may hold several volumes.
    bool showsVolume() const noexcept;
};

/// The mounts of the running system, as they were at one moment. Knows, without
/// touching any of them, through which one a path is seen and where it leads.
///
/// Paths are absolute and resolved: a link on the way would lead elsewhere. Immutable
/// once made; safe to read from any thread. Pointers to its mounts live as long as
/// the table that they came from, wherever that is moved.
class MountTable {
public:
    /// From a table in the system's own format; lines of another form are left out.
    explicit MountTable(std::string_view text);
    MountTable(MountTable&&) noexcept = default;
    MountTable& operator=(MountTable&&) noexcept = default;
    ~MountTable() = default;

    /// The calling thread's table, as far as it can be read; empty when the system has
    /// none.
    static MountTable current();

    /// All of them, in the system's order; those too that others hide.
    const std::vector<Mount>& mounts() const noexcept { return mounts_; }

    /// The mounts that are passed on the way from "/" to `path`, the last the one that it
    /// is seen through: of several mounted on one another only the last, of hidden ones
    /// none. Empty when that is out of reach. Seen as if `without`, and what is mounted on
    /// that, were not there.
    std::vector<const Mount*> way(std::string_view path, const Mount* without = nullptr) const;

    /// The mount through which `path` is seen; null when that is out of reach.
    const Mount* at(std::string_view path) const;

    /// Where what is seen at `path` is stored; nothing when that is out of reach.
    std::optional<StoredPlace> place(std::string_view path) const;

    /// Whether something is mounted on the item at `path` or on a folder in it, by
    /// whatever path it was mounted there: what moves the item takes it along.
    bool carriesMount(std::string_view path) const;

private:
    /// What is mounted at or below `reached`, a folder on the way to `path`, as `mount`
    /// shows it: the first that the way comes to. Null for nothing.
    const Mount* nextOn(std::string_view path, std::size_t reached, const Mount* mount,
                        const Mount* without) const;

    /// The mount that another is mounted on (nothing for those that paths start at), and
    /// that one's point. In an order in which short points come first: so what lies on a
    /// way is found by its lengths, which are few, and not by trying the folders, of
    /// which a million may lie in one another.
    struct Place {
        std::optional<std::uint64_t> parent;
        std::size_t length;
        std::string_view point;
        auto operator<=>(const Place&) const = default;
    };

    std::vector<Mount> mounts_;
    std::map<Place, const Mount*> children_; ///< of several in one place the last
};

} // namespace brisalon
