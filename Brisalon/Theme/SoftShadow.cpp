#include "Brisalon/Theme/SoftShadow.h"

#include "Brisalon/Theme/BoxBlur.h"
#include "Brisalon/Theme/ContinuousRectangle.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

#include <cmath>

namespace brisalon {

SoftShadow::SoftShadow(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &SoftShadow::lookChanged, this, [this] { update(); });
}

void SoftShadow::paint(QPainter* painter)
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    QImage coverage((size() * ratio).toSize(), QImage::Format_Alpha8);
    coverage.fill(0);
    QPainter shape(&coverage);
    shape.setRenderHint(QPainter::Antialiasing);
    shape.scale(ratio, ratio);
    shape.setPen(Qt::NoPen);
    shape.setBrush(Qt::black);
    shape.drawPath(continuousRectanglePath(boundingRect().adjusted(blur_, blur_, -blur_, -blur_),
                                           cornerRadius_));
    shape.end();
    boxBlur(coverage, static_cast<int>(std::lround(blur_ * ratio)));

    QImage shadow(coverage.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(color_);
    QPainter cutting(&shadow);
    cutting.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    cutting.drawImage(0, 0, coverage);
    cutting.end();
    painter->drawImage(boundingRect(), shadow);
}

} // namespace brisalon
