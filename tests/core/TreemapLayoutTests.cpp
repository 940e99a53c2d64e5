#include "BrisalonCore/TreemapLayout.h"

#include "model/NameBlock.h"
#include "support/ReferenceLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace brisalon;
using tests::squarifiedByTheBook;
using Rect = tests::PlainRect;

namespace {

/// Files of these sizes, named by their positions. As those that a scan finds they
/// share a block of names, but for some.
std::vector<FileNode> nodesOf(const std::vector<std::int64_t>& sizes)
{
    using detail::NameBlock;
    const FileURL folder("/r");
    std::string bytes;
    std::vector<std::uint64_t> offsets;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        offsets.push_back(bytes.size());
        bytes.append(std::to_string(i)).push_back('\0');
    }
    bytes.push_back('\0');
    const auto names = NameBlock::make(folder, bytes);
    std::vector<FileNode> nodes;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const std::string name = std::to_string(i);
        nodes.emplace_back(i % 300 == 7 ? folder.appendingPathComponent(name)
                                        : NameBlock::url(names, offsets[i]),
                           name, sizes[i], NodeKind::file, HogKind::none, Risk::unknown,
                           std::vector<FileNode>(), FileURLList());
    }
    return nodes;
}

std::vector<Rect> rectsOf(const std::vector<TreemapRect>& rects)
{
    std::vector<Rect> result;
    result.reserve(rects.size());
    for (const TreemapRect& rect : rects)
        result.push_back({rect.x, rect.y, rect.width, rect.height});
    return result;
}

void expectLayout(const std::vector<std::int64_t>& sizes, double width, double height,
                  const std::vector<Rect>& expected)
{
    const auto rects = TreemapLayout::layout(nodesOf(sizes), width, height);
    ASSERT_EQ(rects.size(), expected.size());
    for (std::size_t i = 0; i < rects.size(); ++i) {
        EXPECT_NEAR(rects[i].x, expected[i].x, 0.005) << i;
        EXPECT_NEAR(rects[i].y, expected[i].y, 0.005) << i;
        EXPECT_NEAR(rects[i].width, expected[i].width, 0.005) << i;
        EXPECT_NEAR(rects[i].height, expected[i].height, 0.005) << i;
    }
}

TEST(TreemapLayout, NothingToShow)
{
    const auto nodes = nodesOf({3, 1});
    EXPECT_TRUE(TreemapLayout::layout({}, 100, 100).empty());
    EXPECT_TRUE(TreemapLayout::layout(nodes, 0, 100).empty());
    EXPECT_TRUE(TreemapLayout::layout(nodes, 100, -1).empty());
    EXPECT_TRUE(TreemapLayout::layout(nodes, std::nan(""), 100).empty());
    EXPECT_TRUE(TreemapLayout::layout(nodesOf({0, -5, 0}), 100, 100).empty());
}

TEST(TreemapLayout, Samples)
{
    expectLayout({7}, 300, 200, {{0, 0, 300, 200}});
    expectLayout({3, 1}, 400, 100, {{0, 0, 300, 100}, {300, 0, 100, 100}});
    expectLayout({6, 6, 4, 3, 2, 2, 1}, 600, 400,
                 {{0, 0, 300, 200},
                  {0, 200, 300, 200},
                  {300, 0, 171.43, 233.33},
                  {471.43, 0, 128.57, 233.33},
                  {300, 233.33, 120, 166.67},
                  {420, 233.33, 120, 166.67},
                  {540, 233.33, 60, 166.67}});
    // An item that leaves the worst ratio as it is joins the row.
    expectLayout({1, 1}, 100, 100, {{0, 0, 100, 50}, {0, 50, 100, 50}});
    // A square is filled from the left.
    expectLayout({2, 1, 1}, 100, 100, {{0, 0, 50, 100}, {50, 0, 50, 50}, {50, 50, 50, 50}});
}

TEST(TreemapLayout, RectanglesOutliveTheirNodes)
{
    std::vector<std::int64_t> sizes(2000);
    for (std::size_t i = 0; i < sizes.size(); ++i)
        sizes[i] = i % 3 == 0 ? 0 : 1000;
    const auto rects = TreemapLayout::layout(nodesOf(sizes), 640, 480);
    ASSERT_EQ(rects.size(), 1333u);
    EXPECT_EQ(rects.front().nodeID(), "/r/1");
    EXPECT_EQ(rects.back().nodeID(), "/r/1999");
}

TEST(TreemapLayout, SameDoublesAsMeasuringEveryRowAnew)
{
    std::mt19937_64 random(4);
    for (int round = 0; round < 3000; ++round) {
        std::vector<std::int64_t> sizes(1 + random() % 120);
        const auto shift = random() % 62;
        const auto spread = random() % 4;
        for (auto& size : sizes)
            size = 1 + static_cast<std::int64_t>(spread == 0   ? shift
                                                 : spread == 1 ? random() % 3
                                                 : spread == 2 ? random() >> (2 + shift)
                                                               : random() >> (2 + random() % 62));
        if (round % 4 != 0)
            std::ranges::sort(sizes, std::ranges::greater());
        const double edges[] = {1, 300, 1000.0 / 3, 1e-300, 5e-324, 1e308, 123456.789};
        const double width = edges[random() % std::size(edges)];
        const double height = edges[random() % std::size(edges)];
        const std::vector<double> plain(sizes.begin(), sizes.end());
        ASSERT_EQ(rectsOf(TreemapLayout::layout(nodesOf(sizes), width, height)),
                  squarifiedByTheBook(plain, width, height))
            << round << ": " << width << " x " << height;
    }
}

TEST(TreemapLayout, StopsWhenTheAreaIsUsedUp)
{
    // Beside so large a size the small ones vanish in the sum.
    EXPECT_EQ(rectsOf(TreemapLayout::layout(nodesOf({INT64_MAX, 1, 1}), 400, 100)),
              (std::vector<Rect>{{0, 0, 400, 100}}));
}

TEST(TreemapLayout, SharedEdgesBelongToTheRightAndLowerNeighbour)
{
    const auto rects = TreemapLayout::layout(nodesOf({3, 1}), 400, 100);
    EXPECT_EQ(TreemapLayout::hitTest(300, 50, rects), &rects[1]);
    EXPECT_EQ(TreemapLayout::hitTest(299.9, 50, rects), &rects[0]);
    EXPECT_EQ(TreemapLayout::hitTest(0, 0, rects), &rects[0]);
    EXPECT_EQ(TreemapLayout::hitTest(400, 50, rects), nullptr);
    EXPECT_EQ(TreemapLayout::hitTest(50, 100, rects), nullptr);
    EXPECT_EQ(TreemapLayout::hitTest(-0.1, 50, rects), nullptr);
    EXPECT_EQ(TreemapLayout::hitTest(std::nan(""), 50, rects), nullptr);
    EXPECT_EQ(TreemapLayout::hitTest(50, 50, {}), nullptr);
}

} // namespace
