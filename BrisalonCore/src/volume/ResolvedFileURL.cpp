#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/Paths.h"
#include "host/Folder.h"

namespace brisalon {

// The one question that a URL puts to the file system, and so above the room of what
// URLs are, which knows of none.
FileURL FileURL::resolvingSymbolicLinks() const
{
    if (isEmpty())
        return {};
    return FileURL(host::resolveSymbolicLinks(paths::absolute(path())));
}

} // namespace brisalon
