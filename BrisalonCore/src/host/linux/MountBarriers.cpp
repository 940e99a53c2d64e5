#include "host/MountBarriers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace brisalon::host {

namespace {

/// What a file system stands for in a map of disk space.
enum class Nature : std::uint8_t {
    kernel, ///< the kernel's own data dressed as files, or a trigger that mounts
    remote, ///< answered over a network or by a program, either of which can hang
    view,   ///< shows again what is stored in another place of this machine
    image,  ///< a view unless it has a disk of its own
    disk,   ///< stored where it is mounted (memory too)
};

struct TypeRow {
    std::string_view type;
    Nature nature;
};

/// The types of file systems that are not disks. "fuseblk" is missing since it
/// is a local disk (NTFS, exFAT) driven by a program; every other type of the
/// form "fuse.NAME" is remote.
constexpr auto typeRows = std::to_array<TypeRow>({
    {"proc", Nature::kernel},
    {"sysfs", Nature::kernel},
    {"cgroup", Nature::kernel},
    {"cgroup2", Nature::kernel},
    {"cpuset", Nature::kernel},
    {"devtmpfs", Nature::kernel},
    {"devpts", Nature::kernel},
    {"debugfs", Nature::kernel},
    {"tracefs", Nature::kernel},
    {"securityfs", Nature::kernel},
    {"selinuxfs", Nature::kernel},
    {"smackfs", Nature::kernel},
    {"configfs", Nature::kernel},
    {"fusectl", Nature::kernel},
    {"bpf", Nature::kernel},
    {"pstore", Nature::kernel},
    {"efivarfs", Nature::kernel},
    {"mqueue", Nature::kernel},
    {"hugetlbfs", Nature::kernel},
    {"binfmt_misc", Nature::kernel},
    {"nsfs", Nature::kernel},
    {"rpc_pipefs", Nature::kernel},
    {"nfsd", Nature::kernel},
    {"resctrl", Nature::kernel},
    {"functionfs", Nature::kernel},
    {"ocfs2_dlmfs", Nature::kernel},
    {"xenfs", Nature::kernel},
    {"autofs", Nature::kernel},

    {"fuse", Nature::remote},
    {"nfs", Nature::remote},
    {"nfs4", Nature::remote},
    {"cifs", Nature::remote},
    {"smb3", Nature::remote},
    {"smbfs", Nature::remote},
    {"afs", Nature::remote},
    {"ncpfs", Nature::remote},
    {"coda", Nature::remote},
    {"ceph", Nature::remote},
    {"glusterfs", Nature::remote},
    {"lustre", Nature::remote},
    {"beegfs", Nature::remote},
    {"gpfs", Nature::remote},
    {"pvfs2", Nature::remote},
    {"davfs", Nature::remote},
    // Folders of the host that a virtual machine sees.
    {"9p", Nature::remote},
    {"virtiofs", Nature::remote},
    {"vboxsf", Nature::remote},
    {"vmhgfs", Nature::remote},
    {"prl_fs", Nature::remote},

    // Made of folders that are met at their own places: a container's root, for
    // example, is a union of layers in the container engine's store.
    {"overlay", Nature::view},
    {"overlayfs", Nature::view},
    {"aufs", Nature::view},
    {"unionfs", Nature::view},
    {"shiftfs", Nature::view},
    {"ecryptfs", Nature::view},

    // Compressed images, as a rule of files (packages of applications, live
    // systems).
    {"squashfs", Nature::image},
    {"erofs", Nature::image},
    {"cramfs", Nature::image},
});

Nature natureOf(std::string_view type)
{
    for (const TypeRow& row : typeRows)
        if (row.type == type)
            return row.nature;
    return type.starts_with("fuse.") ? Nature::remote : Nature::disk;
}

struct Mount {
    int id;
    int parent;
    std::string device; ///< "major:minor" of the file system
    std::string root;   ///< which folder of its file system it shows
    std::string point;  ///< where
    std::string type;
    std::string source;

    /// Block devices that read from a file.
    bool isLoop() const { return device.starts_with("7:") || source.starts_with("/dev/loop"); }
    /// A number of its own, rather than one of a block device.
    bool hasNoDevice() const { return device.starts_with("0:"); }

    Nature nature() const
    {
        const Nature byType = natureOf(type);
        if (byType != Nature::disk && byType != Nature::image)
            return byType;
        return isLoop() || (byType == Nature::image && hasNoDevice()) ? Nature::view : Nature::disk;
    }

    /// Where in its file system a folder lies that is seen through this mount.
    std::string location(std::string_view folder) const
    {
        std::string result = root == "/" ? "" : root;
        result += folder.substr(point == "/" ? 0 : point.size());
        if (result.size() > 1 && result.ends_with('/'))
            result.pop_back();
        return result.empty() ? "/" : result;
    }
};

/// Calls `visit` with every folder on the way from "/" to `path`, both included.
template <typename Visitor>
void forEachPrefix(std::string_view path, Visitor&& visit)
{
    visit(std::string_view("/"));
    for (std::size_t end = 1; end < path.size();) {
        end = std::min(path.find('/', end), path.size());
        visit(path.substr(0, end));
        ++end;
    }
}

/// Takes the text up to the next separator off the front of `rest`.
std::string_view nextField(std::string_view& rest, char separator)
{
    const auto end = std::min(rest.find(separator), rest.size());
    const std::string_view field = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return field;
}

/// The table writes white space, backslashes and "#" as a backslash and three
/// octal digits.
std::string unescaped(std::string_view text)
{
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string result;
    while (!text.empty()) {
        if (text.size() >= 4 && text[0] == '\\' && std::all_of(&text[1], &text[1] + 3, isOctal)) {
            result += static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + text[3] - '0');
            text.remove_prefix(4);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::optional<int> number(std::string_view text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// One line of /proc/PID/mountinfo (see proc(5)); nothing if it is not one.
std::optional<Mount> parsed(std::string_view line)
{
    const auto id = number(nextField(line, ' '));
    const auto parent = number(nextField(line, ' '));
    if (!id || !parent)
        return std::nullopt;
    Mount mount{*id, *parent, {}, {}, {}, {}, {}};
    mount.device = nextField(line, ' ');
    mount.root = unescaped(nextField(line, ' '));
    mount.point = unescaped(nextField(line, ' '));
    nextField(line, ' '); // options
    // Any number of optional fields, ended by a dash.
    while (!line.empty() && nextField(line, ' ') != "-") {
    }
    mount.type = unescaped(nextField(line, ' '));
    mount.source = unescaped(nextField(line, ' '));
    if (!mount.point.starts_with('/') || mount.type.empty())
        return std::nullopt;
    return mount;
}

/// The tree of mounts, in which a path is followed as the kernel follows it.
class MountTree {
public:
    explicit MountTree(std::string_view table)
    {
        while (!table.empty())
            if (auto mount = parsed(nextField(table, '\n')))
                mounts_.push_back(std::move(*mount));
        std::vector<int> ids;
        for (const Mount& mount : mounts_)
            ids.push_back(mount.id);
        std::ranges::sort(ids);
        // What is mounted on something out of reach (the first mount of all; in
        // a changed root, others too) is where paths start.
        for (const Mount& mount : mounts_) {
            const bool isRooted =
                mount.parent != mount.id && std::ranges::binary_search(ids, mount.parent);
            children_[{isRooted ? mount.parent : nowhere, mount.point}] = &mount;
        }
    }

    const std::vector<Mount>& mounts() const { return mounts_; }

    /// Calls `visit` with every folder on the way from "/" to `path` and the
    /// mount that it is seen through (null where the table tells of none): of
    /// several mounted on one another the last, of hidden ones none.
    template <typename Visitor>
    void follow(std::string_view path, Visitor&& visit) const
    {
        const Mount* current = nullptr;
        forEachPrefix(path, [&](std::string_view folder) {
            for (const Mount* next = mountedOn(current, folder); next;
                 next = mountedOn(current, folder))
                current = next;
            visit(folder, current);
        });
    }

    const Mount* mountAt(std::string_view path) const
    {
        const Mount* result = nullptr;
        follow(path, [&](std::string_view, const Mount* mount) { result = mount; });
        return result;
    }

private:
    static constexpr int nowhere = -1;

    const Mount* mountedOn(const Mount* mount, std::string_view folder) const
    {
        const auto child = children_.find({mount ? mount->id : nowhere, folder});
        return child == children_.end() ? nullptr : child->second;
    }

    std::vector<Mount> mounts_;
    std::map<std::pair<int, std::string_view>, const Mount*> children_;
};

/// Whether the mount shows a folder on the way to its own mount point.
bool showsFolderAbove(const Mount& mount, const MountTree& tree)
{
    bool result = false;
    tree.follow(mount.point, [&](std::string_view folder, const Mount* through) {
        if (through && through != &mount && through->device == mount.device &&
            through->location(folder) == mount.root)
            result = true;
    });
    return result;
}

bool isBelow(std::string_view path, std::string_view folder)
{
    if (folder == "/")
        return path != "/";
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

} // namespace

const MountBarriers::Place* MountBarriers::Place::child(std::string_view name) const
{
    const auto found = children_.find(name);
    return found == children_.end() ? nullptr : &found->second;
}

MountBarriers::MountBarriers(std::string_view mountTable, std::string_view root)
{
    const MountTree tree(mountTable);
    const Mount* const rootMount = tree.mountAt(root);
    const Nature rootNature = rootMount ? rootMount->nature() : Nature::disk;

    for (const Mount& mount : tree.mounts()) {
        if (!isBelow(mount.point, root) || tree.mountAt(mount.point) != &mount)
            continue;
        const Nature nature = mount.nature();
        const bool isForeign =
            nature == Nature::kernel || (nature != Nature::disk && nature != rootNature);
        if (!isForeign && !showsFolderAbove(mount, tree))
            continue;
        Place* place = &root_;
        std::string_view rest = std::string_view(mount.point).substr(root == "/" ? 0 : root.size());
        rest.remove_prefix(1);
        while (!rest.empty())
            place = &place->children_[std::string(nextField(rest, '/'))];
        place->isBarrier_ = true;
    }
}

MountBarriers MountBarriers::current(std::string_view root)
{
    std::ifstream file("/proc/thread-self/mountinfo", std::ios::binary);
    const std::string table{std::istreambuf_iterator<char>(file), {}};
    return MountBarriers(table, root);
}

const MountBarriers::Place* MountBarriers::root() const noexcept
{
    return root_.children_.empty() ? nullptr : &root_;
}

} // namespace brisalon::host
