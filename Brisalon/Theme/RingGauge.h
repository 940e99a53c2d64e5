#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace brisalon {

/// A ring of which a part is filled: from the top clockwise, with round ends and a
/// gradient that runs from `from` around the whole ring to `to`, over a `track`.
/// The whole can be turned; painting it turned has smooth edges everywhere, which
/// rotating the item has not.
class RingGauge : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The filled part, from 0 to 1.
    Q_PROPERTY(double fraction MEMBER fraction_ NOTIFY lookChanged)
    /// How far the start lies from the top, clockwise; 1 is all around.
    Q_PROPERTY(double turn MEMBER turn_ NOTIFY lookChanged)
    Q_PROPERTY(double lineWidth MEMBER lineWidth_ NOTIFY lookChanged)
    Q_PROPERTY(QColor track MEMBER track_ NOTIFY lookChanged)
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY lookChanged)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY lookChanged)

public:
    explicit RingGauge(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

private:
    double fraction_ = 0;
    double turn_ = 0;
    double lineWidth_ = 6;
    QColor track_ = Qt::transparent;
    QColor from_;
    QColor to_;
};

} // namespace brisalon
