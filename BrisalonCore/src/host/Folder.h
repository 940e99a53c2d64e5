#pragma once

#include "BrisalonCore/Descriptor.h"
#include "BrisalonCore/ItemStatus.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace brisalon::host {

enum class ItemType : std::uint8_t { folder, link, other, unknown };

/// An open folder: a handle that paths of any length and names of any bytes go
/// through, since everything below is reached relative to it. Move-only; closes
/// itself. Operations on an invalid handle fail as on a missing folder.
class OpenFolder {
public:
    OpenFolder() noexcept = default;

    /// Opens the folder at an absolute path of any length, following links on
    /// the way there and at its end. Invalid when it cannot be read, with the reason
    /// in errno.
    static OpenFolder at(std::string_view path);

    /// Opens the folder of that name in this one. Never follows a link. Invalid when
    /// it is not a folder or cannot be read. Would trigger an automount: who walks
    /// keeps away from the places that MountBarriers names.
    OpenFolder child(const char* name) const;

    /// Opens the folder that holds this one now.
    OpenFolder parent() const;

    bool isValid() const noexcept { return descriptor_.isValid(); }
    /// What the folder is; nothing when that cannot be told. Asks no server again.
    std::optional<ItemIdentity> identity() const noexcept;

    struct Measure {
        ItemType type;
        std::int64_t allocatedBytes;
    };
    /// Type and size on disk of the item of that name in this folder; nothing
    /// when they cannot be read, with the reason in errno. Never follows a link.
    std::optional<Measure> measure(const char* name) const noexcept;
    const Descriptor& descriptor() const noexcept { return descriptor_; }

private:
    explicit OpenFolder(Descriptor descriptor) noexcept : descriptor_(std::move(descriptor)) {}
    Descriptor descriptor_;
};

/// Reads folders' entries through one large buffer, reused from folder to
/// folder; each worker has its own.
class FolderReader {
public:
    FolderReader();

    struct Entry {
        const char* name; ///< ended by NUL; valid until the next batch is read
        ItemType type;    ///< unknown when the file system does not tell
    };

    /// Starts on a folder, which must stay open while its entries are read.
    void start(const OpenFolder& folder) noexcept;

    /// Reads the next batch of entries; false at the end, or when the folder
    /// cannot be read any further.
    bool readBatch() noexcept;

    /// Why the folder could not be read to its end, as in errno; 0 while nothing failed.
    int error() const noexcept { return error_; }

    /// The next entry of the batch, "." and ".." left out; nothing at its end.
    std::optional<Entry> next() noexcept;

private:
    std::unique_ptr<std::byte[]> buffer_;
    int descriptor_ = -1; ///< lent by the folder
    int error_ = 0;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
};

/// `path` (absolute, of any length) with its symbolic links replaced by their
/// targets and "." and ".." resolved on the way, as far as it exists and can be
/// read; the rest is kept as it is.
std::string resolveSymbolicLinks(std::string_view path);

/// The item at an absolute path of any length, links followed, opened only for what
/// goes through it: to reach what is in it takes no right to read it. Invalid when it
/// cannot be reached.
Descriptor reach(std::string_view path);

/// Whether an item that was asked for does not exist, when the answer was this error.
bool isAbsence(int error) noexcept;

/// What exists at a path of any length, links followed. Nothing when that cannot be told,
/// for want of rights or memory, for example, with the reason in errno.
enum class PathState : std::uint8_t { missing, folder, other };
std::optional<PathState> pathState(std::string_view path);

/// How many processors this process may use; at least 1.
unsigned availableProcessors() noexcept;

} // namespace brisalon::host
