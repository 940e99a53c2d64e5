#include "Brisalon/Theme/RingGauge.h"

#include <QConicalGradient>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brisalon {

RingGauge::RingGauge(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &RingGauge::lookChanged, this, [this] { update(); });
}

void RingGauge::paint(QPainter* painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const double margin = lineWidth_ / 2;
    const QRectF ring = boundingRect().adjusted(margin, margin, -margin, -margin);
    painter->setPen(QPen(track_, lineWidth_));
    painter->drawEllipse(ring);
    if (fraction_ <= 0)
        return;

    // Qt's conical gradients run counter-clockwise from 3 o'clock. The round start
    // reaches back beyond the top, where the gradient would show its other end: it
    // is moved back by the part of the ring that the cap covers.
    const double radius = ring.width() / 2;
    const double cap = std::asin(std::min(1.0, margin / radius)) / (2 * std::numbers::pi);
    const double start = 90 - 360 * turn_;
    QConicalGradient gradient(ring.center(), start + 360 * cap);
    gradient.setColorAt(1, from_);
    gradient.setColorAt(0, to_);
    painter->setPen(QPen(gradient, lineWidth_, Qt::SolidLine, Qt::RoundCap));
    const auto sixteenths = [](double degrees) {
        return static_cast<int>(std::lround(16 * degrees));
    };
    painter->drawArc(ring, sixteenths(start), sixteenths(-360 * std::min(fraction_, 1.0)));
}

} // namespace brisalon
