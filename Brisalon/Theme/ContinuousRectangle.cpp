#include "Brisalon/Theme/ContinuousRectangle.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <array>
#include <cmath>

namespace brisalon {

namespace {

// So many straight pieces stay within 1/200 of the corner's size of the curve.
constexpr int cornerPieces = 16;

/// Along one axis: which pixels of the image go where in the item.
struct Piece {
    double from;
    double extent;
    double to;
    double length;
};

std::array<Piece, 3> pieces(int pixels, int corner, double start, double length, double ratio)
{
    const double end = std::min(corner, (pixels - 1) / 2);
    const double edge = end / ratio;
    return {{{0, end, start, edge},
             {end, pixels - 2 * end, start + edge, length - 2 * edge},
             {pixels - end, end, start + length - edge, edge}}};
}

} // namespace

QPainterPath continuousRectanglePath(const QRectF& rectangle, double radius)
{
    const double reach = std::min(radius * continuousCornerScale,
                                  std::min(rectangle.width(), rectangle.height()) / 2);
    QPainterPath path;
    if (reach <= 0) {
        path.addRect(rectangle);
        return path;
    }
    // Clockwise from the top edge's right end. A quarter begins with u along the
    // edge that it comes from and ends with v along the one that it goes to.
    const auto addCorner = [&](QPointF centre, QPointF from, QPointF to) {
        for (int piece = 0; piece <= cornerPieces; ++piece) {
            const double angle = M_PI / 2 * piece / cornerPieces;
            const double u = std::pow(std::max(0.0, std::cos(angle)), 2 / 2.5);
            const double v = std::pow(std::sin(angle), 2 / 2.5);
            const QPointF point = centre + (from * u + to * v) * reach;
            if (path.elementCount() == 0)
                path.moveTo(point);
            else
                path.lineTo(point);
        }
    };
    const QRectF inner = rectangle.adjusted(reach, reach, -reach, -reach);
    const QPointF up(0, -1);
    const QPointF right(1, 0);
    addCorner(inner.topRight(), up, right);
    addCorner(inner.bottomRight(), right, -up);
    addCorner(inner.bottomLeft(), -up, -right);
    addCorner(inner.topLeft(), -right, up);
    path.closeSubpath();
    return path;
}

/// The item's look in little: an image of its corners, between which the middle row
/// and column may be stretched.
struct ContinuousRectangle::Patch {
    QImage image;
    /// How far the image reaches beyond the item on every side, in device pixels.
    int overhang = 0;
    /// The width of the corners, which are not stretched, in device pixels.
    int corner = 0;
};

ContinuousRectangle::ContinuousRectangle(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &ContinuousRectangle::lookChanged, this, &ContinuousRectangle::repaint);
}

void ContinuousRectangle::repaint()
{
    isStale_ = true;
    update();
}

ContinuousRectangle::Patch ContinuousRectangle::paintPatch(double ratio) const
{
    const double width = std::round(this->width() * ratio);
    const double height = std::round(this->height() * ratio);
    const double line = borderWidth_ * ratio;

    Patch patch;
    patch.overhang = static_cast<int>(line / 2);
    const double reach =
        std::min(radius_ * ratio * continuousCornerScale, std::min(width, height) / 2);
    patch.corner = patch.overhang + static_cast<int>(std::ceil(reach + line));
    // One pixel in the middle is enough, unless the corners meet before.
    const auto side = [&](double length) {
        return std::min(static_cast<int>(length) + 2 * patch.overhang, 2 * patch.corner + 1);
    };
    patch.image = QImage(side(width), side(height), QImage::Format_ARGB32_Premultiplied);
    patch.image.fill(Qt::transparent);

    QPainter painter(&patch.image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape =
        QRectF(patch.image.rect())
            .adjusted(patch.overhang, patch.overhang, -patch.overhang, -patch.overhang);
    const double radius = radius_ * ratio;
    painter.fillPath(continuousRectanglePath(shape, radius), color_);
    if (line > 0) {
        // The line's outer edge lies on whole pixels, so that it stays sharp.
        const double outset = patch.overhang - line / 2;
        painter.setPen(QPen(borderColor_, line));
        painter.drawPath(continuousRectanglePath(shape.adjusted(-outset, -outset, outset, outset),
                                                 std::max(0.0, radius + outset)));
    }
    return patch;
}

void ContinuousRectangle::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    repaint();
}

void ContinuousRectangle::itemChange(ItemChange change, const ItemChangeData& data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        repaint();
    QQuickItem::itemChange(change, data);
}

QSGNode* ContinuousRectangle::updatePaintNode(QSGNode* node, UpdatePaintNodeData*)
{
    if (node && !isStale_)
        return node;
    delete node;
    isStale_ = true;
    if (width() < 1 || height() < 1)
        return nullptr;

    const double ratio = window()->effectiveDevicePixelRatio();
    const Patch patch = paintPatch(ratio);
    const double overhang = patch.overhang / ratio;
    // As wide as painted: pieces that met between two pixels would show a seam.
    const QRectF bounds =
        QRectF(0, 0, std::round(width() * ratio) / ratio, std::round(height() * ratio) / ratio)
            .adjusted(-overhang, -overhang, overhang, overhang);
    const auto across =
        pieces(patch.image.width(), patch.corner, bounds.left(), bounds.width(), ratio);
    const auto down =
        pieces(patch.image.height(), patch.corner, bounds.top(), bounds.height(), ratio);

    auto* const root = new QSGNode;
    QSGTexture* const texture = window()->createTextureFromImage(patch.image);
    for (const Piece& y : down) {
        for (const Piece& x : across) {
            QSGImageNode* const piece = window()->createImageNode();
            piece->setTexture(texture);
            piece->setOwnsTexture(root->childCount() == 0);
            piece->setFiltering(QSGTexture::Nearest);
            piece->setSourceRect(x.from, y.from, x.extent, y.extent);
            piece->setRect(x.to, y.to, x.length, y.length);
            root->appendChildNode(piece);
        }
    }
    isStale_ = false;
    return root;
}

} // namespace brisalon
