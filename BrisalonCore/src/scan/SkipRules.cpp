#include "BrisalonCore/SkipRules.h"

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
    return !detail::isProtectedPath(standardizedPath(url));
}

} // namespace brisalon
