#pragma once

#include "BrisalonCore/FileNode.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace brisalon::detail {

enum class Visit : std::uint8_t { enter, passOver, stop };

/// Calls `visit` with the node and everything below it in pre-order, children in
/// their stored order, until it answers `stop`; the node where it did, or null.
/// Keeps its own stack, since a tree may be deeper than the thread's.
///
/// With a node `visit` receives the value of the folder that holds it (of the
/// root: `outside`) and changes it into the node's own.
template <typename Value, typename Visitor>
const FileNode* walkPreOrder(const FileNode& root, Value outside, Visitor&& visit)
{
    std::vector<std::pair<std::span<const FileNode>, Value>> pending{{{&root, 1}, outside}};
    while (!pending.empty()) {
        auto& [siblings, folderValue] = pending.back();
        const FileNode& node = siblings.front();
        Value value = folderValue;
        siblings = siblings.subspan(1);
        if (siblings.empty())
            pending.pop_back();
        switch (visit(node, value)) {
        case Visit::stop:
            return &node;
        case Visit::enter:
            if (!node.children().empty())
                pending.emplace_back(node.children(), value);
            break;
        case Visit::passOver:
            break;
        }
    }
    return nullptr;
}

} // namespace brisalon::detail
