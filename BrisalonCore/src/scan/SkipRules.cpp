#include "BrisalonCore/SkipRules.h"

#include "BrisalonCore/DeleteRules.h"
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
    return DeleteRules().allow(url);
}

} // namespace brisalon
