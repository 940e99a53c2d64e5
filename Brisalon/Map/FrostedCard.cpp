#include "Brisalon/Map/FrostedCard.h"

#include "Brisalon/Theme/ContinuousRectangle.h"
#include "Brisalon/Theme/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace brisalon {

namespace {

/// How much of the panel's colour lies over the blurred map: enough for faint
/// text, little enough to tell what is behind.
constexpr double tintOpacity = 0.72;

} // namespace

FrostedCard::FrostedCard(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &FrostedCard::lookChanged, this, [this] { update(); });
}

void FrostedCard::setMap(TreemapCanvas* map)
{
    if (map == map_)
        return;
    if (map_)
        map_->disconnect(this);
    map_ = map;
    if (map_)
        connect(map_, &TreemapCanvas::appearanceChanged, this, [this] { update(); });
    emit lookChanged();
}

void FrostedCard::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void FrostedCard::paint(QPainter* painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QPainterPath shape = continuousRectanglePath(boundingRect(), cornerRadius_);

    QBrush fill(Theme::panel());
    if (map_) {
        const auto behind = map_->blurred(mapRectToItem(map_, boundingRect()));
        if (!behind.image.isNull()) {
            const QRectF target = mapRectFromItem(map_, behind.area);
            fill = QBrush(behind.image);
            fill.setTransform(QTransform::fromTranslate(target.left(), target.top())
                                  .scale(target.width() / behind.image.width(),
                                         target.height() / behind.image.height()));
        }
    }
    painter->fillPath(shape, fill);
    painter->fillPath(shape, Theme::faded(Theme::panel(), tintOpacity));

    painter->setPen(QPen(Theme::strokeStrong(), 1));
    painter->drawPath(continuousRectanglePath(boundingRect().adjusted(0.5, 0.5, -0.5, -0.5),
                                              cornerRadius_ - 0.5));
}

} // namespace brisalon
