#pragma once

#include "Brisalon/Map/BlockOutline.h"
#include "Brisalon/Map/MapPicture.h"

#include <QSGImageNode>
#include <QSGNode>
#include <QSGTexture>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class QQuickWindow;

namespace brisalon {

/// The marked blocks of a picture.
struct MapMarks {
    std::optional<std::size_t> hovered;
    std::optional<std::size_t> selected;
    QColor accent;
};

/// The map in the scene graph, made of image nodes alone, so that it looks the
/// same with every backend. One opaque image covers the map; while a block is
/// hovered it is the dimmed one, and the hovered and the selected block are laid
/// over it out of the bright one. Outlines come on top.
///
/// Lives on the render thread, like every node.
class MapSceneNode : public QSGTransformNode {
public:
    MapSceneNode(QQuickWindow* window, const MapLayers& layers);
    ~MapSceneNode() override;

    /// `show` must follow.
    void replaceLayers(const MapLayers& layers);

    /// Shows the picture whose layers these are, with its blocks marked.
    void show(const MapPicture& picture, const MapMarks& marks, QSGTexture::Filtering filtering);

    /// Shows what it has shown, so many times as wide and as high: an older picture, with
    /// its blocks marked as they were, while its successor is being painted.
    void stretch(double horizontally, double vertically);

private:
    void setLayers(const MapLayers& layers);
    void removeMarks();
    void showBase(QSGTexture* texture, QSizeF size, QSGTexture::Filtering filtering);
    void showBright(const MapPicture& picture, std::size_t block, QSGTexture::Filtering filtering);
    void showOutline(const MapPicture& picture, std::size_t block,
                     std::span<const OutlineStroke> strokes);

    QQuickWindow* window_;
    std::unique_ptr<QSGTexture> bright_;
    std::unique_ptr<QSGTexture> dimmed_;
    std::vector<std::unique_ptr<QSGTexture>> outlineTextures_;
    QSGImageNode* base_;
    // Transform nodes, because Qt's software renderer forgets the map's position
    // when a child is added to a plain one later on.
    QSGTransformNode* blocks_;
    QSGTransformNode* outlines_;
};

} // namespace brisalon
