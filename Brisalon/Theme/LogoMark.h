#pragma once

#include <QQuickPaintedItem>

namespace brisalon {

/// The product's mark, from the drawing "LogoMark.svg", clipped to a rounded tile.
class LogoMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius_)

public:
    explicit LogoMark(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    void paint(QPainter* painter) override;

private:
    double cornerRadius_ = 0;
};

} // namespace brisalon
