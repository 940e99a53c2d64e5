#include "Brisalon/Theme/SymbolImage.h"

#include "Brisalon/Theme/Theme.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSvgRenderer>

#include <cmath>

namespace brisalon {

namespace {

// The side of a symbol's square beside text of size 1.
constexpr double sideOfSize = 1.3;

} // namespace

SymbolImage::SymbolImage(QQuickItem* parent)
    : QQuickPaintedItem(parent), size_(Theme::body()), color_(Theme::text())
{
    const auto takeSize = [this] {
        // Whole and even, so that a symbol centred on a whole grid stays on it.
        const double side = 2 * std::round(size_ * sideOfSize / 2);
        setImplicitSize(side, side);
        update();
    };
    takeSize();
    connect(this, &SymbolImage::lookChanged, this, takeSize);
}

void SymbolImage::paint(QPainter* painter)
{
    if (name_.isEmpty())
        return;
    const QString file = QStringLiteral(":/qt/qml/Brisalon/Theme/symbols/%1.svg").arg(name_);
    QSvgRenderer drawing(file);
    if (!drawing.isValid()) {
        qWarning("There is no symbol \"%s\"", qPrintable(name_));
        return;
    }
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    const double side = std::min(width(), height());
    QImage image((QSizeF(side, side) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter tinting(&image);
    tinting.setRenderHint(QPainter::Antialiasing);
    drawing.render(&tinting, QRectF(image.rect()));
    tinting.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tinting.fillRect(image.rect(), color_);
    tinting.end();
    painter->drawImage(QRectF((width() - side) / 2, (height() - side) / 2, side, side), image);
}

} // namespace brisalon
