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
    Q_PROPERTY(double blur MEMBER blur_ NOTIFY lookChanged)
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius_ NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)

public:
    explicit SoftShadow(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

private:
    double blur_ = 0;
    double cornerRadius_ = 0;
    QColor color_ = Qt::black;
};

} // namespace brisalon
