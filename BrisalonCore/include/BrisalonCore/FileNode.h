#pragma once

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/FileURLList.h"
#include "BrisalonCore/HogKind.h"
#include "BrisalonCore/NodeKind.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon {

namespace detail {
class NodeContent;
class NodeAssembly;
} // namespace detail

/// One node of a scan result: a folder, file or package, or the block of small
/// files of one folder, with the space that it occupies on disk and everything
/// below it.
///
/// An immutable value with shared structure: copying costs a few reference
/// counts whatever hangs below, and may be done on any thread. No operation
/// recurses, so a chain of 100,000 folders is as good as any tree.
///
/// Of every tree that a scan returns: `children` are in descending order of
/// size, an aggregate after every sibling of its size; a folder's size is the
/// sum of its children's; only folders have children and only aggregates have
/// sources; a folder has at most one aggregate, and has one exactly when at
/// least one of its files was smaller than the scanner's threshold.
class FileNode {
public:
    /// Stores the arguments unchanged, without sorting, summing or checking.
    FileNode(FileURL url, std::string name, std::int64_t allocatedSize, NodeKind kind,
             HogKind hogKind, Risk risk, std::vector<FileNode> children,
             FileURLList aggregateSources);

    FileNode(const FileNode& other) noexcept;
    FileNode(FileNode&& other) noexcept;
    FileNode& operator=(const FileNode& other) noexcept;
    FileNode& operator=(FileNode&& other) noexcept;
    ~FileNode();

    /// Where the item lives. An aggregate has its folder's URL with the
    /// component ".small-files-aggregate" appended; no such file exists.
    const FileURL& url() const noexcept { return url_; }

    /// The node's identity everywhere: its path.
    std::string id() const { return url_.path(); }

    /// The display name, as bytes (see FileNodeBuilder::displayName).
    std::string name() const;

    /// Bytes that the item occupies on disk, not its logical length.
    std::int64_t allocatedSize() const noexcept { return allocatedSize_; }

    NodeKind kind() const noexcept { return NodeKind(case_, count_); }
    HogKind hogKind() const noexcept { return hogKind_; }
    Risk risk() const noexcept { return risk_; }

    /// What lies directly inside a folder. Valid while a copy of this node lives.
    std::span<const FileNode> children() const noexcept;

    /// The files that an aggregate stands for.
    FileURLList aggregateSources() const;

    /// True exactly for a folder that has children.
    bool canZoom() const noexcept;

    /// The first child whose path is exactly `id`, or null. One level only.
    /// The pointer is valid while a copy of this node lives.
    const FileNode* child(std::string_view id) const noexcept;

    /// Walks down by full paths, one child for each element; an empty list
    /// yields this node, a missing step null. The pointer is valid while a copy
    /// of this node lives (for an empty list: while this very node does).
    const FileNode* node(std::span<const std::string> ids) const noexcept;

    /// Equality of all eight values, children and sources element by element.
    /// Parts that two trees share are equal without being visited.
    friend bool operator==(const FileNode& a, const FileNode& b);

private:
    friend class detail::NodeAssembly;
    friend class detail::NodeContent;

    /// What `content_` points to.
    enum class Shape : std::uint8_t {
        plain,         ///< nothing: the name follows from the URL, no children
        children,      ///< a child block; the name follows from the URL
        packedSources, ///< nothing: the sources' names follow the name in the URL's block
        custom,        ///< a name, children and sources of any kind
    };

    FileNode(FileURL url, std::int64_t allocatedSize, NodeKind kind, HogKind hogKind,
             Shape shape) noexcept;

    /// Equality of sizes, kinds and risks.
    bool hasSameValues(const FileNode& other) const noexcept;
    /// Equality of name and sources, of a node with the same URL and values.
    bool hasSameNameAndSources(const FileNode& other) const;

    FileURL url_;
    std::int64_t allocatedSize_;
    std::int64_t count_;
    const detail::NodeContent* content_ = nullptr;
    NodeKind::Case case_;
    HogKind hogKind_;
    Risk risk_;
    Shape shape_;
};

static_assert(sizeof(FileNode) == 48, "16 URL, 8 size, 8 count, 8 content, 4 tags, 4 spare");

} // namespace brisalon
