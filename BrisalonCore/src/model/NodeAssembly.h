#pragma once

#include "model/NameBlock.h"
#include "model/NodeContent.h"

#include <algorithm>
#include <span>

namespace brisalon::detail {

/// How a scan builds the nodes of its tree: in place, in their folder's block,
/// with sizes and contents of folders filled in when these are finished.
class NodeAssembly {
public:
    NodeAssembly() = delete;

    /// A node without children whose name is its URL's.
    static void append(ChildBlock& block, FileURL url, std::int64_t size, NodeKind kind,
                       HogKind hogKind)
    {
        block.append(leaf(std::move(url), size, kind, hogKind));
    }

    /// An aggregate whose sources' names follow its own in the URL's block.
    static void appendAggregate(ChildBlock& block, FileURL url, std::int64_t size,
                                std::int64_t count, HogKind hogKind)
    {
        block.append(FileNode(std::move(url), size, NodeKind::smallFilesAggregate(count), hogKind,
                              FileNode::Shape::packedSources));
    }

    static FileNode leaf(FileURL url, std::int64_t size, NodeKind kind, HogKind hogKind)
    {
        return {std::move(url), size, kind, hogKind, FileNode::Shape::plain};
    }

    static void setURL(FileNode& node, FileURL url) noexcept { node.url_ = std::move(url); }
    static void setSize(FileNode& node, std::int64_t size) noexcept { node.allocatedSize_ = size; }

    /// For a folder whose content tells more of it than its path.
    static void setHogKind(FileNode& node, HogKind hogKind) noexcept
    {
        node.hogKind_ = hogKind;
        node.risk_ = risk(hogKind);
    }

    /// Gives a folder its children; takes over the block.
    static void setChildren(FileNode& node, const ChildBlock* block) noexcept
    {
        block->retain();
        node.content_ = block;
        node.shape_ = FileNode::Shape::children;
    }

    /// Brings the children of one folder into their order.
    static void sort(std::span<FileNode> children)
    {
        // Names stand in their block in the order of reading, the aggregate's last,
        // so equal sizes keep that order.
        std::ranges::sort(children, [](const FileNode& a, const FileNode& b) {
            if (a.allocatedSize() != b.allocatedSize())
                return a.allocatedSize() > b.allocatedSize();
            return NameBlock::offsetOf(a.url()) < NameBlock::offsetOf(b.url());
        });
    }
};

} // namespace brisalon::detail
