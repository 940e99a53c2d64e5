#include "BrisalonCore/ItemStatus.h"

#include "BrisalonCore/Descriptor.h"
#include "host/Folder.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace brisalon {

namespace {

ItemIdentity::Kind kindOf(mode_t mode) noexcept
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return ItemIdentity::Kind::file;
    case S_IFDIR:
        return ItemIdentity::Kind::folder;
    case S_IFLNK:
        return ItemIdentity::Kind::link;
    default:
        return ItemIdentity::Kind::other;
    }
}

std::int64_t birthOf(const struct statx& status) noexcept
{
    if ((status.stx_mask & STATX_BTIME) == 0)
        return 0;
    // Beyond the 292 years that fit, which only a damaged disk claims, the time
    // still has to be the same number whenever it is asked for.
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(status.stx_btime.tv_sec) *
                                         1'000'000'000U +
                                     status.stx_btime.tv_nsec);
}

/// Blocks are units of 512 bytes whatever the file system's own. Some user-space
/// file systems report nonsense; it must not overflow.
std::int64_t allocatedBytesOf(const struct statx& status) noexcept
{
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max() / 512;
    return static_cast<std::int64_t>(std::min<std::uint64_t>(status.stx_blocks, most)) * 512;
}

bool read(const Descriptor& folder, const char* name, int extraFlags, struct statx& status) noexcept
{
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH;
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID;
    int result;
    do
        result = ::statx(folder.get(), name, flags | extraFlags, wanted, &status);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

ItemIdentity identityOf(const struct statx& status) noexcept
{
    return {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
            .inode = status.stx_ino,
            .birth = birthOf(status),
            .kind = kindOf(status.stx_mode)};
}

} // namespace

std::optional<ItemIdentity> ItemIdentity::of(const Descriptor& item) noexcept
{
    struct statx status;
    if (!brisalon::read(item, "", AT_STATX_DONT_SYNC, status))
        return std::nullopt;
    return identityOf(status);
}

std::optional<ItemStatus> ItemStatus::read(const Descriptor& folder, const char* name) noexcept
{
    struct statx status;
    if (!brisalon::read(folder, name, 0, status))
        return std::nullopt;
    const ItemIdentity identity = identityOf(status);
    return ItemStatus{
        .identity = identity,
        .allocatedBytes = allocatedBytesOf(status),
        .mount = {.device = identity.device,
                  .mount = (status.stx_mask & STATX_MNT_ID) != 0 ? status.stx_mnt_id : 0},
        .isMountRoot = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0,
        .mode = status.stx_mode,
        .owner = status.stx_uid,
    };
}

std::optional<ItemStatus> ItemStatus::read(std::string_view path)
{
    if (!path.starts_with('/'))
        return std::nullopt;
    const auto slash = path.rfind('/');
    const Descriptor folder = host::reach(slash == 0 ? "/" : path.substr(0, slash));
    return read(folder, std::string(path.substr(slash + 1)).c_str());
}

} // namespace brisalon
