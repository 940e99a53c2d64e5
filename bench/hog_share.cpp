// hog_share ROOT
//
// How many of the bytes that a scan finds lie in hogs, by kind, and the largest items that
// do not.

#include "BrisalonCore/DiskScanner.h"
#include "BrisalonCore/HogSummary.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

using namespace brisalon;

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: hog_share ROOT\n");
        return 2;
    }
    const ScanResult result = DiskScanner{.smallFileThreshold = 262'144, .progressEvery = 0}.scan(
        FileURL(argv[1]), [](const ScanProgress&) {});
    const auto* tree = std::get_if<FileNode>(&result);
    if (!tree) {
        std::fprintf(stderr, "%s cannot be scanned\n", argv[1]);
        return 1;
    }

    const double all = static_cast<double>(std::max<std::int64_t>(tree->allocatedSize(), 1));
    for (const HogSum& sum : HogSummary::of(*tree, 0))
        std::printf("%5.1f %%  %15jd  %s\n", 100 * static_cast<double>(sum.allocatedSize) / all,
                    std::intmax_t{sum.allocatedSize}, std::string(rawValue(sum.kind)).c_str());

    std::vector<const FileNode*> unknown;
    std::vector<const FileNode*> open{tree};
    while (!open.empty()) {
        const FileNode* node = open.back();
        open.pop_back();
        if (node->hogKind() != HogKind::none)
            continue;
        if (node->kind() != NodeKind::directory)
            unknown.push_back(node);
        for (const FileNode& child : node->children())
            open.push_back(&child);
    }
    constexpr std::size_t shown = 20;
    const auto end = unknown.begin() + std::min<std::ptrdiff_t>(shown, std::ssize(unknown));
    std::partial_sort(unknown.begin(), end, unknown.end(), [](const auto* a, const auto* b) {
        return a->allocatedSize() > b->allocatedSize();
    });
    for (auto node = unknown.begin(); node != end; ++node)
        std::printf("%15jd  %s\n", std::intmax_t{(*node)->allocatedSize()}, (*node)->id().c_str());
}
