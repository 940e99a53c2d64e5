#pragma once

#include "BrisalonCore/FileURL.h"
#include "BrisalonCore/HogKind.h"

namespace brisalon {

/// Decides an item's HogKind from its path alone: an ordered list of plain text
/// tests on the lower-cased path and name, the first that holds decides.
/// Path tests hold for everything below the folder that matches; name tests
/// mark only the item itself. A folder tagged as a cache is beyond it: a scan finds the
/// tag. Pure; may run on any thread.
class HogClassifier {
public:
    HogClassifier() = delete;

    static HogKind classify(const FileURL& url);
};

} // namespace brisalon
