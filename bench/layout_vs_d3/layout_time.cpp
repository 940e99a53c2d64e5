// layout_time SIZES ROUNDS
//
// Lays out the sizes (one a line, in descending order) that often in an area of
// 1600 × 900 and prints the median time in milliseconds.
#include "BrisalonCore/TreemapLayout.h"

#include "../SiblingNodes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

using namespace brisalon;

int main(int argumentCount, char** arguments)
{
    const int rounds = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
    if (rounds < 1) {
        std::fputs("usage: layout_time SIZES ROUNDS\n", stderr);
        return 2;
    }
    std::ifstream file(arguments[1]);
    const std::vector<std::int64_t> sizes(std::istream_iterator<std::int64_t>(file), {});
    const std::vector<FileNode> nodes = bench::siblingNodes(sizes);

    using Clock = std::chrono::steady_clock;
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        const auto rects = TreemapLayout::layout(nodes, 1600, 900);
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        if (rects.size() != nodes.size()) {
            std::fputs("layout_time: not every item was laid out\n", stderr);
            return 1;
        }
    }
    std::ranges::sort(times);
    std::printf("%.3f\n", times[times.size() / 2]);
}
