#pragma once

#include "BrisalonCore/detail/SharedBlock.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brisalon {

namespace detail {
class NameBlock;
}

/// The location of an item in the file system: a path of bytes.
///
/// A path is any sequence of bytes without NUL, as the kernel has it: no
/// encoding is assumed, and identity is exact equality of the bytes. Text for
/// people is decoded elsewhere and never used to reach a file.
///
/// A value is two words. Items of one folder share a block of packed names that
/// in turn refers to the folder, so a path is composed only when asked for, in
/// time proportional to its depth. Copying costs one reference count.
/// Immutable, and safe to read and copy from any thread.
class FileURL {
public:
    /// The empty path, which names nothing.
    FileURL() noexcept;

    /// A URL of the given path. Trailing slashes are dropped (but for "/"), and
    /// so is everything from a NUL byte on; nothing else is normalised.
    explicit FileURL(std::string_view path);

    FileURL(const FileURL&) noexcept;
    FileURL(FileURL&&) noexcept;
    FileURL& operator=(const FileURL&) noexcept;
    FileURL& operator=(FileURL&&) noexcept;
    ~FileURL();

    bool isEmpty() const noexcept { return !names_; }

    /// The whole path, without a trailing slash.
    std::string path() const;

    /// What follows the last slash; empty for "/" and for the empty path.
    std::string_view lastPathComponent() const noexcept;

    /// The containing folder; "/" for "/" and for what lies directly in it; the
    /// empty path for a relative path of one component.
    FileURL deletingLastPathComponent() const;

    /// The item of that name inside this folder.
    FileURL appendingPathComponent(std::string_view component) const;

    /// An absolute path without ".", ".." and doubled slashes, worked out from
    /// the text alone; a relative path starts at the current folder.
    FileURL standardized() const;

    /// The path with every symbolic link in it replaced by its target, as far
    /// as the path exists; what does not exist or cannot be read (a circle of
    /// links too) stays as it is. Asks the file system.
    FileURL resolvingSymbolicLinks() const;

    /// Whether path() is this text. Does not compose the path, and settles most
    /// mismatches on the last component.
    bool pathEquals(std::string_view path) const noexcept;

    friend bool operator==(const FileURL& a, const FileURL& b) noexcept;

private:
    friend class detail::NameBlock;
    FileURL(detail::SharedRef<detail::NameBlock> names, std::uint64_t offset) noexcept;

    /// Layout: the block that holds the bytes, and where in it the NUL-ended
    /// name starts.
    detail::SharedRef<detail::NameBlock> names_;
    std::uint64_t offset_ = 0;
};

static_assert(sizeof(FileURL) == 16, "two words: millions of nodes hold one");

} // namespace brisalon
