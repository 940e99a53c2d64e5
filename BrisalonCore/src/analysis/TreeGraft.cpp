#include "BrisalonCore/TreeGraft.h"

#include "base/SaturatingSum.h"
#include "model/NameBlock.h"
#include "model/NodeAssembly.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace brisalon {

using detail::ChildBlock;
using detail::NameBlock;
using detail::NodeAssembly;

namespace {

/// The folders from the tree's root down to that path, both included; nothing when the
/// tree has none there. By the names alone: in deep trees a comparison of whole paths
/// would take the square of the depth.
std::vector<const FileNode*> folderChain(const FileNode& tree, std::string_view path)
{
    const std::string root = tree.url().path();
    if (!path.starts_with(root))
        return {};
    std::string_view rest = path.substr(root.size());
    if (!rest.empty() && rest.front() != '/' && !root.ends_with('/'))
        return {};
    std::vector<const FileNode*> chain{&tree};
    while (!rest.empty()) {
        if (rest.front() == '/')
            rest.remove_prefix(1);
        const std::string_view name = rest.substr(0, rest.find('/'));
        rest.remove_prefix(name.size());
        const auto children = chain.back()->children();
        const auto next = std::ranges::find_if(children, [name](const FileNode& node) {
            return node.kind() == NodeKind::directory && node.url().lastPathComponent() == name;
        });
        if (next == children.end())
            return {};
        chain.push_back(&*next);
    }
    return chain;
}

/// The folder with `next` in the place of its child `old`, or without it.
FileNode replacing(const FileNode& folder, const FileNode& old, const std::optional<FileNode>& next)
{
    FileNode result = NodeAssembly::leaf(folder.url(), 0, folder.kind(), folder.hogKind());
    const auto before = folder.children();
    const std::size_t count = before.size() - (next ? 0 : 1);
    if (count == 0)
        return result;
    ChildBlock* const block = ChildBlock::make(count);
    NodeAssembly::setChildren(result, block);
    std::int64_t total = 0;
    for (const FileNode& child : before) {
        const FileNode* const kept = &child == &old ? (next ? &*next : nullptr) : &child;
        if (!kept)
            continue;
        block->append(*kept);
        total = detail::saturatingSum(total, kept->allocatedSize());
    }
    NodeAssembly::sort(block->nodes());
    NodeAssembly::setSize(result, total);
    return result;
}

} // namespace

std::optional<FileNode> TreeGraft::graft(const FileNode& tree, std::string_view path,
                                         std::optional<FileNode> folder)
{
    const std::vector<const FileNode*> chain = folderChain(tree, path);
    if (chain.empty())
        return std::nullopt;
    // Under its old name it keeps its place among siblings of its size.
    if (folder)
        NodeAssembly::setURL(*folder, chain.back()->url());
    for (std::size_t i = chain.size() - 1; i > 0; --i)
        folder = replacing(*chain[i - 1], *chain[i], folder);
    return folder;
}

} // namespace brisalon
