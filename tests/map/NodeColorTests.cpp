#include "Brisalon/Map/NodeColor.h"

#include <gtest/gtest.h>

#include <string>

namespace brisalon::tests {

TEST(NodeColorTest, EveryHogHasItsOwnColorWhateverItsName)
{
    const struct {
        HogKind kind;
        QRgb color;
    } table[] = {
        {HogKind::caches, 0xff529efa},
        {HogKind::logs, 0xff7a8fb8},
        {HogKind::trash, 0xff858a9e},
        {HogKind::installer, 0xfffa9e2e},
        {HogKind::xcodeDerivedData, 0xff2ec794},
        {HogKind::xcodeSimulators, 0xff249e8a},
        {HogKind::docker, 0xff3d85f0},
        {HogKind::nodeModules, 0xff70c747},
        {HogKind::homebrew, 0xfff08a33},
        {HogKind::iosBackup, 0xfff0526b},
        {HogKind::timeMachineSnapshot, 0xffad6beb},
    };
    EXPECT_EQ(std::size(table) + 1, allHogKinds.size());
    for (const auto& row : table) {
        EXPECT_EQ(NodeColor::color(row.kind, "any").rgba(), row.color) << title(row.kind);
        EXPECT_EQ(NodeColor::color(row.kind, "").rgba(), row.color) << title(row.kind);
    }
    EXPECT_EQ(NodeColor::color(HogKind::none, "any"), NodeColor::hashed("any"));
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
