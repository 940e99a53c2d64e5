#include "BrisalonCore/LargeFiles.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace brisalon {

namespace {

enum class Visit : std::uint8_t { enter, passOver, stop };

/// Calls `visit` with the node and everything below it in pre-order, children in
/// their stored order, until it answers `stop`; the node where it did, or null.
/// Keeps its own stack, since a tree may be deeper than the thread's.
template <typename Visitor>
const FileNode* walkPreOrder(const FileNode& root, Visitor&& visit)
{
    std::vector<std::span<const FileNode>> pending{{&root, 1}};
    while (!pending.empty()) {
        std::span<const FileNode>& siblings = pending.back();
        const FileNode& node = siblings.front();
        siblings = siblings.subspan(1);
        if (siblings.empty())
            pending.pop_back();
        switch (visit(node)) {
        case Visit::stop:
            return &node;
        case Visit::enter:
            if (!node.children().empty())
                pending.push_back(node.children());
            break;
        case Visit::passOver:
            break;
        }
    }
    return nullptr;
}

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
    walkPreOrder(root, [&](const FileNode& node) {
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
    return walkPreOrder(root, [path](const FileNode& node) {
        return node.url().pathEquals(path) ? Visit::stop : Visit::enter;
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
