#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace brisalon {

/// A fill that starts with `from` in the top-left corner and ends with `to`: in the
/// bottom-right corner or, with a `radius`, that many points away in any direction.
/// Both are opaque colours. They may lie a few steps of 8 bits apart, so the fill is
/// dithered; a plain one would show each step as an edge.
class CornerGradient : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY lookChanged)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY lookChanged)
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY lookChanged)

public:
    explicit CornerGradient(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

private:
    QColor from_;
    QColor to_;
    double radius_ = 0;
};

} // namespace brisalon
