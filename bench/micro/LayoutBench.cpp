#include "BrisalonCore/TreemapLayout.h"

#include "../SiblingNodes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace brisalon;

namespace {

/// Files of one folder with sizes as spread as on a real disk, largest first.
std::vector<FileNode> siblings(std::size_t count)
{
    std::mt19937_64 random(1);
    std::lognormal_distribution<double> size(10, 3);
    std::vector<std::int64_t> sizes(count);
    for (auto& bytes : sizes)
        bytes = 1 + std::llround(size(random));
    std::ranges::sort(sizes, std::ranges::greater());
    return bench::siblingNodes(sizes);
}

void layout(benchmark::State& state)
{
    const auto nodes = siblings(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(TreemapLayout::layout(nodes, 1600, 900));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(layout)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace
