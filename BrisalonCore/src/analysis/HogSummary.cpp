#include "BrisalonCore/HogSummary.h"

#include "analysis/LargestNodes.h"
#include "analysis/PreOrder.h"

#include <algorithm>
#include <variant>

namespace brisalon {

using detail::LargestNodes;
using detail::Visit;

std::vector<HogSum> HogSummary::of(const FileNode& root, std::size_t placeLimit)
{
    std::vector<HogSum> sums;
    std::vector<LargestNodes> largest(allHogKinds.size(), LargestNodes(placeLimit));
    for (const HogKind kind : allHogKinds)
        sums.push_back({kind, 0, 0, {}});
    detail::walkPreOrder(root, std::monostate(), [&](const FileNode& node, std::monostate) {
        if (node.hogKind() == HogKind::none)
            return Visit::enter;
        const auto index = static_cast<std::size_t>(node.hogKind());
        sums[index].allocatedSize += node.allocatedSize();
        ++sums[index].placeCount;
        largest[index].offer(node);
        return Visit::passOver;
    });
    for (HogSum& sum : sums)
        sum.places = largest[static_cast<std::size_t>(sum.kind)].takeEntries();
    std::erase_if(sums, [](const HogSum& sum) { return sum.allocatedSize <= 0; });
    std::ranges::stable_sort(sums, std::ranges::greater(), &HogSum::allocatedSize);
    return sums;
}

std::int64_t HogSummary::safeBytes(std::span<const HogSum> sums) noexcept
{
    std::int64_t bytes = 0;
    for (const HogSum& sum : sums)
        if (risk(sum.kind) == Risk::safe)
            bytes += sum.allocatedSize;
    return bytes;
}

} // namespace brisalon
