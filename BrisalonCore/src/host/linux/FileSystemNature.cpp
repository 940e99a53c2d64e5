#include "host/FileSystemNature.h"

#include <array>

namespace brisalon::host {

namespace {

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

    // A container's root, for example, is a union of layers in the container engine's
    // store.
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

    {"tmpfs", Nature::memory},
    {"ramfs", Nature::memory},
});

} // namespace

Nature natureOf(std::string_view type) noexcept
{
    for (const TypeRow& row : typeRows)
        if (row.type == type)
            return row.nature;
    return type.starts_with("fuse.") ? Nature::remote : Nature::disk;
}

bool canHang(std::string_view type) noexcept
{
    return type == "fuseblk" || natureOf(type) == Nature::remote;
}

} // namespace brisalon::host
