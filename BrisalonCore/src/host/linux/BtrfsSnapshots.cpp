#include "host/linux/BtrfsSnapshots.h"

#include "BrisalonCore/MountTable.h"
#include "base/Utf8.h"
#include "host/Folder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include <endian.h>
#include <linux/btrfs.h>
#include <linux/btrfs_tree.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

namespace brisalon::host {

namespace {

/// Parts of the paths of subvolumes that container engines and machine managers make
/// as snapshots of one another.
constexpr std::array<std::string_view, 5> enginePlaces{
    "/btrfs/subvolumes/", "/io.containerd.snapshotter.v1.btrfs/", "lib/lxd/", "lib/incus/",
    "lib/machines/",
};

struct Subvolume {
    bool isSnapshot = false;
    std::time_t created = 0;
    /// Where it lies: the subvolume, the number of the folder in it, its name there.
    /// One that is being deleted lies nowhere.
    std::uint64_t parent = 0;
    std::uint64_t folder = 0;
    std::string name;
};

using Subvolumes = std::map<std::uint64_t, Subvolume>;

/// An item of the tree of roots; data as on disk, in little-endian order.
void take(Subvolumes& subvolumes, const btrfs_ioctl_search_header& header, std::string_view data)
{
    if (header.type == BTRFS_ROOT_ITEM_KEY && data.size() >= sizeof(btrfs_root_item)) {
        btrfs_root_item item;
        std::memcpy(&item, data.data(), sizeof item);
        if (item.generation_v2 != item.generation)
            return; // written by a kernel from before there were times
        Subvolume& subvolume = subvolumes[header.objectid];
        subvolume.isSnapshot = std::ranges::any_of(item.parent_uuid, std::identity());
        subvolume.created = static_cast<std::time_t>(le64toh(item.otime.sec));
    } else if (header.type == BTRFS_ROOT_BACKREF_KEY && data.size() >= sizeof(btrfs_root_ref)) {
        btrfs_root_ref reference;
        std::memcpy(&reference, data.data(), sizeof reference);
        Subvolume& subvolume = subvolumes[header.objectid];
        subvolume.parent = header.offset;
        subvolume.folder = le64toh(reference.dirid);
        subvolume.name = data.substr(sizeof reference, le16toh(reference.name_len));
    }
}

/// All subvolumes but the topmost; an error number when they cannot be read.
int readSubvolumes(int handle, Subvolumes& subvolumes)
{
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    btrfs_ioctl_search_args arguments{};
    btrfs_ioctl_search_key& key = arguments.key;
    key.tree_id = BTRFS_ROOT_TREE_OBJECTID;
    key.min_objectid = BTRFS_FIRST_FREE_OBJECTID;
    key.max_objectid = BTRFS_LAST_FREE_OBJECTID;
    key.min_type = BTRFS_ROOT_ITEM_KEY;
    key.max_type = BTRFS_ROOT_BACKREF_KEY;
    key.max_offset = most;
    key.max_transid = most;
    for (;;) {
        key.nr_items = std::numeric_limits<std::uint32_t>::max();
        if (::ioctl(handle, BTRFS_IOC_TREE_SEARCH, &arguments) != 0)
            return errno;
        if (key.nr_items == 0)
            return 0;
        std::string_view rest(arguments.buf, sizeof arguments.buf);
        for (std::uint32_t i = 0; i < key.nr_items; ++i) {
            btrfs_ioctl_search_header header;
            std::memcpy(&header, rest.data(), sizeof header);
            rest.remove_prefix(sizeof header);
            take(subvolumes, header, rest.substr(0, header.len));
            rest.remove_prefix(header.len);
            key.min_objectid = header.objectid;
            key.min_type = header.type;
            key.min_offset = header.offset + 1;
        }
    }
}

/// The path from the top of the file system; nothing when the subvolume lies nowhere,
/// or so deep that the kernel does not tell.
std::optional<std::string> pathOf(std::uint64_t number, const Subvolumes& subvolumes, int handle)
{
    std::string path;
    // A damaged file system may have them lie in a circle.
    for (std::size_t depth = 0; depth <= subvolumes.size(); ++depth) {
        if (number == BTRFS_FS_TREE_OBJECTID)
            return path;
        const auto found = subvolumes.find(number);
        if (found == subvolumes.end() || found->second.name.empty())
            return std::nullopt;
        const Subvolume& subvolume = found->second;
        btrfs_ioctl_ino_lookup_args lookup{};
        lookup.treeid = subvolume.parent;
        lookup.objectid = subvolume.folder;
        if (::ioctl(handle, BTRFS_IOC_INO_LOOKUP, &lookup) != 0)
            return std::nullopt;
        path = '/' + std::string(lookup.name) + subvolume.name + path;
        number = subvolume.parent;
    }
    return std::nullopt;
}

/// The numbers of the subvolumes of that file system that are mounted somewhere.
std::set<std::uint64_t> mountedSubvolumes(const std::string& mountPoint)
{
    const MountTable table = MountTable::current();
    const Mount* const here = table.at(mountPoint);
    std::set<std::uint64_t> numbers;
    for (const Mount& mount : table.mounts()) {
        // In a changed root the table does not tell which one is mounted there.
        const auto text = mount.superOption("subvolid");
        if (mount.type != "btrfs" || !text || (here && mount.device != here->device))
            continue;
        std::uint64_t number = 0;
        std::from_chars(text->data(), text->data() + text->size(), number);
        numbers.insert(number);
    }
    return numbers;
}

/// Local time as YYYY-MM-DD HH:MM:SS; empty for times that the form cannot hold.
std::string localTime(std::time_t time)
{
    std::tm parts{};
    std::array<char, 32> text;
    if (!::localtime_r(&time, &parts) || parts.tm_year < 1000 - 1900 || parts.tm_year > 9999 - 1900)
        return {};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)};
}

bool belongsToEngine(std::string_view path)
{
    return std::ranges::any_of(enginePlaces, [path](std::string_view place) {
        return path.find(place) != std::string_view::npos;
    });
}

/// A path as text of one line.
std::string shown(std::string_view path)
{
    std::string result;
    while (!path.empty()) {
        const auto [value, bytes] = detail::firstCharacter(path);
        if (value == detail::notUtf8 || value < U' ')
            result += "\uFFFD";
        else
            result += path.substr(0, bytes);
        path.remove_prefix(bytes);
    }
    return result;
}

} // namespace

BtrfsSnapshots::BtrfsSnapshots(std::string tool, std::string mountPoint)
    : tool_(std::move(tool)), mountPoint_(std::move(mountPoint))
{
}

bool BtrfsSnapshots::isAvailable(Deadline /*deadline*/) const
{
    struct statfs status;
    std::error_code error;
    return ::statfs(mountPoint_.c_str(), &status) == 0 && status.f_type == BTRFS_SUPER_MAGIC &&
           std::filesystem::exists(tool_, error);
}

SnapshotManager::Listing BtrfsSnapshots::list(Deadline deadline) const
{
    Listing found;
    const OpenFolder folder = OpenFolder::at(mountPoint_);
    Subvolumes subvolumes;
    if (const int error = readSubvolumes(folder.descriptor().get(), subvolumes)) {
        found.complaint = "Could not list the snapshots of " + mountPoint_ + ": " +
                          std::error_code(error, std::generic_category()).message() + ".";
        return found;
    }
    const std::set<std::uint64_t> mounted = mountedSubvolumes(mountPoint_);
    for (const auto& [number, subvolume] : subvolumes) {
        if (std::chrono::steady_clock::now() >= deadline) {
            found.complaint = mountPoint_ + " did not answer in time.";
            found.hasAnswered = false;
            break;
        }
        if (!subvolume.isSnapshot || mounted.contains(number))
            continue;
        const auto path = pathOf(number, subvolumes, folder.descriptor().get());
        const std::string time = localTime(subvolume.created);
        if (!path || time.empty() || belongsToEngine(*path))
            continue;
        std::string line =
            "ID " + std::to_string(number) + " otime " + time + " path " + shown(*path);
        found.rawOutput += line + '\n';
        found.snapshots.push_back({number, time, std::move(line)});
    }
    return found;
}

ProcessResult BtrfsSnapshots::erase(std::uint64_t number, Deadline deadline) const
{
    // By number: a path may be out of reach of the mount point, or name another one
    // by now.
    return runProcess(tool_,
                      {"subvolume", "delete", "--subvolid", std::to_string(number), mountPoint_},
                      deadline);
}

} // namespace brisalon::host
