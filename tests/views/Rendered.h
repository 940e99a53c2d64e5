#pragma once

#include <QColor>
#include <QFont>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <functional>

namespace brisalon::tests {

/// What the window shows, measured. An item counts only while it is visible; of
/// several the one on top. Lengths are in points, places in the window.
class Rendered {
public:
    /// The window outlives this.
    explicit Rendered(const QQuickWindow& window) : root_(window.contentItem()) {}

    /// What the item of that name shows. It outlives the result.
    Rendered within(const char* objectName) const;

    /// Where the item of that name is, or else that text; nowhere without either,
    /// which fails the test.
    QRectF box(const QString& nameOrText) const;
    /// How far one begins below the end of the other.
    double below(const QString& upper, const QString& lower) const;

    /// Expects a text to be shown in this font (size, weight, design, spacing) and
    /// colour.
    void expectText(const QString& text, const QFont& font, const QColor& color) const;

private:
    const QQuickItem* item(const std::function<bool(const QQuickItem&)>& isIt) const;

    explicit Rendered(const QQuickItem* root) : root_(root) {}

    /// Null for an item that is missing: nothing is found in it.
    const QQuickItem* root_;
};

} // namespace brisalon::tests
