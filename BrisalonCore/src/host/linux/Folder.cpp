#include "host/Folder.h"

#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brisalon::host {

namespace {

constexpr int readFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
constexpr int passThroughFlags = O_PATH;

/// One getdents64 call per this many bytes; large folders are read in few calls.
constexpr std::size_t readBufferSize = 128 * 1024;

/// The longest path given to the kernel in one piece.
constexpr std::size_t longestPiece = PATH_MAX - 1;

ItemType typeOf(mode_t mode) noexcept
{
    if (S_ISDIR(mode))
        return ItemType::folder;
    return S_ISLNK(mode) ? ItemType::link : ItemType::other;
}

/// Blocks are units of 512 bytes whatever the file system's own. Some user-space
/// file systems report nonsense; it must not overflow.
std::int64_t allocatedBytesOf(const struct stat& status) noexcept
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 512;
    return std::clamp<std::int64_t>(status.st_blocks, 0, most) * 512;
}

OpenFolder::Measure measureOf(const struct stat& status) noexcept
{
    return {typeOf(status.st_mode), allocatedBytesOf(status)};
}

/// Opens an absolute path of any length, following links, in pieces that the
/// kernel accepts.
Descriptor openAnyLength(std::string_view path, int flags)
{
    if (path.size() <= longestPiece && path.find('\0') == std::string_view::npos)
        return Descriptor::open(AT_FDCWD, std::string(path).c_str(), flags);
    Descriptor base = Descriptor::open(AT_FDCWD, "/", passThroughFlags);
    while (base.isValid()) {
        while (path.starts_with('/'))
            path.remove_prefix(1);
        std::string_view piece = path;
        if (piece.size() > longestPiece) {
            const auto slash = path.rfind('/', longestPiece);
            piece = path.substr(0, slash == std::string_view::npos ? path.find('/') : slash);
        }
        path.remove_prefix(piece.size());
        base = Descriptor::open(base.get(), piece.empty() ? "." : std::string(piece).c_str(),
                                path.empty() ? flags : passThroughFlags);
        if (path.empty())
            break;
    }
    return base;
}

/// Whether the path exists and is resolved as it stands, which one call settles
/// for nearly every path that a scan has found. False also when the kernel has no
/// such call or the path is too long for it.
bool isResolved(const std::string& path) noexcept
{
    const auto has = [&path](std::string_view text) {
        return path.find(text) != std::string::npos;
    };
    if (!path.starts_with('/') || path.ends_with("/.") || path.ends_with("/..") ||
        (path.ends_with('/') && path != "/") || has("//") || has("/./") || has("/../"))
        return false;
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    const Descriptor found(
        static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
    return found.isValid();
}

} // namespace

OpenFolder OpenFolder::at(std::string_view path)
{
    return OpenFolder(openAnyLength(path, readFlags));
}

OpenFolder OpenFolder::child(const char* name) const
{
    if (!isValid())
        return {};
    // Reading must leave no trace in the folder's access time, where its owner
    // is the one who asks.
    constexpr int flags = readFlags | O_NOFOLLOW;
    Descriptor folder = Descriptor::open(descriptor_.get(), name, flags | O_NOATIME);
    if (!folder.isValid() && errno == EPERM)
        folder = Descriptor::open(descriptor_.get(), name, flags);
    return OpenFolder(std::move(folder));
}

OpenFolder OpenFolder::parent() const
{
    return isValid() ? OpenFolder(Descriptor::open(descriptor_.get(), "..", readFlags))
                     : OpenFolder();
}

std::optional<ItemIdentity> OpenFolder::identity() const noexcept
{
    return ItemIdentity::of(descriptor_);
}

std::optional<OpenFolder::Measure> OpenFolder::measure(const char* name) const noexcept
{
    struct stat status;
    int result;
    do
        result = ::fstatat(descriptor_.get(), name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT);
    while (result != 0 && errno == EINTR);
    return result == 0 ? std::optional(measureOf(status)) : std::nullopt;
}

FolderReader::FolderReader() : buffer_(new std::byte[readBufferSize]) {}

void FolderReader::start(const OpenFolder& folder) noexcept
{
    descriptor_ = folder.descriptor().get();
    error_ = 0;
    position_ = 0;
    filled_ = 0;
}

bool FolderReader::readBatch() noexcept
{
    ssize_t count;
    do
        count = ::getdents64(descriptor_, buffer_.get(), readBufferSize);
    while (count < 0 && errno == EINTR);
    error_ = count < 0 ? errno : 0;
    position_ = 0;
    filled_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    return filled_ > 0;
}

std::optional<FolderReader::Entry> FolderReader::next() noexcept
{
    while (position_ < filled_) {
        const auto* record = reinterpret_cast<const dirent64*>(buffer_.get() + position_);
        position_ += record->d_reclen;
        const char* name = record->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        switch (record->d_type) {
        case DT_DIR:
            return Entry{name, ItemType::folder};
        case DT_LNK:
            return Entry{name, ItemType::link};
        case DT_UNKNOWN:
            return Entry{name, ItemType::unknown};
        default:
            return Entry{name, ItemType::other};
        }
    }
    return std::nullopt;
}

std::string resolveSymbolicLinks(std::string_view path)
{
    constexpr int mostLinks = 40; // as the kernel's own limit

    const auto open = [](int base, const char* name, int extraFlags) {
        return Descriptor::open(base, name, passThroughFlags | O_DIRECTORY | extraFlags);
    };
    // Components still to be walked, the next one last.
    std::vector<std::string> pending;
    const auto push = [&pending](std::string_view text) {
        const auto pieces = paths::components(text);
        pending.insert(pending.end(), pieces.rbegin(), pieces.rend());
    };

    if (std::string whole(path); isResolved(whole))
        return whole;
    push(path);
    std::string resolved;
    Descriptor folder = open(AT_FDCWD, "/", 0);
    int links = 0;
    while (!pending.empty() && folder.isValid()) {
        const std::string& piece = pending.back();
        if (piece == ".") {
            pending.pop_back();
            continue;
        }
        if (piece == "..") {
            resolved.resize(resolved.rfind('/') == std::string::npos ? 0 : resolved.rfind('/'));
            folder = open(folder.get(), "..", 0);
            pending.pop_back();
            continue;
        }
        char target[PATH_MAX];
        const ssize_t length = ::readlinkat(folder.get(), piece.c_str(), target, sizeof target);
        if (length > 0 && static_cast<std::size_t>(length) < sizeof target) {
            if (++links > mostLinks)
                return std::string(path); // a circle
            pending.pop_back();
            if (target[0] == '/') {
                resolved.clear();
                folder = open(AT_FDCWD, "/", 0);
            }
            push({target, static_cast<std::size_t>(length)});
            continue;
        }
        folder = open(folder.get(), piece.c_str(), O_NOFOLLOW);
        resolved += '/';
        resolved += piece;
        pending.pop_back();
    }
    for (; !pending.empty(); pending.pop_back()) {
        resolved += '/';
        resolved += pending.back();
    }
    return resolved.empty() ? "/" : resolved;
}

Descriptor reach(std::string_view path)
{
    return openAnyLength(path, passThroughFlags);
}

bool isAbsence(int error) noexcept
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG;
}

std::optional<PathState> pathState(std::string_view path)
{
    const Descriptor item = reach(path);
    const auto status = item.isValid() ? ItemStatus::read(item, "") : std::nullopt;
    if (!status)
        return isAbsence(errno) ? std::optional(PathState::missing) : std::nullopt;
    return status->identity.kind == ItemIdentity::Kind::folder ? PathState::folder
                                                               : PathState::other;
}

unsigned availableProcessors() noexcept
{
    cpu_set_t processors;
    if (::sched_getaffinity(0, sizeof processors, &processors) == 0)
        return static_cast<unsigned>(std::max(CPU_COUNT(&processors), 1));
    return static_cast<unsigned>(std::max(::sysconf(_SC_NPROCESSORS_ONLN), 1L));
}

} // namespace brisalon::host
