#include "BrisalonCore/LargeFiles.h"

#include "model/NameBlock.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <variant>

namespace brisalon {

namespace {

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

/// How much of a wanted path a node's own path spells, a slash behind it
/// included; nothing when what lies in the node cannot have that path.
struct Spelled {
    const FileNode* node = nullptr;
    std::size_t bytes = 0;

    /// From the folder's to that of a node in it; true when the node's path is
    /// the wanted one. The children of a scanned folder cost a look at their
    /// names, whatever their depth.
    bool enter(const FileNode& child, std::string_view wanted)
    {
        const FileURL& url = child.url();
        std::string whole;
        std::string_view piece;
        if (node && detail::NameBlock::liesIn(url, node->url())) {
            node = &child;
            if (bytes == 0)
                return false;
            piece = url.lastPathComponent();
        } else {
            node = &child;
            bytes = 0;
            whole = url.path();
            piece = whole;
        }
        const std::string_view rest = wanted.substr(bytes);
        if (rest == piece)
            return true;
        if (!rest.starts_with(piece))
            bytes = 0;
        else if (piece == "/")
            bytes = 1;
        else
            bytes = rest[piece.size()] == '/' ? bytes + piece.size() + 1 : 0;
        return false;
    }
};

struct Candidate {
    std::int64_t size;
    std::size_t position; ///< in pre-order
    const FileNode* node;
};

bool standsBefore(const Candidate& a, const Candidate& b) noexcept
{
    return a.size != b.size ? a.size > b.size : a.position < b.position;
}

LargeFileEntry entryOf(const FileNode& node)
{
    return {node.url(), node.name(), node.allocatedSize(), node.hogKind(), node.risk()};
}

} // namespace

std::vector<LargeFileEntry> LargeFiles::topFiles(const FileNode& root, std::size_t limit)
{
    if (limit == 0)
        return {};
    // A heap of the best so far, the last of them on top.
    std::vector<Candidate> best;
    std::size_t position = 0;
    walkPreOrder(root, std::monostate(), [&](const FileNode& node, std::monostate) {
        switch (node.kind().which()) {
        case NodeKind::Case::directory:
            return Visit::enter;
        case NodeKind::Case::smallFilesAggregate:
            return Visit::passOver;
        case NodeKind::Case::file:
        case NodeKind::Case::package:
            break;
        }
        const Candidate candidate{node.allocatedSize(), position++, &node};
        if (best.size() == limit) {
            if (!standsBefore(candidate, best.front()))
                return Visit::passOver;
            std::ranges::pop_heap(best, standsBefore);
            best.pop_back();
        }
        best.push_back(candidate);
        std::ranges::push_heap(best, standsBefore);
        return Visit::passOver;
    });
    std::ranges::sort_heap(best, standsBefore);

    std::vector<LargeFileEntry> entries;
    entries.reserve(best.size());
    for (const Candidate& candidate : best)
        entries.push_back(entryOf(*candidate.node));
    return entries;
}

const FileNode* LargeFiles::find(std::string_view path, const FileNode& root)
{
    return walkPreOrder(root, Spelled(), [path](const FileNode& node, Spelled& spelled) {
        return spelled.enter(node, path) ? Visit::stop : Visit::enter;
    });
}

std::optional<std::string> LargeFiles::parentPath(const FileURL& url, const FileNode& root)
{
    std::string path = url.deletingLastPathComponent().path();
    if (!find(path, root))
        return std::nullopt;
    return path;
}

} // namespace brisalon
