#include "BrisalonCore/HogClassifier.h"

#include "analysis/HogTrail.h"

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <string>
#include <vector>

using namespace brisalon;

namespace {

constexpr std::size_t nameCount = 1'000'000;

/// Names as they are met in homes and source trees.
std::vector<std::string> names()
{
    constexpr std::array stems{"index", "README", "IMG_", "report-", "lib", "node", ".config", "K"};
    constexpr std::array endings{".js", ".png", ".d.ts", ".o", ".md", "", ".pkg", ".json"};
    std::mt19937 random(1);
    std::vector<std::string> result(nameCount);
    for (std::string& name : result)
        name = stems[random() % stems.size()] + std::to_string(random() % 100'000) +
               endings[random() % endings.size()];
    return result;
}

void classifyNamesOfAFolder(benchmark::State& state)
{
    const auto all = names();
    const auto trail = detail::HogTrail::of("/home/someone/projects/thing/src");
    for ([[maybe_unused]] auto _ : state)
        for (const std::string& name : all)
            benchmark::DoNotOptimize(trail.classify(name));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
BENCHMARK(classifyNamesOfAFolder)->Unit(benchmark::kMillisecond);

void enterFolders(benchmark::State& state)
{
    const auto all = names();
    const auto trail = detail::HogTrail::of("/home/someone/projects/thing/src");
    for ([[maybe_unused]] auto _ : state)
        for (const std::string& name : all)
            benchmark::DoNotOptimize(trail.entering(name));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(all.size()));
}
BENCHMARK(enterFolders)->Unit(benchmark::kMillisecond);

void classifyWholePaths(benchmark::State& state)
{
    const FileURL folder("/home/someone/projects/thing/src");
    std::vector<FileURL> urls;
    for (const std::string& name : names())
        urls.push_back(folder.appendingPathComponent(name));
    for ([[maybe_unused]] auto _ : state)
        for (const FileURL& url : urls)
            benchmark::DoNotOptimize(HogClassifier::classify(url));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(urls.size()));
}
BENCHMARK(classifyWholePaths)->Unit(benchmark::kMillisecond);

} // namespace
