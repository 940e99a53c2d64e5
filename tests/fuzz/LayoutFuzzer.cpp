// Any sizes and any drawing area: the same rectangles, to the bit, as the algorithm by
// the book gives.

#include "BrisalonCore/FileNodeBuilder.h"
#include "BrisalonCore/TreemapLayout.h"

#include "Require.h"
#include "support/ReferenceLayout.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace brisalon;
using brisalon::tests::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const double width = input.ConsumeFloatingPoint<double>();
    const double height = input.ConsumeFloatingPoint<double>();
    std::vector<FileNode> nodes;
    std::vector<double> sizes;
    while (input.remaining_bytes() > 0 && nodes.size() < 200) {
        // Sums of these stay exact, as those of real sizes do.
        const auto bytes = input.ConsumeIntegralInRange<std::int64_t>(-1, std::int64_t{1} << 44);
        nodes.push_back(FileNodeBuilder::make(FileURL("/f"), bytes, NodeKind::file));
        if (bytes >= 1)
            sizes.push_back(static_cast<double>(bytes));
    }
    const auto rects = TreemapLayout::layout(nodes, width, height);
    const auto expected = tests::squarifiedByTheBook(sizes, width, height);
    if (!(width > 0 && height > 0)) {
        require(rects.empty());
        return 0;
    }
    require(rects.size() == expected.size());
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const TreemapRect& rect = rects[i];
        require(tests::PlainRect{rect.x, rect.y, rect.width, rect.height} == expected[i]);
    }
    return 0;
}
