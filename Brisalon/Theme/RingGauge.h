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
    Q_PROPERTY(double fraction READ fraction WRITE setFraction NOTIFY fractionChanged)
    Q_PROPERTY(double turn READ turn WRITE setTurn NOTIFY turnChanged)
    Q_PROPERTY(double lineWidth MEMBER lineWidth_)
    Q_PROPERTY(QColor track MEMBER track_)
    Q_PROPERTY(QColor from READ from WRITE setFrom NOTIFY fromChanged)
    Q_PROPERTY(QColor to READ to WRITE setTo NOTIFY toChanged)

public:
    explicit RingGauge(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    /// The filled part, from 0 to 1.
    double fraction() const { return fraction_; }
    void setFraction(double fraction);
    /// How far the start lies from the top, clockwise; 1 is all around.
    double turn() const { return turn_; }
    void setTurn(double turn);
    QColor from() const { return from_; }
    void setFrom(const QColor& color);
    QColor to() const { return to_; }
    void setTo(const QColor& color);

    void paint(QPainter* painter) override;

signals:
    void fractionChanged();
    void turnChanged();
    void fromChanged();
    void toChanged();

private:
    double fraction_ = 0;
    double turn_ = 0;
    double lineWidth_ = 6;
    QColor track_ = Qt::transparent;
    QColor from_;
    QColor to_;
};

} // namespace brisalon
