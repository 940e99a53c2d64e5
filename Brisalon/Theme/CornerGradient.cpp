#include "Brisalon/Theme/CornerGradient.h"

#include <QBrush>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

namespace brisalon {

void CornerGradient::paint(QPainter* painter)
{
    const auto fill = [&](QGradient&& gradient) {
        gradient.setColorAt(0, from_);
        gradient.setColorAt(1, to_);
        painter->fillRect(boundingRect(), gradient);
    };
    if (radius_ > 0)
        fill(QRadialGradient(QPointF(0, 0), radius_));
    else
        fill(QLinearGradient(QPointF(0, 0), QPointF(width(), height())));
}

} // namespace brisalon
