#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>

namespace brisalon {

/// One of the interface's symbols, such as "house.fill", in one colour.
///
/// Symbols are drawings on a square of 24 units, kept as resources under their
/// names; only their coverage counts, the colour is put in when they are painted.
/// `size` is the size of the text that the symbol stands beside, in points; the
/// item is somewhat larger, as a symbol is beside capitals. The empty name paints
/// nothing, and so does an unknown one, which also warns.
class SymbolImage : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit SymbolImage(QQuickItem* parent = nullptr);

    QString name() const { return name_; }
    void setName(const QString& name);
    double size() const { return size_; }
    void setSize(double size);
    QColor color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

signals:
    void nameChanged();
    void sizeChanged();
    void colorChanged();

private:
    QString name_;
    double size_ = 0;
    QColor color_;
};

} // namespace brisalon
