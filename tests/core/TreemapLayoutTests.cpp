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

/// The rectangles, which outlive their nodes and name those that have a size.
std::vector<Rect> laidOut(const std::vector<std::int64_t>& sizes, double width, double height)
{
    std::vector<Rect> result;
    std::size_t node = 0;
    for (const TreemapRect& rect : TreemapLayout::layout(nodesOf(sizes), width, height)) {
        result.push_back({rect.x, rect.y, rect.width, rect.height});
        while (sizes[node] < 1)
            ++node;
        EXPECT_EQ(rect.nodeID(), "/r/" + std::to_string(node++));
    }
    return result;
}

TEST(TreemapLayout, Samples)
{
    using Rects = std::vector<Rect>;
    EXPECT_EQ(laidOut({3, 1}, 400, 100), (Rects{{0, 0, 300, 100}, {300, 0, 100, 100}}));
    // A square is filled from the left.
    EXPECT_EQ(laidOut({2, 1, 1}, 100, 100),
              (Rects{{0, 0, 50, 100}, {50, 0, 50, 50}, {50, 50, 50, 50}}));
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
        const double edges[] = {1, 300, 1000.0 / 3, 123456.789, 1e-300, 5e-324, 1e308, 0, -1, NAN};
        const double width = edges[random() % std::size(edges)];
        const double height = edges[random() % std::size(edges)];
        const std::vector<double> plain(sizes.begin(), sizes.end());
        // Those without a size are left out, wherever they are.
        for (const std::int64_t none : {0, -5})
            sizes.insert(sizes.begin() + static_cast<int>(random() % sizes.size()), none);
        ASSERT_EQ(laidOut(sizes, width, height), squarifiedByTheBook(plain, width, height))
            << round << ": " << width << " x " << height;
    }
}

TEST(TreemapLayout, SharedEdgesBelongToTheRightAndLowerNeighbour)
{
    const auto rects = TreemapLayout::layout(nodesOf({3, 1}), 400, 100);
    EXPECT_EQ(TreemapLayout::hitTest(300, 50, rects), &rects[1]);
    EXPECT_EQ(TreemapLayout::hitTest(299.9, 50, rects), &rects[0]);
    EXPECT_EQ(TreemapLayout::hitTest(0, 0, rects), &rects[0]);
    for (const auto& [x, y] :
         {std::pair(400.0, 50.0), {50, 100}, {-0.1, 50}, {50, -0.1}, {std::nan(""), 50}})
        EXPECT_EQ(TreemapLayout::hitTest(x, y, rects), nullptr) << x << ' ' << y;
    EXPECT_EQ(TreemapLayout::hitTest(50, 50, {}), nullptr);
}

} // namespace
