#pragma once

#include <QColor>
#include <QPainterPath>
#include <QQuickItem>

namespace brisalon {

/// A continuous corner is the superellipse |u|^2.5 + |v|^2.5 = 1. To cut as much off
/// the diagonal as a circle's arc it must begin this much farther from the corner:
/// (1 - 2^(-1/2)) / (1 - 2^(-1/2.5)).
constexpr double continuousCornerScale = 1.2098;

/// The outline of a rectangle with continuous corners: its curvature does not jump
/// where the corner meets the edge, as it does with a circle's arc. The corner cuts
/// as much off the diagonal as an arc of `radius` would. Radii that do not fit are
/// made to fit, which ends in a capsule.
QPainterPath continuousRectanglePath(const QRectF& rectangle, double radius);

/// A filled rectangle with continuous corners and an outline that lies on the
/// shape's edge, half of it outside where the pixels are fine enough to show that.
///
/// Painted once as a small image whose corners keep their size when the item is
/// stretched; the same picture whatever draws the scene.
class ContinuousRectangle : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)
    Q_PROPERTY(QColor borderColor MEMBER borderColor_ NOTIFY lookChanged)
    /// In points; 0 for no outline.
    Q_PROPERTY(double borderWidth MEMBER borderWidth_ NOTIFY lookChanged)

public:
    explicit ContinuousRectangle(QQuickItem* parent = nullptr);

signals:
    void lookChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    struct Patch;

    void repaint();
    Patch paintPatch(double ratio) const;

    double radius_ = 0;
    QColor color_ = Qt::white;
    QColor borderColor_ = Qt::transparent;
    double borderWidth_ = 0;
    /// Whether the image in the scene is of another look than the properties'.
    bool isStale_ = true;
};

} // namespace brisalon
