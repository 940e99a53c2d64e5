#pragma once

#include "BrisalonCore/HogKind.h"

#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// What the classifier has to remember of a folder's path in order to classify
/// what lies in it: which path tests the path already passes, and which it
/// passes as soon as the next components fit.
///
/// A walk carries it from folder to folder, so classifying an item costs a look
/// at its name only; the result is exactly that of searching the whole path.
/// Names are bytes; lower-casing is exact for the tests' needles, which are
/// ASCII: of all characters only A–Z and U+212A (which lowers to k) can lower
/// into one that matters.
class HogTrail {
public:
    /// The trail of a folder, given its whole path.
    static HogTrail of(std::string_view path);

    /// The trail of the folder of that name inside this one.
    HogTrail entering(std::string_view folderName) const;

    /// The kind of the item of that name inside this folder.
    HogKind classify(std::string_view name) const;
};

} // namespace brisalon::detail
