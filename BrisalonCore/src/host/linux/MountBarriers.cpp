#include "host/MountBarriers.h"

#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <sys/sysmacros.h>

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

Nature natureOf(const Mount& mount)
{
    constexpr unsigned loopDevices = 7;
    const Nature byType = natureOf(mount.type);
    if (byType != Nature::disk && byType != Nature::image)
        return byType;
    // A block device that reads from a file.
    const bool isLoop = major(mount.device) == loopDevices || mount.source.starts_with("/dev/loop");
    // A number of its own, rather than one of a block device.
    const bool hasNoDevice = major(mount.device) == 0;
    return isLoop || (byType == Nature::image && hasNoDevice) ? Nature::view : Nature::disk;
}

/// Whether the mount shows a folder on the way to its own mount point.
bool showsFolderAbove(const Mount& mount, const MountTable& table)
{
    const StoredPlace shown = mount.place(mount.point);
    return std::ranges::any_of(table.way(mount.point), [&](const MountTable::Step& step) {
        return step.mount && step.mount != &mount && step.mount->place(step.folder) == shown;
    });
}

} // namespace

const MountBarriers::Place* MountBarriers::Place::child(std::string_view name) const
{
    const auto found = children_.find(name);
    return found == children_.end() ? nullptr : &found->second;
}

MountBarriers::MountBarriers(const MountTable& table, std::string_view root)
{
    const Mount* const rootMount = table.at(root);
    const Nature rootNature = rootMount ? natureOf(*rootMount) : Nature::disk;

    for (const Mount& mount : table.mounts()) {
        if (!paths::isBelow(mount.point, root) || table.at(mount.point) != &mount)
            continue;
        const Nature nature = natureOf(mount);
        const bool isForeign =
            nature == Nature::kernel || (nature != Nature::disk && nature != rootNature);
        if (!isForeign && !showsFolderAbove(mount, table))
            continue;
        Place* place = &root_;
        for (const std::string_view name : paths::components(paths::relative(mount.point, root)))
            place = &place->children_[std::string(name)];
        place->isBarrier_ = true;
    }
}

const MountBarriers::Place* MountBarriers::root() const noexcept
{
    return root_.children_.empty() ? nullptr : &root_;
}

} // namespace brisalon::host
