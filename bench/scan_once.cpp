// scan_once ROOT
//
// One scan, as the application does it, to a finished tree that is held in memory.
// `items` are the items that the scan met, a package counting as one; `nodes` are
// the tree's. The time and the memory are those of the scan alone.

#include "Report.h"

#include "BrisalonCore/DiskScanner.h"

#include <cstdio>
#include <string>
#include <variant>
#include <vector>

namespace {

std::int64_t countNodes(const brisalon::FileNode& root)
{
    std::int64_t count = 0;
    std::vector<const brisalon::FileNode*> open{&root};
    while (!open.empty()) {
        const brisalon::FileNode* node = open.back();
        open.pop_back();
        ++count;
        for (const brisalon::FileNode& child : node->children())
            open.push_back(&child);
    }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: scan_once ROOT\n");
        return 2;
    }
    const brisalon::DiskScanner scanner{.smallFileThreshold = 262'144, .progressEvery = 400};
    std::int64_t items = 0;

    const bench::Stopwatch watch;
    const brisalon::ScanResult result =
        scanner.scan(brisalon::FileURL(argv[1]), [&items](const brisalon::ScanProgress& progress) {
            items = progress.visitedCount;
        });
    bench::Report report{.milliseconds = watch.milliseconds()};

    const auto* tree = std::get_if<brisalon::FileNode>(&result);
    if (!tree) {
        const auto* error = std::get_if<brisalon::ScanError>(&result);
        const std::string text(error ? description(*error) : "cancelled");
        std::fprintf(stderr, "%s: %s\n", argv[1], text.c_str());
        return 1;
    }
    report.items = items;
    report.bytes = tree->allocatedSize();
    report.nodes = countNodes(*tree);
    report.print();
}
