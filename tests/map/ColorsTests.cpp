#include "Brisalon/Map/LegendKinds.h"

#include "Brisalon/Map/NodeColor.h"
#include "MapFixture.h"

#include <QSignalSpy>

#include <string>
#include <vector>

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

TEST(NodeColorTest, EveryHogHasItsOwnColorWhateverItsName)
{
    std::vector<QRgb> colors;
    for (const HogKind kind : allHogKinds)
        if (kind != HogKind::none)
            colors.push_back(NodeColor::color(kind, title(kind)).rgba());
    EXPECT_EQ(colors, (std::vector<QRgb>{0xff529efa, 0xff7a8fb8, 0xff858a9e, 0xfffa9e2e, 0xff2ec794,
                                         0xff249e8a, 0xff3d85f0, 0xff70c747, 0xfff08a33, 0xfff0526b,
                                         0xffad6beb}));
}

TEST(NodeColorTest, TheHueOfAnOrdinaryItemIsAHashOfTheBytesOfItsName)
{
    const std::pair<std::string, int> rows[] = {
        {"", 341},
        {"a", 190},                  // 5381 × 33 + 97 = 177670
        {"\xff", 348},               // bytes are unsigned: 177573 + 255
        {std::string(40, 'z'), 133}, // 64 bits are full after 12 letters; then it wraps
    };
    for (const auto& [name, hue] : rows) {
        const QColor color = NodeColor::hashed(name);
        EXPECT_EQ(color.hsvHue(), hue);
        EXPECT_NEAR(color.hsvSaturationF(), 0.42, 0.001);
        EXPECT_NEAR(color.valueF(), 0.72, 0.001);
        EXPECT_EQ(color.alpha(), 255);
    }
}

} // namespace brisalon::tests
