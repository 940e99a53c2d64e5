#pragma once

#include <QIcon>
#include <QQuickPaintedItem>

namespace brisalon {

/// The product's mark, from the drawing "LogoMark.svg", clipped to a rounded tile.
class LogoMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double cornerRadius MEMBER cornerRadius_ NOTIFY lookChanged)

public:
    explicit LogoMark(QQuickItem* parent = nullptr);

    /// The whole mark in the sizes that window managers ask for, drawn without the
    /// plugin that reads such drawings, which not every system has.
    static QIcon icon();

    void paint(QPainter* painter) override;

signals:
    void lookChanged();

private:
    double cornerRadius_ = 0;
};

} // namespace brisalon
