#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace brisalon {

/// The drop shadow of a rounded rectangle, blurred on the processor so that it is
/// the same picture whatever draws the scene. The item covers what casts it and
/// `blur` points more on every side; painted once for a size.
class SoftShadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double blur READ blur WRITE setBlur NOTIFY blurChanged)
    Q_PROPERTY(
        double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit SoftShadow(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    double blur() const { return blur_; }
    void setBlur(double blur);
    double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius);
    QColor color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

signals:
    void blurChanged();
    void cornerRadiusChanged();
    void colorChanged();

private:
    double blur_ = 0;
    double cornerRadius_ = 0;
    QColor color_ = Qt::black;
};

} // namespace brisalon
