#include "Brisalon/Theme/LogoMark.h"

#include "Brisalon/Theme/ContinuousRectangle.h"

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSvgRenderer>

namespace brisalon {

namespace {

QImage drawn(QSize pixels)
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter drawing(&image);
    drawing.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(QStringLiteral(":/qt/qml/Brisalon/Theme/LogoMark.svg"))
        .render(&drawing, QRectF(image.rect()));
    drawing.end();
    return image;
}

} // namespace

LogoMark::LogoMark(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    connect(this, &LogoMark::lookChanged, this, [this] { update(); });
}

QIcon LogoMark::icon()
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(QPixmap::fromImage(drawn(QSize(side, side))));
    return icon;
}

void LogoMark::paint(QPainter* painter)
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    QImage image = drawn((size() * ratio).toSize());

    // A brush, because a clip path has no smooth edge.
    image.setDevicePixelRatio(ratio);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QBrush(image));
    painter->drawPath(continuousRectanglePath(boundingRect(), cornerRadius_));
}

} // namespace brisalon
