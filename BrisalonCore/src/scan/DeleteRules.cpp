#include "BrisalonCore/DeleteRules.h"

#include "BrisalonCore/SkipRules.h"
#include "host/ProtectedPlaces.h"
#include "scan/PathRules.h"

#include <algorithm>

namespace brisalon {

DeleteRules::DeleteRules() : places_(std::make_unique<const host::ProtectedPlaces>()) {}
DeleteRules::~DeleteRules() = default;

bool DeleteRules::allow(const FileURL& url) const
{
    const std::string path = SkipRules::standardizedPath(url);
    return std::ranges::none_of(places_->names(path),
                                [this](std::string_view name) {
                                    return detail::isProtectedPath(name) ||
                                           places_->isProtected(name);
                                }) &&
           !places_->isVolume(path);
}

} // namespace brisalon
