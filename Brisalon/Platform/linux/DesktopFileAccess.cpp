#include "Brisalon/Platform/DesktopFileAccess.h"

#include <fcntl.h>
#include <unistd.h>

namespace brisalon {

bool DesktopFileAccess::hidesPrivatePlaces() const
{
    // What a user may read, every program of theirs may read.
    return false;
}

bool DesktopFileAccess::isReadable(const FileURL& url) const
{
    return ::faccessat(AT_FDCWD, url.path().c_str(), R_OK, AT_EACCESS) == 0;
}

bool DesktopFileAccess::exists(const FileURL& url) const
{
    return ::faccessat(AT_FDCWD, url.path().c_str(), F_OK, 0) == 0;
}

} // namespace brisalon
