#include "Brisalon/App/MapPlace.h"

namespace brisalon {

MapPlace::Content MapPlace::content(const QString& scanError, const FileNodeValue& tree,
                                    const FileNodeValue& current, bool isScanning)
{
    // A failure takes no map away.
    if (!scanError.isEmpty() && !tree)
        return Content::Failure;
    if (current)
        return current.childCount() == 0 ? Content::EmptyFolder : Content::Map;
    return isScanning ? Content::FirstScan : Content::Welcome;
}

} // namespace brisalon
