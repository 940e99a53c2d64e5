#pragma once

#include "BrisalonCore/FileNode.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace brisalon::detail {

/// The name of a node that was given none of its own; see
/// FileNodeBuilder::displayName.
std::string usualName(const FileURL& url, NodeKind kind);

/// What nodes share by reference: everything below a node, and whatever of a
/// node cannot be derived from its other values. Which of the two blocks below
/// it is, the node's shape tells; the block repeats it for its own destruction.
class NodeContent : public SharedBlock {
public:
    std::span<const FileNode> children() const noexcept;

    /// Destroys the block and all that only it keeps alive. A loop, not a
    /// recursion: blocks that die with it are linked through nextDying_, so that
    /// neither depth nor memory limits it.
    static void destroy(const NodeContent* content) noexcept;

protected:
    explicit NodeContent(bool isCustom) noexcept : isCustom_(isCustom) {}
    ~NodeContent() = default;

private:
    std::span<FileNode> mutableChildren() const noexcept;

    bool isCustom_;
    mutable const NodeContent* nextDying_ = nullptr;
};

/// The children of one folder, allocated in one piece directly behind the
/// object.
class ChildBlock final : public NodeContent {
public:
    /// A block with room for `capacity` nodes and none in it.
    static ChildBlock* make(std::size_t capacity);

    /// Adds a node; the caller stays within the capacity.
    template <typename... Arguments>
    void append(Arguments&&... arguments)
    {
        new (first() + count_) FileNode(std::forward<Arguments>(arguments)...);
        ++count_;
    }

    std::span<FileNode> nodes() const noexcept { return {first(), count_}; }

private:
    ChildBlock() noexcept : NodeContent(false) {}
    FileNode* first() const noexcept
    {
        return reinterpret_cast<FileNode*>(const_cast<ChildBlock*>(this) + 1);
    }

    std::size_t count_ = 0;
};

/// The values of a node that was built by hand.
class CustomContent final : public NodeContent {
public:
    CustomContent(std::string nodeName, std::vector<FileNode> below, FileURLList aggregateSources)
        : NodeContent(true),
          name(std::move(nodeName)),
          nodes(std::move(below)),
          sources(std::move(aggregateSources))
    {
    }

    std::string name;
    mutable std::vector<FileNode> nodes;
    FileURLList sources;
};

} // namespace brisalon::detail
