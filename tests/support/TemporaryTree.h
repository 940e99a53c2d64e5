#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brisalon::tests {

inline constexpr std::int64_t kib = 1024;
inline constexpr std::int64_t mib = 1024 * kib;

/// A folder of its own below the system's folder for temporary files, filled by
/// a test and removed with all that is in it at the end, whatever its depth,
/// names and permissions. Never follows a link. Failing to build aborts the test
/// program: nothing could be concluded from it.
class TemporaryTree {
public:
    enum class Storage {
        disk,
        /// A memory file system of its own, for trees so large that a disk would
        /// take most of the test's time; where the rights for that are missing,
        /// the disk all the same.
        memory,
    };

    explicit TemporaryTree(Storage storage = Storage::disk);
    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;
    ~TemporaryTree();

    /// The folder's path, free of links.
    const std::string& path() const noexcept { return path_; }
    FileURL url() const { return FileURL(path_); }
    /// Whether it got a memory file system.
    bool isInMemory() const noexcept { return isMounted_; }
    /// The path of an item inside.
    std::string at(std::string_view relative) const;

    /// Each makes the folders on the way; paths are relative to the tree.
    void folder(std::string_view relative) const;
    /// A file that occupies at least `bytes` on disk.
    void file(std::string_view relative, std::int64_t bytes = 0) const;
    void write(std::string_view relative, const std::string& text) const;
    void link(std::string_view relative, const std::string& target) const;

    /// `levels` folders of the given name, one inside the other, below the folder
    /// `top`; in every `siblingEvery`-th also an empty folder "sibling" (0: in none).
    /// Of any depth; returns the path of the deepest.
    std::string chain(std::string_view top, const std::string& name, int levels,
                      int siblingEvery = 0) const;

    /// Items of every kind with names of every kind, so many, below the folder `top`.
    void fillAtRandom(unsigned seed, int items, const std::string& top = "") const;

    /// Removes the item and everything in it. Missing items are fine.
    void remove(std::string_view relative) const;

private:
    std::string path_;
    bool isMounted_ = false;
};

} // namespace brisalon::tests
