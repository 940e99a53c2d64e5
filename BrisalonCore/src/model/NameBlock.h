#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// The packed names of items of one folder, each ended by NUL, and the folder
/// that holds them; or, without a folder, one whole path.
///
/// Allocated in one piece, the bytes directly behind the object. A URL is a
/// reference to a block and the offset of its name, so the blocks form a chain
/// from every item up to the root of its scan; destroying a block walks that
/// chain in a loop.
class NameBlock final : public SharedBlock {
public:
    /// Copies `bytes`, whose last must be NUL.
    static SharedRef<NameBlock> make(FileURL folder, std::string_view bytes);
    static void destroy(const NameBlock* block) noexcept;

    const FileURL& folder() const noexcept { return folder_; }
    const char* name(std::uint64_t offset) const noexcept
    {
        return reinterpret_cast<const char*>(this + 1) + offset;
    }

    static FileURL url(SharedRef<NameBlock> names, std::uint64_t offset) noexcept
    {
        return FileURL(std::move(names), offset);
    }
    static const NameBlock* blockOf(const FileURL& url) noexcept { return url.names_.get(); }
    static std::uint64_t offsetOf(const FileURL& url) noexcept { return url.offset_; }
    static const SharedRef<NameBlock>& refOf(const FileURL& url) noexcept { return url.names_; }

    /// Whether `url` names an item directly inside `folder`, by sharing its very
    /// location (not merely an equal path), so that its last component is all that
    /// it adds. True for the children of a scanned folder.
    static bool liesIn(const FileURL& url, const FileURL& folder) noexcept
    {
        const NameBlock* names = blockOf(url);
        return names && !folder.isEmpty() && blockOf(names->folder_) == blockOf(folder) &&
               offsetOf(names->folder_) == offsetOf(folder);
    }

private:
    explicit NameBlock(FileURL folder) noexcept : folder_(static_cast<FileURL&&>(folder)) {}
    ~NameBlock() = default;

    mutable FileURL folder_;
};

} // namespace brisalon::detail
