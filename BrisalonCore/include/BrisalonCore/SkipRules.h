#pragma once

#include "BrisalonCore/FileURL.h"

#include <string>

namespace brisalon {

/// Two policies by path: where a scan must not go, and what must never be moved
/// to the Trash. Comparisons are case-sensitive and on the normalised path.
/// Stateless; any thread.
class SkipRules {
public:
    SkipRules() = delete;

    /// The path made absolute and free of ".", ".." and doubled slashes, then
    /// with its symbolic links resolved. Asks the file system.
    static std::string standardizedPath(const FileURL& url);

    /// True for the device, network and process file systems, the swap area, the
    /// system folder, core dumps and the volume-id file system: a scan records
    /// neither the item nor anything below it.
    static bool shouldSkipDescending(const FileURL& url);

    /// Whether the item may be moved to the Trash, as DeleteRules say now. Asks the
    /// system what is mounted and where the home is.
    static bool shouldAllowDelete(const FileURL& url);
};

} // namespace brisalon
