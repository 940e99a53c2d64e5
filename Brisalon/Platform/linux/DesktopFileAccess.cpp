#include "Brisalon/Platform/DesktopFileAccess.h"

#include "Brisalon/Platform/linux/ReachedFolder.h"

#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace brisalon {

namespace {

/// By way of the containing folder, because a path may be longer than the system
/// takes in one piece.
bool canAccess(const FileURL& url, int mode)
{
    const FileURL parent = url.deletingLastPathComponent().resolvingSymbolicLinks();
    const auto folder = ReachedFolder::at(parent.path());
    const std::string name(url.lastPathComponent());
    return folder && ::faccessat(folder->folder.get(), name.empty() ? "." : name.c_str(), mode,
                                 AT_EACCESS) == 0;
}

} // namespace

bool DesktopFileAccess::hidesPrivatePlaces() const
{
    // What a user may read, every program of theirs may read.
    return false;
}

bool DesktopFileAccess::isReadable(const FileURL& url) const
{
    return canAccess(url, R_OK);
}

bool DesktopFileAccess::exists(const FileURL& url) const
{
    return canAccess(url, F_OK);
}

} // namespace brisalon
