#include "Brisalon/Map/MapSceneNode.h"

#include <QQuickWindow>

namespace brisalon {

namespace {

void removeAll(QSGNode* node)
{
    while (QSGNode* child = node->firstChild()) {
        node->removeChildNode(child);
        delete child;
    }
}

QSGImageNode* appendImage(QSGNode* parent, QQuickWindow* window, QSGTexture* texture,
                          const QRectF& target, const QRectF& source)
{
    QSGImageNode* node = window->createImageNode();
    node->setTexture(texture);
    node->setRect(target);
    node->setSourceRect(source);
    node->setFiltering(QSGTexture::Nearest);
    parent->appendChildNode(node);
    return node;
}

std::unique_ptr<QSGTexture> opaqueTexture(QQuickWindow* window, const QImage& image)
{
    return std::unique_ptr<QSGTexture>(
        window->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
}

/// From device pixels to points.
QRectF inPoints(const QRectF& pixels, double ratio)
{
    return {pixels.topLeft() / ratio, pixels.size() / ratio};
}

} // namespace

MapSceneNode::MapSceneNode(QQuickWindow* window, const MapLayers& layers) : window_(window)
{
    setLayers(layers);
    base_ = appendImage(this, window_, bright_.get(), {}, {});
    // Transform nodes, though they move nothing: the software renderer gives a node
    // that is added later the place of its parent only if that is one of them.
    for (QSGTransformNode** part : {&blocks_, &outlines_}) {
        *part = new QSGTransformNode;
        appendChildNode(*part);
    }
}

MapSceneNode::~MapSceneNode()
{
    // The nodes below must not outlive their textures.
    removeAll(this);
}

void MapSceneNode::replaceLayers(const MapLayers& layers)
{
    removeMarks();
    const auto oldBright = std::move(bright_);
    const auto oldDimmed = std::move(dimmed_);
    setLayers(layers);
    base_->setTexture(bright_.get());
}

void MapSceneNode::setLayers(const MapLayers& layers)
{
    bright_ = opaqueTexture(window_, layers.bright);
    dimmed_ = opaqueTexture(window_, layers.dimmed);
}

void MapSceneNode::removeMarks()
{
    removeAll(blocks_);
    removeAll(outlines_);
    outlineTextures_.clear();
}

void MapSceneNode::showBase(QSGTexture* texture, QSizeF size, QSGTexture::Filtering filtering)
{
    // A node that is set to what it shows already would be drawn again.
    if (base_->texture() != texture)
        base_->setTexture(texture);
    const QRectF source(QPointF(), texture->textureSize());
    if (base_->sourceRect() != source)
        base_->setSourceRect(source);
    const QRectF target(QPointF(), size);
    if (base_->rect() != target)
        base_->setRect(target);
    if (base_->filtering() != filtering)
        base_->setFiltering(filtering);
}

void MapSceneNode::stretch(double horizontally, double vertically)
{
    QMatrix4x4 stretched;
    stretched.scale(static_cast<float>(horizontally), static_cast<float>(vertically));
    if (stretched == matrix())
        return;
    setMatrix(stretched);
    if (!stretched.isIdentity())
        base_->setFiltering(QSGTexture::Linear);
}

void MapSceneNode::show(const MapPicture& picture, const MapMarks& marks,
                        QSGTexture::Filtering filtering)
{
    removeMarks();
    showBase(marks.hovered ? dimmed_.get() : bright_.get(),
             QSizeF(bright_->textureSize()) / picture.ratio, filtering);

    if (marks.hovered)
        showBright(picture, *marks.hovered, filtering);
    if (marks.hovered && marks.selected && marks.selected != marks.hovered)
        showBright(picture, *marks.selected, filtering);

    if (marks.hovered && marks.hovered != marks.selected) {
        const OutlineStroke light{QColor::fromRgbF(1, 1, 1, 0.85f), 1.5};
        showOutline(picture, *marks.hovered, {&light, 1});
    }
    if (marks.selected) {
        const OutlineStroke strokes[] = {{Qt::white, 2.5}, {marks.accent, 1.0}};
        showOutline(picture, *marks.selected, strokes);
    }
}

void MapSceneNode::showBright(const MapPicture& picture, std::size_t block,
                              QSGTexture::Filtering filtering)
{
    const QRectF cell = picture.level->cell(block);
    const QPoint first = (cell.topLeft() * picture.ratio).toPoint();
    const QPoint end = (cell.bottomRight() * picture.ratio).toPoint();
    const QRectF pixels(first, end);
    appendImage(blocks_, window_, bright_.get(), inPoints(pixels, picture.ratio), pixels)
        ->setFiltering(filtering);
}

void MapSceneNode::showOutline(const MapPicture& picture, std::size_t block,
                               std::span<const OutlineStroke> strokes)
{
    const BlockShape shape = BlockShape::of(picture.level->cell(block), picture.ratio);
    const BlockOutline outline = BlockOutline::paint(shape, strokes, picture.ratio);
    QSGTexture* texture =
        window_->createTextureFromImage(outline.image, QQuickWindow::TextureHasAlphaChannel);
    outlineTextures_.emplace_back(texture);

    const auto show = [&](const QRect& target, const QRect& source) {
        appendImage(outlines_, window_, texture, inPoints(target, picture.ratio), source);
    };
    const QRect& bounds = outline.bounds;
    const QSize size = outline.image.size();
    const QPoint middle = outline.middle;
    const QSize fold = bounds.size() - size;
    // The pieces of the image, and where each goes: before the middle, the middle,
    // behind it.
    struct Piece {
        int source;
        int target;
        int sourceLength;
        int targetLength;
    };
    const auto pieces = [](int start, int length, int at, int folded) {
        return std::array{Piece{0, start, at, at}, Piece{at, start + at, 1, 1 + folded},
                          Piece{at + 1, start + at + 1 + folded, length - at - 1, length - at - 1}};
    };
    for (const Piece& row : pieces(bounds.top(), size.height(), middle.y(), fold.height())) {
        for (const Piece& column : pieces(bounds.left(), size.width(), middle.x(), fold.width())) {
            const QRect source(column.source, row.source, column.sourceLength, row.sourceLength);
            const QRect target(column.target, row.target, column.targetLength, row.targetLength);
            const bool hollow = source.topLeft() == middle && fold.width() > 0 && fold.height() > 0;
            if (!hollow && !source.isEmpty())
                show(target, source);
        }
    }
}

} // namespace brisalon
