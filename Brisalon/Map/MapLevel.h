#pragma once

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/TreemapRect.h"

#include <QPointF>
#include <QRectF>

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace brisalon {

/// One level of the tree laid out on the map: a block for each child of positive
/// size, in points from the map's top-left corner. Immutable; any thread may
/// read it.
///
/// Blocks go by their position. Ids alone would not do: a folder may hold a real
/// file that bears the name of its small-files block, and both have one id.
class MapLevel {
public:
    /// Nothing to show.
    MapLevel() = default;
    MapLevel(const FileNodeValue& value, QSizeF size);

    /// The node whose children are laid out, or none; held as long as this level lives.
    FileNodeValue value() const { return folder_; }
    QSizeF size() const { return size_; }
    std::size_t count() const { return rects_.size(); }
    QRectF cell(std::size_t block) const;
    /// Valid while this level lives.
    const FileNode& node(std::size_t block) const { return *nodes_[block]; }
    FileNodeValue value(std::size_t block) const { return value().at(node(block)); }

    /// The block whose undivided cell holds the point: the gaps drawn between
    /// blocks belong to them.
    std::optional<std::size_t> blockAt(QPointF point) const;

    /// The first block with that id.
    std::optional<std::size_t> blockOf(std::string_view id) const;

    /// The block across the middle of that block's left, right, top or bottom
    /// edge (Qt::LeftEdge and so on); nothing at the border of the map.
    std::optional<std::size_t> neighbor(std::size_t block, Qt::Edge edge) const;

private:
    FileNodeHold folder_;
    QSizeF size_;
    std::vector<TreemapRect> rects_;
    std::vector<const FileNode*> nodes_;
};

} // namespace brisalon
