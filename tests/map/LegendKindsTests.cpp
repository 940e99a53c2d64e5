#include "Brisalon/Map/LegendKinds.h"

#include "Brisalon/Map/NodeColor.h"
#include "MapFixture.h"

#include <QSignalSpy>

using namespace brisalon;
using test::folder;

TEST(LegendKindsTest, ListsEachHogOnceInTheOrderOfTheLevel)
{
    const auto level = folder({{"Library/Caches/b", 9},
                               {"plain", 8},
                               {"Library/Logs", 7},
                               {"Library/Caches/a", 6},
                               {"node_modules", 5}});
    EXPECT_EQ(visibleKinds(level->children()),
              (std::vector{HogKind::caches, HogKind::logs, HogKind::nodeModules}));
    EXPECT_TRUE(visibleKinds({}).empty());
}

TEST(LegendKindsTest, AnnouncesTheEntriesOnlyWhenTheyChange)
{
    LegendKinds legend;
    const QSignalSpy changes(&legend, &LegendKinds::entriesChanged);

    legend.setLevel(folder({{"plain", 2}, {"other", 1}}));
    EXPECT_EQ(changes.count(), 0);
    EXPECT_TRUE(legend.entries().isEmpty());

    legend.setLevel(folder({{"node_modules", 2}, {"a.iso", 1}}));
    EXPECT_EQ(changes.count(), 1);
    ASSERT_EQ(legend.entries().size(), 2);
    const auto first = legend.entries().first().value<LegendEntry>();
    EXPECT_EQ(first.title, "node_modules");
    EXPECT_EQ(first.kind, HogKind::nodeModules);
    EXPECT_EQ(first.color, NodeColor::color(HogKind::nodeModules, ""));

    const FileNodeHold last = folder({{"x/node_modules", 7}, {"b.iso", 5}, {"c.iso", 3}});
    legend.setLevel(last);
    EXPECT_EQ(changes.count(), 1);
    legend.setLevel({});
    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(legend.entries().isEmpty());
}
