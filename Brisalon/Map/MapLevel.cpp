#include "Brisalon/Map/MapLevel.h"

#include "BrisalonCore/TreemapLayout.h"

namespace brisalon {

MapLevel::MapLevel(const FileNodeValue& value, QSizeF size) : folder_(value.hold()), size_(size)
{
    if (!folder_)
        return;
    const auto children = folder_->children();
    rects_ = TreemapLayout::layout(children, size.width(), size.height());
    // The layout keeps the order, drops what has no size, and leaves out the
    // tail when the area runs out.
    nodes_.reserve(rects_.size());
    for (const FileNode& node : children) {
        if (nodes_.size() == rects_.size())
            break;
        if (node.allocatedSize() >= 1)
            nodes_.push_back(&node);
    }
}

QRectF MapLevel::cell(std::size_t block) const
{
    const TreemapRect& rect = rects_[block];
    return {rect.x, rect.y, rect.width, rect.height};
}

std::optional<std::size_t> MapLevel::blockAt(QPointF point) const
{
    const TreemapRect* hit = TreemapLayout::hitTest(point.x(), point.y(), rects_);
    if (!hit)
        return std::nullopt;
    return static_cast<std::size_t>(hit - rects_.data());
}

std::optional<std::size_t> MapLevel::blockOf(std::string_view id) const
{
    for (std::size_t block = 0; block < nodes_.size(); ++block) {
        if (nodes_[block]->url().pathEquals(id))
            return block;
    }
    return std::nullopt;
}

std::optional<std::size_t> MapLevel::neighbor(std::size_t block, Qt::Edge edge) const
{
    // The cells tile the map, so the neighbour is what lies just across the edge.
    constexpr double across = 0.001;
    const QRectF from = cell(block);
    switch (edge) {
    case Qt::LeftEdge:
        return blockAt({from.left() - across, from.center().y()});
    case Qt::RightEdge:
        return blockAt({from.right() + across, from.center().y()});
    case Qt::TopEdge:
        return blockAt({from.center().x(), from.top() - across});
    case Qt::BottomEdge:
        return blockAt({from.center().x(), from.bottom() + across});
    }
    return std::nullopt;
}

} // namespace brisalon
