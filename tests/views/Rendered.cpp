#include "Rendered.h"

#include <gtest/gtest.h>

#include <functional>

namespace brisalon::tests {

namespace {

using Accepts = std::function<bool(const QQuickItem&)>;

const QQuickItem* search(const QQuickItem& item, const Accepts& accepts)
{
    if (!item.isVisible())
        return nullptr;
    const QList<QQuickItem*> children = item.childItems();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (const QQuickItem* const found = search(**child, accepts))
            return found;
    }
    return accepts(item) ? &item : nullptr;
}

Accepts showsText(const QString& text)
{
    return [text](const QQuickItem& item) {
        return item.inherits("QQuickText") && item.property("text").toString() == text;
    };
}

} // namespace

const QQuickItem* Rendered::item(const Accepts& isIt) const
{
    return root_ ? search(*root_, isIt) : nullptr;
}

Rendered Rendered::within(const char* objectName) const
{
    const QQuickItem* const found =
        item([&](const QQuickItem& other) { return other.objectName() == objectName; });
    EXPECT_NE(found, nullptr) << "no " << objectName;
    return Rendered(found);
}

QRectF Rendered::box(const QString& nameOrText) const
{
    const QQuickItem* found =
        item([&](const QQuickItem& other) { return other.objectName() == nameOrText; });
    if (!found)
        found = item(showsText(nameOrText));
    EXPECT_NE(found, nullptr) << "no " << nameOrText.toStdString();
    return found ? found->mapRectToScene(QRectF(QPointF(), found->size())) : QRectF();
}

double Rendered::below(const QString& upper, const QString& lower) const
{
    return box(lower).top() - box(upper).bottom();
}

void Rendered::expectText(const QString& text, const QFont& font, const QColor& color) const
{
    const QQuickItem* const found = item(showsText(text));
    ASSERT_NE(found, nullptr) << "no text " << text.toStdString();
    const auto shown = found->property("font").value<QFont>();
    EXPECT_EQ(shown.pixelSize(), font.pixelSize()) << text.toStdString();
    EXPECT_EQ(shown.weight(), font.weight()) << text.toStdString();
    EXPECT_EQ(shown.families().first(), font.families().first()) << text.toStdString();
    EXPECT_EQ(shown.letterSpacing(), font.letterSpacing()) << text.toStdString();
    EXPECT_EQ(found->property("color").value<QColor>().rgba(), color.rgba()) << text.toStdString();
}

} // namespace brisalon::tests
