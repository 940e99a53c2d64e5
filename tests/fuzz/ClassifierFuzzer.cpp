// Paths rich in what the classifier looks for: its answer is that of trying each test in
// turn on the whole path, in a tagged folder and in any other.

#include "BrisalonCore/HogClassifier.h"

#include "Require.h"
#include "analysis/CommonHogs.h"
#include "analysis/HogTrail.h"
#include "support/PlainClassifier.h"

#include "HogPlaces.h" // this system's

#include <algorithm>
#include <vector>

using namespace brisalon;
using namespace brisalon::tests;
using detail::HogTrail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto all = [] {
        std::vector<detail::HogTest> tests(detail::commonHogs.begin(), detail::commonHogs.end());
        tests.insert(tests.end(), detail::hogPlaces.begin(), detail::hogPlaces.end());
        return tests;
    }();
    constexpr std::size_t most = 100; // the plain way is slow
    const FileURL url(pathOf({data, std::min(size, most)}, all));
    const std::string path = url.path();
    require(HogClassifier::classify(url) == plainKind(all, path, false));
    if (const auto slash = path.rfind('/'); slash != std::string::npos) {
        const HogTrail trail = HogTrail::of(std::string_view(path).substr(0, slash)).tagged();
        require(trail.classify(std::string_view(path).substr(slash + 1)) ==
                plainKind(all, path, true));
    }
    return 0;
}
