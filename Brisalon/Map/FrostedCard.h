#pragma once

#include "Brisalon/Map/TreemapCanvas.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace brisalon {

/// The background of a card that floats over a map: a rounded rectangle of the
/// map behind it, blurred and darkened, with a fine edge. Blurred on the
/// processor, so that it is the same picture whatever draws the scene.
///
/// Follows its own moves and the map's changes; whoever moves a parent of it
/// relative to the map must call update().
class FrostedCard : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(brisalon::TreemapCanvas* map READ map WRITE setMap NOTIFY lookChanged REQUIRED)
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius_ NOTIFY lookChanged)

public:
    explicit FrostedCard(QQuickItem* parent = nullptr);

    TreemapCanvas* map() const { return map_; }
    void setMap(TreemapCanvas* map);

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    QPointer<TreemapCanvas> map_;
    double cornerRadius_ = 10;
};

} // namespace brisalon
