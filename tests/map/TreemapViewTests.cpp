#include "MapFixture.h"

#include <QTest>

namespace brisalon::tests {

class TreemapViewTest : public MapTest {
protected:
    QQuickItem* tooltip() { return view_->findChild<QQuickItem*>("mapTooltip"); }

    bool waitForOpacity(double opacity)
    {
        return QTest::qWaitFor([&] { return tooltip()->opacity() == opacity; });
    }

    /// The texts on the tooltip, top to bottom.
    QStringList texts(QQuickItem* item)
    {
        QStringList result;
        const QString text = item->property("text").toString();
        if (!text.isEmpty() && item->isVisible())
            result.append(text);
        for (QQuickItem* child : item->childItems())
            result += texts(child);
        return result;
    }
};

TEST_F(TreemapViewTest, TheTooltipFollowsThePointerAndFadesWhenItLeaves)
{
    show(folder({{"holiday.mov", 5'000'000'000}, {"a.iso", 3'000'000'000}}));
    EXPECT_FALSE(tooltip()->isVisible());
    movePointer({100, 100});
    ASSERT_TRUE(waitForOpacity(1));
    EXPECT_EQ(tooltip()->position(), QPointF(114, 116));
    EXPECT_EQ(texts(tooltip()), QStringList({"holiday.mov", "4.7 GB"}));
    EXPECT_LT(tooltip()->width(), 120) << "the card is as wide as its texts";

    movePointer({990, 590});
    EXPECT_EQ(tooltip()->position(), QPointF(760, 520));
    EXPECT_EQ(texts(tooltip()), QStringList({"a.iso", "2.8 GB", "Review", "Installer"}));

    leaveWindow();
    // It keeps its texts while it fades.
    EXPECT_EQ(texts(tooltip()).first(), "a.iso");
    ASSERT_TRUE(waitForOpacity(0));
    EXPECT_FALSE(tooltip()->isVisible());
}

TEST_F(TreemapViewTest, TheTooltipFitsItsPlaceAndLetsTheMouseThrough)
{
    show(folder({{"b", 100}, {std::string(200, 'w') + ".iso", 100}}));
    movePointer({980, 560});
    movePointer({990, 590});
    ASSERT_TRUE(waitForOpacity(1));
    const QRectF card(tooltip()->position(), tooltip()->size());
    EXPECT_TRUE(QRectF(0, 0, 1000, 600).contains(card));
    ASSERT_TRUE(card.contains(985, 585)) << "the card must lie under the pointer here";

    const QByteArray hovered = canvas_->hoverID();
    movePointer({985, 585});
    EXPECT_EQ(canvas_->hoverID(), hovered);
    click(QPoint(985, 585));
    EXPECT_NE(requests(), "");
}

TEST_F(TreemapViewTest, TheCardIsFrostedGlassOverTheMap)
{
    // Over a bright block the card is darker than the block, but not blind to it.
    show(folder({{"node_modules", 100}}));
    movePointer({300, 300});
    ASSERT_TRUE(waitForOpacity(1));
    const QRectF place(tooltip()->position(), tooltip()->size());
    const QColor card = pixel({place.left() + 4, place.center().y()});
    const QColor block = pixel({700, 400});
    EXPECT_LT(card.lightness(), block.lightness() / 2 + 20);
    EXPECT_GT(card.green(), card.blue() + 15) << "the block's green should show through";
    // And it throws a shadow.
    EXPECT_LT(pixel({place.center().x(), place.bottom() + 5}).green(), block.green() - 15);
}

} // namespace brisalon::tests
