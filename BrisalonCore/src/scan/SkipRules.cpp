#include "BrisalonCore/SkipRules.h"

#include "host/ProtectedPlaces.h"
#include "scan/PathRules.h"

namespace brisalon {

std::string SkipRules::standardizedPath(const FileURL& url)
{
    return url.standardized().resolvingSymbolicLinks().path();
}

bool SkipRules::shouldSkipDescending(const FileURL& url)
{
    return detail::isSkippedPath(standardizedPath(url));
}

bool SkipRules::shouldAllowDelete(const FileURL& url)
{
    const std::string path = standardizedPath(url);
    return !detail::isProtectedPath(path) && !host::isProtectedHere(path);
}

} // namespace brisalon
