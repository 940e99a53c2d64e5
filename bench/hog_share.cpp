// hog_share ROOT
//
// How many of the bytes that a scan finds have a kind, by kind, and the largest files and
// blocks of small files that have none.

#include "BrisalonCore/DiskScanner.h"

#include <algorithm>
#include <array>
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

    std::array<std::int64_t, allHogKinds.size()> bytes{};
    std::vector<const FileNode*> unknown;
    std::vector<const FileNode*> open{tree};
    while (!open.empty()) {
        const FileNode* node = open.back();
        open.pop_back();
        for (const FileNode& child : node->children())
            open.push_back(&child);
        if (node->kind() == NodeKind::directory)
            continue;
        bytes[static_cast<std::size_t>(node->hogKind())] += node->allocatedSize();
        if (node->hogKind() == HogKind::none)
            unknown.push_back(node);
    }

    const double all = static_cast<double>(std::max<std::int64_t>(tree->allocatedSize(), 1));
    for (const HogKind kind : allHogKinds) {
        const std::int64_t found = bytes[static_cast<std::size_t>(kind)];
        std::printf("%5.1f %%  %15lld  %s\n", 100 * static_cast<double>(found) / all,
                    static_cast<long long>(found), std::string(rawValue(kind)).c_str());
    }
    constexpr std::size_t shown = 20;
    const auto end = unknown.begin() + std::min<std::ptrdiff_t>(shown, std::ssize(unknown));
    std::partial_sort(unknown.begin(), end, unknown.end(), [](const auto* a, const auto* b) {
        return a->allocatedSize() > b->allocatedSize();
    });
    for (auto node = unknown.begin(); node != end; ++node)
        std::printf("%15lld  %s\n", static_cast<long long>((*node)->allocatedSize()),
                    (*node)->id().c_str());
}
