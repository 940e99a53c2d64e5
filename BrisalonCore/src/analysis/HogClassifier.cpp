#include "BrisalonCore/HogClassifier.h"

#include "analysis/HogTrail.h"

#include <string>

namespace brisalon {

HogKind HogClassifier::classify(const FileURL& url)
{
    using detail::HogTrail;
    const std::string path = url.path();
    const std::string_view text = path;
    const auto slash = text.rfind('/');
    if (slash == std::string_view::npos)
        return HogTrail::ofNoFolder().classify(text);
    return HogTrail::of(text.substr(0, slash)).classify(text.substr(slash + 1));
}

} // namespace brisalon
