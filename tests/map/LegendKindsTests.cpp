#include "Brisalon/Map/LegendKinds.h"

#include "Brisalon/Map/NodeColor.h"
#include "MapFixture.h"

#include <QSignalSpy>

namespace brisalon::tests {

TEST(LegendKindsTest, ListsEachHogOnceInTheOrderOfTheLevelAndAnnouncesChangesAlone)
{
    LegendKinds legend;
    const QSignalSpy changes(&legend, &LegendKinds::entriesChanged);
    const struct {
        std::vector<Child> children;
        const char* entries;
        int changes;
    } rows[] = {
        {{{"node_modules", 2}, {"a.iso", 1}}, "node_modules, Installer, ", 1},
        {{{"x/node_modules", 7}, {"b.iso", 5}, {"c.iso", 3}}, "node_modules, Installer, ", 1},
        {{{"Library/Caches/b", 9}, {"plain", 8}, {"Library/Logs", 7}, {"Library/Caches/a", 6}},
         "Caches, Logs, ",
         2},
        {{}, "", 3},
    };
    for (const auto& row : rows) {
        legend.setLevel(folder(row.children));
        QString entries;
        for (const QVariant& variant : legend.entries()) {
            const auto entry = variant.value<LegendEntry>();
            entries += entry.title + ", ";
            EXPECT_EQ(entry.color, NodeColor::color(entry.kind, ""));
        }
        EXPECT_EQ(entries, row.entries);
        EXPECT_EQ(changes.count(), row.changes);
    }
}

} // namespace brisalon::tests
