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
    Q_PROPERTY(QString name MEMBER name_ NOTIFY lookChanged REQUIRED)
    Q_PROPERTY(double size MEMBER size_ NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY lookChanged)

public:
    explicit SymbolImage(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

private:
    QString name_;
    double size_;
    QColor color_;
};

} // namespace brisalon
