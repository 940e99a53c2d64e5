#include "BrisalonCore/HogSummary.h"
#include "BrisalonCore/LargeFiles.h"

#include <benchmark/benchmark.h>

#include <random>

using namespace brisalon;

namespace {

FileNode node(const FileURL& url, std::int64_t size, std::vector<FileNode> children = {})
{
    const NodeKind kind = children.empty() ? NodeKind::file : NodeKind::directory;
    return FileNode(url, std::string(url.lastPathComponent()), size, kind, HogKind::none,
                    Risk::unknown, std::move(children), {});
}

/// 1,000 folders of 999 files each: 1,000,001 nodes with the root.
FileNode millionNodes()
{
    std::mt19937 random(1);
    const FileURL root("/root");
    std::vector<FileNode> folders;
    for (int i = 0; i < 1000; ++i) {
        const FileURL folder =
            root.appendingPathComponent(std::string("folder").append(std::to_string(i)));
        std::vector<FileNode> files;
        for (int j = 0; j < 999; ++j)
            files.push_back(
                node(folder.appendingPathComponent(std::string("file").append(std::to_string(j))),
                     static_cast<std::int64_t>(random())));
        folders.push_back(node(folder, 0, std::move(files)));
    }
    return node(root, 0, std::move(folders));
}

void topFiles(benchmark::State& state)
{
    const FileNode root = millionNodes();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(LargeFiles::topFiles(root, 50));
    state.SetItemsProcessed(state.iterations() * 1'000'001);
}
BENCHMARK(topFiles)->Unit(benchmark::kMillisecond);

void findTheLastNode(benchmark::State& state)
{
    const FileNode root = millionNodes();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(LargeFiles::find("/root/folder999/file998", root));
    state.SetItemsProcessed(state.iterations() * 1'000'001);
}
BENCHMARK(findTheLastNode)->Unit(benchmark::kMillisecond);

void hogSummary(benchmark::State& state)
{
    const FileNode root = millionNodes();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(HogSummary::of(root, 10));
}
BENCHMARK(hogSummary)->Unit(benchmark::kMillisecond);

} // namespace
