#include "BrisalonCore/LargeFiles.h"

#include "analysis/LargestNodes.h"
#include "analysis/PreOrder.h"
#include "model/NameBlock.h"

#include <variant>

namespace brisalon {

using detail::Visit;
using detail::walkPreOrder;

namespace {

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

} // namespace

std::vector<LargeFileEntry> LargeFiles::topFiles(const FileNode& root, std::size_t limit)
{
    detail::LargestNodes largest(limit);
    walkPreOrder(root, std::monostate(), [&largest](const FileNode& node, std::monostate) {
        switch (node.kind().which()) {
        case NodeKind::Case::directory:
            return Visit::enter;
        case NodeKind::Case::smallFilesAggregate:
            return Visit::passOver;
        case NodeKind::Case::file:
        case NodeKind::Case::package:
            break;
        }
        largest.offer(node);
        return Visit::passOver;
    });
    return largest.takeEntries();
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
